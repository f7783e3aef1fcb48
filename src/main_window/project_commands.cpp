// Opening files, and the session as a project.

#include "main_window/project_commands.h"

#include <wx/filedlg.h>
#include <wx/frame.h>

#include <memory>
#include <new>

#include "common/files.h"
#include "common/modal_scope.h"
#include "common/text.h"
#include "main_window/command_runner.h"
#include "main_window/lines_of_names.h"
#include "output/files/editable_png.h"
#include "output/files/open_captures.h"
#include "output/spoken_saver.h"
#include "settings/message_box.h"

namespace glimmer {

namespace {

constexpr const char* openFilter =
    "All supported files (*.gmp;*.png;*.gif;*.jpg;*.jpeg;*.bmp;)|*.gmp;*.png;*.gif;*.jpg;*.jpeg;*.bmp"
    "|Glimmerpad Project file (*.gmp)|*.gmp"
    "|Portable Network Graphics (*.png)|*.png"
    "|CompuServe GIF Image (*.gif)|*.gif"
    "|JPEG Image File (*.jpg, *.jpeg)|*.jpg;*.jpeg"
    "|Bitmaps (*.bmp)|*.bmp";
constexpr const char* notEnoughMemory = "There is not enough memory for this.";

bool isProject(const std::string& path) { return upperAscii(utf8FromPath(pathFromUtf8(path).extension())) == ".GMP"; }

/// What went wrong with a file, for a message about several of them.
std::string namingFile(const std::string& failure, const std::string& path) {
    const std::string name = utf8FromPath(pathFromUtf8(path).filename());
    return failure.find(name) != std::string::npos ? failure : std::string(name).append(": ").append(failure);
}

/// Opens one file. Want of memory is a failure of this file as any other; the next one may be smaller.
Status openFile(CaptureSession& session, const std::string& path, bool& lacksData) {
    try {
        Result<std::vector<std::unique_ptr<CaptureDocument>>> opened = openCaptures(pathFromUtf8(path), &lacksData);
        if (!opened) return opened.failure();
        // A project that is opened into an empty window is the one that "Save" goes on with.
        const bool whole = session.empty() && isProject(path);
        for (std::unique_ptr<CaptureDocument>& capture : *opened) session.add(std::move(capture));
        if (whole) session.setProject(path);
        return {};
    } catch (const std::bad_alloc&) {
        return Failure{notEnoughMemory};
    }
}

}  // namespace

void openFromDialog(CommandContext& context) {
    wxFileDialog dialog(&context.window.frame(), "Open Project or File...", wxEmptyString, wxEmptyString, openFilter,
                        wxFD_OPEN | wxFD_FILE_MUST_EXIST | wxFD_MULTIPLE);
    if (dialog.ShowModal() != wxID_OK) return;
    wxArrayString paths;
    dialog.GetPaths(paths);
    std::vector<std::string> chosen;
    for (const wxString& path : paths) chosen.push_back(path.ToStdString(wxConvUTF8));
    openFiles(context, chosen);
}

void saveProject(CommandContext& context) { storeProject(context, false); }

void saveProjectAs(CommandContext& context) { storeProject(context, true); }

bool openFiles(CommandContext& context, const std::vector<std::string>& paths) {
    CaptureSession& session = context.session;
    const size_t before = session.size();
    bool someLackData = false;
    std::vector<std::string> failures;
    {
        const CaptureSession::Together together(session);
        for (const std::string& path : paths) {
            bool lacksData = false;
            const Status opened = openFile(session, path, lacksData);
            someLackData = someLackData || lacksData;
            if (!opened) failures.push_back(namingFile(opened.message(), path));
        }
    }
    session.showDue();
    const size_t added = session.size() - before;
    if (!failures.empty()) showError(linesOf(failures, "\n").substr(1));
    if (someLackData) context.missingDataDue = true;
    return added > 0;
}

bool storeProject(CommandContext& context, bool ask) {
    CaptureSession& session = context.session;
    std::filesystem::path path = pathFromUtf8(session.projectPath());
    if (!SpokenSaver(context.saver).saveProject(session.all(), path, ask)) return false;
    session.setProject(utf8FromPath(path));
    return true;
}

bool mayTellOfMissingData(CommandContext& context) {
    const wxFrame& frame = context.window.frame();
    return context.missingDataDue && frame.IsShown() && frame.IsEnabled() && !ModalScope::any() &&
           context.runner.running() == 0;
}

void tellOfMissingData(CommandContext& context) {
    if (!mayTellOfMissingData(context)) return;
    context.missingDataDue = false;
    showRemembered("cmbMissingDataMessage", {missingDataText, missingDataCaption, MessageIcon::Error});
}

}  // namespace glimmer
