#include "main_window/tool_commands.h"

#include <wx/filedlg.h>
#include <wx/frame.h>

#include "common/files.h"
#include "editor/window/uEditor.h"
#include "imaging/picture_file.h"
#include "settings/message_box.h"

namespace glimmer {

namespace {

constexpr const char* pictureFilter =
    "All supported files (*.png;*.gif;*.jpg;*.jpeg;*.bmp)|*.png;*.gif;*.jpg;*.jpeg;*.bmp";
constexpr uint64_t longestPictureFile = 512ULL * 1024 * 1024;

}  // namespace

bool isShapeTool(EditTool tool) {
    return tool == EditTool::TextShapeRectangle || tool == EditTool::TextShapeEllipse ||
           tool == EditTool::TextShapePolygon;
}

void takeTool(CommandContext& context, EditTool tool) {
    TEditForm& canvas = *context.window.canvas();
    canvas.setTool(isShapeTool(tool) ? context.shapeTool : tool);
    canvas.SetFocus();
}

void undoStep(CommandContext& context) { context.window.canvas()->undo(); }

void redoStep(CommandContext& context) { context.window.canvas()->redo(); }

void addImage(CommandContext& context) {
    wxFileDialog dialog(&context.window.frame(), "Open Image", wxEmptyString, wxEmptyString, pictureFilter,
                        wxFD_OPEN | wxFD_FILE_MUST_EXIST);
    if (dialog.ShowModal() != wxID_OK) return;
    const Result<std::vector<uint8_t>> bytes =
        readFile(pathFromUtf8(dialog.GetPath().ToStdString(wxConvUTF8)), longestPictureFile);
    if (!bytes) return showError(bytes.message());
    Result<TBitmap> picture = readPicture(*bytes);
    if (!picture) return showError(picture.message());
    context.window.canvas()->insertPicture(picture.take());
}

}  // namespace glimmer
