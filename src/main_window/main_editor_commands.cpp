// What the main editor's commands do. Output itself is the saver's; here are the questions before and after it.

#include <wx/filedlg.h>

#include <algorithm>
#include <new>

#include "common/files.h"
#include "common/host_kind.h"
#include "common/modal_scope.h"
#include "common/shell_start.h"
#include "common/text.h"
#include "common/vendor.h"
#include "editor/canvas/edit_tool.h"
#include "editor/document/document.h"
#include "editor/window/uEditor.h"
#include "imaging/picture_file.h"
#include "main_window/capture_list.h"
#include "main_window/main_toolbar.h"
#include "main_window/uMainEditor.h"
#include "output/files/editable_png.h"
#include "output/files/open_captures.h"
#include "output/uSaver.h"
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
constexpr const char* pictureFilter =
    "All supported files (*.png;*.gif;*.jpg;*.jpeg;*.bmp)|*.png;*.gif;*.jpg;*.jpeg;*.bmp";
constexpr uint64_t longestPictureFile = 512ULL * 1024 * 1024;
/// More names than this would not fit on a message box.
constexpr size_t mostNames = 10;
constexpr const char* notEnoughMemory = "There is not enough memory for this.";

bool isProject(const std::string& path) { return upperAscii(utf8FromPath(pathFromUtf8(path).extension())) == ".GMP"; }

/// What went wrong with a file, for a message about several of them.
std::string namingFile(const std::string& failure, const std::string& path) {
    const std::string name = utf8FromPath(pathFromUtf8(path).filename());
    return failure.find(name) != std::string::npos ? failure : std::string(name).append(": ").append(failure);
}

using Opened = Result<std::vector<std::unique_ptr<CaptureDocument>>>;

/// Want of memory is a failure of this file as any other; the next one may be smaller.
Opened openedOrWhyNot(const std::string& path, bool* lacksData) {
    try {
        return openCaptures(pathFromUtf8(path), lacksData);
    } catch (const std::bad_alloc&) {
        return Failure{notEnoughMemory};
    }
}

/// The host as the rating page knows it.
std::string hostCode() { return isChrome() ? "ch" : "fx"; }

}  // namespace

// --- project and files --------------------------------------------------------------------------------------------

void TMainEditor::btnLoadProjectClick() {
    wxFileDialog dialog(this, "Open Project or File...", wxEmptyString, wxEmptyString, openFilter,
                        wxFD_OPEN | wxFD_FILE_MUST_EXIST | wxFD_MULTIPLE);
    if (dialog.ShowModal() != wxID_OK) return;
    wxArrayString paths;
    dialog.GetPaths(paths);
    std::vector<std::string> chosen;
    for (const wxString& path : paths) chosen.push_back(path.ToStdString(wxConvUTF8));
    openFiles(chosen);
}

bool TMainEditor::openFile(const std::string& path) { return openFiles({path}); }

// What cannot be opened is told at the end, in one message.
bool TMainEditor::openFiles(const std::vector<std::string>& paths) {
    const size_t before = documents_.size();
    bool someLackData = false;
    std::vector<std::string> failures;
    {
        ++opening_;
        const std::shared_ptr<void> all(nullptr, [this](void*) { --opening_; });
        for (const std::string& path : paths) {
            bool lacksData = false;
            Opened opened = openedOrWhyNot(path, &lacksData);
            someLackData = someLackData || lacksData;
            if (!opened) {
                failures.push_back(namingFile(opened.message(), path));
                continue;
            }
            // A project that is opened into an empty window is the one that "Save" goes on with.
            const bool whole = documents_.empty() && isProject(path);
            try {
                for (std::unique_ptr<CaptureDocument>& document : *opened) addEditor(std::move(document));
                if (whole) projectPath_ = path;
            } catch (const std::bad_alloc&) {
                failures.push_back(namingFile(notEnoughMemory, path));
            }
        }
    }
    showDue();
    const size_t added = documents_.size() - before;
    std::string text;
    for (size_t i = 0; i < std::min(failures.size(), mostNames); ++i)
        text.append(text.empty() ? "" : "\n").append(failures[i]);
    if (failures.size() > mostNames)
        text.append("\nand ").append(std::to_string(failures.size() - mostNames)).append(" more");
    if (!failures.empty()) showError(text);
    if (someLackData) missingDataDue_ = true;
    return added > 0;
}

// Of no moment for what the user sees, so it comes after the window, and waits until no question is open.
bool TMainEditor::mayTellOfMissingData() const {
    return missingDataDue_ && IsShown() && IsEnabled() && !ModalScope::any() && commandsRunning_ == 0;
}

void TMainEditor::tellOfMissingData() {
    if (!mayTellOfMissingData()) return;
    missingDataDue_ = false;
    showRemembered("cmbMissingDataMessage", {missingDataText, missingDataCaption, MessageIcon::Error});
}

