#include "output/spoken_saver.h"

#include <wx/window.h>

#include <algorithm>

#include "common/assertion.h"
#include "common/debug_channel.h"
#include "common/files.h"
#include "common/shell_start.h"
#include "editor/document/document.h"
#include "imaging/clipboard.h"
#include "output/picture/covered_page.h"
#include "output/picture/output_picture.h"
#include "output/places/output_folders.h"
#include "output/ways/mail.h"
#include "output/ways/save_dialogs.h"
#include "output/ways/uJPEGSettings.h"
#include "output/ways/wait_window.h"
#include "settings/message_box.h"
#include "settings/options.h"
#include "settings/settings.h"

namespace glimmer {

namespace {

namespace fs = std::filesystem;

constexpr const char* creatingPictures = "Please wait: creating pictures...";
constexpr std::string_view lastFormatKey = "LastSaveFormat";

PictureFormat lastFormat() {
    return static_cast<PictureFormat>(settings().readInteger(settingsSection(group::general), lastFormatKey, 0, 0,
                                                             static_cast<int32_t>(PictureFormat::Pdf)));
}

/// What came of an operation that a window waited for: nothing when it failed, after a message, or was cancelled.
template <class T>
std::optional<T> told(Result<T> result, const WaitWindow& wait) {
    if (result) return result.take();
    if (!wait.cancelled()) showError(result.message());
    return std::nullopt;
}

bool told(const Status& status, const WaitWindow& wait) {
    if (!status && !wait.cancelled()) showError(status.message());
    return status.ok();
}

/// What the user answered, once the quality is known that JPEG needs; nothing when the user gives up there.
std::optional<PictureTarget> withQuality(std::optional<PictureTarget> answer) {
    if (!answer || answer->format != PictureFormat::Jpeg) return answer;
    TJPEGSettings dialog(wxGetActiveWindow());
    return dialog.ShowModal() == wxID_OK ? answer : std::nullopt;
}

/// After a save that the user was asked about: folder and format are those of the next one, and the folder is offered.
void finishSaving(const fs::path& saved, PictureFormat format) {
    rememberSaveFolder(saved.parent_path());
    settings().writeInteger(settingsSection(group::general), lastFormatKey, static_cast<int32_t>(format));
    const Message question{"Would you like to open the target folder?\r\n", "Saved successfully", MessageIcon::Question,
                           MessageButtons::YesNo, MessageAnswer::Yes};
    if (showRemembered("cmbOpenFolderAfterSaving", question) == MessageAnswer::Yes) showInFolder(utf8FromPath(saved));
}

/// The files stay, and the user gets to see them.
void tellNotMailed(const std::string& reason, const fs::path& folder) {
    showError(reason + "\r\nThe pictures are in the folder \"" + utf8FromPath(folder) +
              "\", from where you can attach them to a message.");
    shellStart().open(utf8FromPath(folder), {});
}

}  // namespace

std::optional<fs::path> SpokenSaver::savePicture(CaptureDocument& document, SaveMode mode) {
    const BackToRest rest(document);
    const std::string name = nextDefaultName(document);
    std::optional<PictureTarget> target = PictureTarget{};
    if (mode == SaveMode::Interactive)
        target = withQuality(saveDialogs().askPicture(lastSaveFolder(), name, lastFormat()));
    if (!target) return std::nullopt;
    std::optional<fs::path> written;
    {
        WaitWindow wait(creatingPictures);
        written = told(mode == SaveMode::Interactive
                           ? saver_.save(document, target->path, target->format, wait.asProgress())
                           : saver_.saveAs(document, lastSaveFolder(), name, target->format, wait.asProgress()),
                       wait);
    }
    if (written && mode == SaveMode::Interactive) finishSaving(*written, target->format);
    return written;
}

bool SpokenSaver::savePictures(Documents documents) {
    if (documents.empty()) return false;
    if (documents.size() == 1) return savePicture(*documents.front(), SaveMode::Interactive).has_value();
    const auto target = withQuality(saveDialogs().askFolder(lastSaveFolder(), lastFormat()));
    if (!target) return false;
    std::optional<Paths> files;
    {
        WaitWindow wait(creatingPictures);
        files =
            told(saver_.saveInto(target->path, documents, target->format, Editable::AsTheOptionSays, wait.asProgress()),
                 wait);
    }
    if (!files) return false;
    for (CaptureDocument* document : documents) document->markSaved();
    finishSaving(files->front(), target->format);
    return true;
}

std::optional<Editable> SpokenSaver::askEditable(Documents documents, PictureFormat format) {
    const auto covered = [](const CaptureDocument* document) { return coversPage(document->annotations()); };
    if (format != PictureFormat::Png || !OptionsHolder().on("chkEmbedNativeInfo") ||
        std::none_of(documents.begin(), documents.end(), covered))
        return Editable::AsTheOptionSays;
    Message question{"Parts of the page are covered, and whoever gets the editable picture can uncover them.",
                     "Send picture", MessageIcon::Question, MessageButtons::YesNoCancel, MessageAnswer::Yes};
    question.yes = "Send &flat";
    question.no = "Send &editable";
    switch (showRemembered("cmbSendCovered", question)) {
        case MessageAnswer::Yes:
            return Editable::No;
        case MessageAnswer::No:
            return Editable::AsTheOptionSays;
        default:
            return std::nullopt;
    }
}

std::optional<SpokenSaver::Paths> SpokenSaver::saveForWork(const Result<fs::path>& folder, Documents documents,
                                                           PictureFormat format) {
    if (!folder) {
        showError(folder.message());
        return std::nullopt;
    }
    const std::optional<Editable> editable = askEditable(documents, format);
    if (!editable) return std::nullopt;
    WaitWindow wait(creatingPictures);
    return told(saver_.saveForWork(*folder, documents, format, *editable, wait.asProgress()), wait);
}

bool SpokenSaver::copyToClipboard(Documents documents) {
    if (documents.empty()) return false;
    {
        WaitWindow wait("Please wait: copying data to clipboard...");
        const bool several = documents.size() > 1;
        if (several) {
            wait.setText("Please wait: concatenating images");
            wait.setPart(0, 2);
        }
        const std::optional<TBitmap> picture = told(saver_.picture(documents, wait.asProgress()), wait);
        if (!picture) return false;
        if (several) {
            wait.setPart(1, 2);
            wait.setText("Please wait: copying data to clipboard...");
        }
        if (!told(copyPictureToClipboard(*picture, wait.asProgress()), wait)) return false;
    }
    showRemembered("cmbCopiedSuccessfullyMessage",
                   {"The image has been copied into windows Clipboard.\r\nNow you can paste it using standard "
                    "\"Ctrl+V\" key combination.",
                    "Copied successfully", MessageIcon::Information});
    return true;
}

bool SpokenSaver::sendByMail(Documents documents, PictureFormat format, void* window) {
    const Result<fs::path> folder = mailFolder();
    if (folder) cleanUpMailFolder();
    const std::optional<Paths> files = saveForWork(folder, documents, format);
    return files && mailFiles(*files, window);
}

bool SpokenSaver::mailFiles(const Paths& files, void* window) {
    const Paths* const pFileList = &files;
    GLIMMER_ASSERT(pFileList != nullptr && !files.empty(), "pFileList!=NULL", "uSaver");
    const fs::path folder = files.front().parent_path();
    if (!hasMailProgram()) {
        tellNotMailed("No e-mail program is installed that other programs can send files with.", folder);
        return false;
    }
    const auto tellFailed = [folder](MailOutcome outcome) {
        if (outcome == MailOutcome::Failed) tellNotMailed("The e-mail program did not take the files.", folder);
    };
    const MailOutcome outcome = sendMail({"Screenshots", mailFooter(), files}, window, tellFailed);
    if (outcome == MailOutcome::Waiting)
        showInformation(
            "The e-mail program still has the message before.\nThe next one comes up when that one is sent or closed.");
    tellFailed(outcome);
    return outcome != MailOutcome::Failed && outcome != MailOutcome::GivenUp;
}

std::optional<SpokenSaver::Paths> SpokenSaver::publish(Documents documents, PictureFormat format) {
    return saveForWork(publishFolder(), documents, format);
}

std::optional<SpokenSaver::Paths> SpokenSaver::saveForExternalEditor(Documents documents, PictureFormat format) {
    return saveForWork(externalEditorFolder(), documents, format);
}

bool SpokenSaver::startExternalEditor(const std::string& program, const std::string& parameters) {
    if (shellStart().open(program, parameters)) return true;
    showError("An error occured while starting external editor.\r\nPlease check whether specified path exists.");
    return false;
}

bool SpokenSaver::saveProject(Documents documents, fs::path& path, bool ask) {
    for (const CaptureDocument* pEditForm : documents)
        GLIMMER_ASSERT(pEditForm != nullptr, "pEditForm!=NULL", "uSaver");
    if (documents.empty()) return false;
    fs::path target = path;
    if (ask || target.empty()) {
        const std::string name = target.empty() ? nextDefaultName(*documents.front()) : utf8FromPath(target.stem());
        const auto answer = saveDialogs().askProject(target.empty() ? lastSaveFolder() : target.parent_path(), name);
        if (!answer) return false;
        target = *answer;
    }
    {
        WaitWindow wait("Please wait: saving the project...");
        if (!told(saver_.saveProject(documents, target, wait.asProgress()), wait)) return false;
    }
    path = target;
    rememberSaveFolder(target.parent_path());
    for (CaptureDocument* document : documents) document->markSaved();
    return true;
}

std::optional<fs::path> SpokenSaver::exportPage(Documents documents) {
    if (documents.empty()) return std::nullopt;
    const auto target = saveDialogs().askPage(lastSaveFolder(), nextDefaultName(*documents.front()));
    if (!target) return std::nullopt;
    WaitWindow wait(creatingPictures);
    if (!told(saver_.savePage(documents, *target, wait.asProgress()), wait)) return std::nullopt;
    rememberSaveFolder(target->parent_path());
    return *target;
}

}  // namespace glimmer