bool TMainEditor::saveProject(bool askForName) {
    std::filesystem::path path = pathFromUtf8(projectPath_);
    const Documents all = allEditors();
    if (!TSaver().saveProject(all, path, askForName)) return false;
    projectPath_ = utf8FromPath(path);
    projectChanged_ = false;
    for (CaptureDocument* document : all) document->markSaved();
    return true;
}

void TMainEditor::btnSaveProjectClick() { saveProject(projectPath_.empty()); }
void TMainEditor::btnSaveProjectAsClick() { saveProject(true); }

void TMainEditor::btnImageClick() {
    wxFileDialog dialog(this, "Open Image", wxEmptyString, wxEmptyString, pictureFilter,
                        wxFD_OPEN | wxFD_FILE_MUST_EXIST);
    if (dialog.ShowModal() != wxID_OK) return;
    const Result<std::vector<uint8_t>> bytes =
        readFile(pathFromUtf8(dialog.GetPath().ToStdString(wxConvUTF8)), longestPictureFile);
    if (!bytes) return showError(bytes.message());
    Result<TBitmap> picture = readPicture(*bytes);
    if (!picture) return showError(picture.message());
    canvas_->insertPicture(picture.take());
}

// --- output -------------------------------------------------------------------------------------------------------

void TMainEditor::btnUploadClick() {
    if (commands_.upload) {
        commands_.upload(selectedEditors());
    } else {
        showInformation("Uploading is not part of this version yet.");
    }
}

void TMainEditor::btnPublishClick() {
    if (TSaver().savePictures(selectedEditors())) afterOutput("Created successfully");
}

void TMainEditor::btnCopyClick() {
    if (TSaver().copyToClipboard(selectedEditors())) afterOutput("Created successfully");
}

void TMainEditor::btnMailClick() {
    TSaver().sendByMail(selectedEditors(), PictureFormat::Png, IsShown() ? GetHWND() : nullptr);
}

// The program's own settings dialog for this is still to come; until then the system's paint program is started, or
// where that was removed what the user has for changing pictures.
void TMainEditor::btnExternalViewerClick() {
    const std::optional<TSaver::Paths> files = TSaver().saveForExternalEditor(selectedEditors());
    if (!files) return;
    for (const std::filesystem::path& file : *files) {
        const std::string path = utf8FromPath(file);
        const std::string quoted = "\"" + path + "\"";
        if (shellStart().open("mspaint.exe", quoted) || shellStart().edit(path)) continue;
        TSaver::startExternalEditor("mspaint.exe", quoted);  // says what is wrong
        return;
    }
}

void TMainEditor::btnPrintClick() {
    if (selectedEditors().size() > 1) {
        Message question;
        question.caption = "Multiple selection printing";
        question.text = "Please specify the settings for the selected documents";
        question.icon = MessageIcon::Information;
        showRemembered("cmbMultipleSelectionPrinting", question);
    }
    showInformation("Printing is not part of this version yet.");
}

// After a command that has brought the captures where they were wanted, the user may be done.
void TMainEditor::afterOutput(const char* done) {
    if (!IsShown()) return;
    Message question;
    question.caption = done;
    question.text = "Would you like to exit the editor?";
    question.icon = MessageIcon::Question;
    question.buttons = MessageButtons::YesNo;
    question.standard = MessageAnswer::No;
    if (showRemembered("cmbExitAfterSaving", question) == MessageAnswer::Yes) leave(true);
}

// --- editing ------------------------------------------------------------------------------------------------------

void TMainEditor::tbtnUndoClick() { canvas_->undo(); }
void TMainEditor::tbtnRedoClick() { canvas_->redo(); }

void TMainEditor::setTool(EditTool tool, const char* button) {
    toolButton_ = button;
    canvas_->setTool(tool);
    canvas_->SetFocus();
}

void TMainEditor::btnPointerClick() { setTool(EditTool::Pointer, "btnPointer"); }
void TMainEditor::btnWndSelectorClick() { setTool(EditTool::WindowSelector, "btnWndSelector"); }
void TMainEditor::btnTextShapeClick() { setTool(shapeTool_, "btnTextShape"); }
void TMainEditor::btnTextPenClick() { setTool(EditTool::TextPen, "btnTextPen"); }
void TMainEditor::btnTextLineClick() { setTool(EditTool::TextLine, "btnTextLine"); }
void TMainEditor::btnTextClick() { setTool(EditTool::Text, "btnText"); }
void TMainEditor::btnRectHightlightClick() { setTool(EditTool::RectHighlight, "btnRectHightlight"); }
void TMainEditor::btnLineClick() { setTool(EditTool::Line, "btnLine"); }

// --- the program --------------------------------------------------------------------------------------------------

void TMainEditor::btnOptionsClick() {
    if (commands_.options) commands_.options();
}

void TMainEditor::tbtnAboutClick() {
    Message about;
    about.caption = std::string("About ") + productName();
    about.text = std::string(productName()) + "\nCaptures, annotates and publishes web pages.\n\n" + vendorSite;
    about.icon = MessageIcon::Information;
    showMessage(about);
}

void TMainEditor::openPage(const std::string& page) {
    if (commands_.openPage) commands_.openPage(vendorSite + page);
}

void TMainEditor::tbtnTweetClick() { openPage("/tweet.htm"); }
void TMainEditor::tbtnVoteClick() { openPage("/vote-" + hostCode() + ".htm"); }

// --- leaving ------------------------------------------------------------------------------------------------------

void TMainEditor::btnFirefoxClick() {
    displayState_ = DisplayState::Away;
    applyDisplayState();
    if (commands_.hidden) commands_.hidden();
}

void TMainEditor::btnExitClick() { leave(false); }

bool TMainEditor::confirmUnsaved(const Documents& documents) {
    std::string names;
    size_t count = 0;
    for (const CaptureDocument* document : documents) {
        if (!document->modified()) continue;
        if (++count <= mostNames) names.append("\n  \xE2\x80\xA2 ").append(document->info().name);
    }
    if (count == 0 && !projectChanged_) return true;
    if (count > mostNames)
        names.append("\n  \xE2\x80\xA2 and ").append(std::to_string(count - mostNames)).append(" more");
    Message question;
    question.caption = "Exit Editor";
    if (count == 0) {
        question.text = "Captures were added, deleted or moved since the project was saved:";
        names = "\n  \xE2\x80\xA2 " + utf8FromPath(pathFromUtf8(projectPath_).filename());
    } else if (count == 1) {
        question.text = "One capture is not saved:";
    } else {
        question.text.append(std::to_string(count)).append(" captures are not saved:");
    }
    question.text += names;
    question.icon = MessageIcon::Warning;
    question.buttons = MessageButtons::YesNoCancel;
    question.yes = "&Save all";
    question.no = "&Discard";
    const MessageAnswer answer = showMessage(question);
    if (answer == MessageAnswer::Cancel) return false;
    return answer == MessageAnswer::No || saveProject(projectPath_.empty());
}

bool TMainEditor::closeSession() {
    // The icon's menu stays in reach while a command's dialog waits for an answer about its captures.
    if (commandsRunning_ == 0) return leave(false);
    bringForward();
    return false;
}

/// What a question about leaving was about: a capture that is new or unsaved after it was not in it.
class TMainEditor::Asked {
public:
    explicit Asked(const TMainEditor& editor) : all_(editor.allEditors()) {
        for (const CaptureDocument* document : all_)
            if (document->modified()) unsaved_.push_back(document);
    }
    [[nodiscard]] bool covers(const Asked& later) const {
        const auto within = [](const auto& few, const auto& many) {
            return std::all_of(few.begin(), few.end(), [&many](const CaptureDocument* document) {
                return std::find(many.begin(), many.end(), document) != many.end();
            });
        };
        return within(later.all_, all_) && within(later.unsaved_, unsaved_);
    }
    [[nodiscard]] bool anyUnsaved() const { return !unsaved_.empty(); }

private:
    Documents all_;
    std::vector<const CaptureDocument*> unsaved_;
};

bool TMainEditor::confirmLeaving(bool confirmed) {
    for (;; confirmed = false) {
        if (documents_.empty()) return true;
        const Asked asked(*this);
        if (asked.anyUnsaved() || projectChanged_) {
            if (!confirmUnsaved(allEditors())) return false;
        } else if (!confirmed) {
            Message question;
            question.caption = "Exit Editor";
            question.text = "Would you like to exit the editor?";
            question.icon = MessageIcon::Question;
            question.buttons = MessageButtons::YesNo;
            if (showRemembered("cmbConfirmExit", question) != MessageAnswer::Yes) return false;
        }
        // While that was on the screen a hot key, a browser or another start may have brought more.
        if (asked.covers(Asked(*this))) return true;
    }
}

bool TMainEditor::leave(bool confirmed) {
    // The icon's menu stays in reach while the question is up.
    if (leaving_) return false;
    // What waits for the user, below here, has yet to do with its captures and its canvas.
    if (commandsRunning_ > 1 || (canvas_ != nullptr && canvas_->waits())) {
        bringForward();
        return false;
    }
    leaving_ = true;
    const std::shared_ptr<void> afterwards(nullptr, [this](void*) { leaving_ = false; });
    if (!confirmLeaving(confirmed)) return false;
    discardAll();
    storeState();
    displayState_ = DisplayState::Away;
    applyDisplayState();
    if (commands_.hidden) commands_.hidden();
    return true;
}

}  // namespace glimmer
