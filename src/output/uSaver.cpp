#include "output/uSaver.h"

#include <wx/window.h>

#include <algorithm>
#include <system_error>

#include "common/assertion.h"
#include "common/clock.h"
#include "common/debug_channel.h"
#include "common/files.h"
#include "common/shell_start.h"
#include "editor/document/document.h"
#include "imaging/clipboard.h"
#include "output/files/editable_png.h"
#include "output/files/pdf_writer.h"
#include "output/picture/covered_page.h"
#include "output/picture/join_pictures.h"
#include "output/picture/output_picture.h"
#include "output/places/file_name_template.h"
#include "output/places/output_folders.h"
#include "output/ways/mail.h"
#include "output/ways/save_dialogs.h"
#include "output/ways/uJPEGSettings.h"
#include "output/ways/wait_window.h"
#include "settings/message_box.h"
#include "settings/options.h"
#include "settings/settings.h"
// Brings windows.h, whose names must not meet the toolkit's headers.
#include "editor/labels/rich_text_painter.h"

namespace glimmer {

namespace {

namespace fs = std::filesystem;

constexpr const char* creatingPictures = "Please wait: creating pictures...";
constexpr std::string_view lastFormatKey = "LastSaveFormat";

PictureFormat lastFormat() {
    return static_cast<PictureFormat>(settings().readInteger(settingsSection(group::general), lastFormatKey, 0, 0,
                                                             static_cast<int32_t>(PictureFormat::Pdf)));
}

/// Without a folder the file would go to whatever folder is the current one.
std::nullopt_t refuseWithoutFolder() {
    showError("The system names no folder for pictures. Please save the picture under a name of your own.");
    return std::nullopt;
}

void removeFiles(const TSaver::Paths& paths) {
    std::error_code ignored;
    for (const fs::path& path : paths) fs::remove(path, ignored);
}

void checkDocuments(TSaver::Documents documents) {
    for (const CaptureDocument* pEditor : documents) GLIMMER_ASSERT(pEditor != nullptr, "pEditor!=NULL", "uSaver");
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

TSaver::TSaver() : text_(std::make_unique<RichTextPainter>()) {}
TSaver::~TSaver() = default;

std::string nextDefaultName(const CaptureDocument& document) {
    Options& options = OptionsHolder();
    FileNameTemplate names{options.text("edtFilenameTemplate"), options.number("spnNextNum"),
                           options.on("chkPadNumber"), options.number("spnNumberPadding")};
    const int32_t before = names.nextNumber;
    std::string name = defaultFileName(names, document.info().url, document.info().title, systemClock());
    if (names.nextNumber != before) {
        options.setNumber("spnNextNum", names.nextNumber);
        saveOptions();
    }
    return name;
}

Result<std::vector<uint8_t>> TSaver::encodeEditable(const CaptureDocument& document, bool withAnnotations,
                                                    const Progress& progress) {
    const Result<TBitmap> picture = outputPicture(document, *text_);
    if (!picture) return picture.failure();
    const EditableParts parts{document.background(), document.annotations(), document.background().bounds(),
                              document.info().notes};
    return encodeEditablePng(*picture, parts, withAnnotations, progress);
}

Result<std::vector<uint8_t>> TSaver::encode(const CaptureDocument& document, PictureFormat format,
                                            const Progress& progress, Editable editable) {
    if (format == PictureFormat::Png) {
        const bool embed = editable != Editable::No && OptionsHolder().on("chkEmbedNativeInfo");
        return encodeEditable(document, embed, progress);
    }
    const Result<TBitmap> picture = outputPicture(document, *text_);
    if (!picture) return picture.failure();
    if (format == PictureFormat::Pdf) {
        std::vector<uint8_t> file;
        const ByteSink append = [&file](std::span<const uint8_t> data) {
            file.insert(file.end(), data.begin(), data.end());
            return Status();
        };
        if (Status written = SaveBitmapAsPdf(append, *picture, progress); !written) return written.failure();
        return file;
    }
    return encodePicture(*picture, format, {jpegQuality(), {}, progress});
}

/// Writes a file that appears only when it is complete: over one of that name, or, with `otherName`, under the first
/// name that it gives which nobody takes in the meantime. Nothing when the user cancelled or it failed, after a
/// message.
std::optional<fs::path> TSaver::writeTarget(const fs::path& path, const Encode& encode,
                                            const std::function<bool()>& cancelled, const OtherName& otherName) {
    TemporaryOutput output(path, {.overwrite = !otherName, .inherits = true});
    const auto cannotCreate = [&output] {
        showError("Cannot create file: " + utf8FromPath(output.target()) + " for writing" +
                  explained(output.target(), output.trouble()));
        return std::nullopt;
    };
    if (!output.open()) return cannotCreate();
    const Result<std::vector<uint8_t>> data = encode();
    if (cancelled()) return std::nullopt;
    if (!data) {
        showError(data.message());
        return std::nullopt;
    }
    if (!output.write(*data)) return cannotCreate();
    while (!output.commit()) {
        const fs::path other = otherName && output.trouble() == FileTrouble::Exists ? otherName() : fs::path();
        if (other.empty() || other == output.target()) return cannotCreate();
        output.rename(utf8FromPath(other.filename()));
    }
    return output.target();
}

std::optional<fs::path> TSaver::savePicture(CaptureDocument& document, SaveMode mode) {
    const BackToRest rest(document);
    const std::string name = nextDefaultName(document);
    PictureTarget target;
    OtherName freeName;
    if (mode == SaveMode::Interactive) {
        const auto answer = withQuality(saveDialogs().askPicture(lastSaveFolder(), name, lastFormat()));
        if (!answer) return std::nullopt;
        target = *answer;
    } else {
        freeName = [folder = lastSaveFolder(), name, format = target.format] {
            return freePath(folder, name, extensionOf(format));
        };
        target.path = freeName();
    }
    if (target.path.parent_path().empty()) return refuseWithoutFolder();
    {
        WaitWindow wait(creatingPictures);
        const auto written = writeTarget(
            target.path, [&] { return encode(document, target.format, wait.asProgress()); },
            [&wait] { return wait.cancelled(); }, freeName);
        if (!written) return std::nullopt;
        target.path = *written;
    }
    removeAbandonedOutputs(target.path.parent_path());
    document.markSaved();
    debugDetail("saved " + utf8FromPath(target.path));
    if (mode == SaveMode::Interactive) finishSaving(target.path, target.format);
    return target.path;
}

bool TSaver::savePictures(Documents documents) {
    if (documents.empty()) return false;
    if (documents.size() == 1) return savePicture(*documents.front(), SaveMode::Interactive).has_value();
    const auto target = withQuality(saveDialogs().askFolder(lastSaveFolder(), lastFormat()));
    if (!target) return false;
    const std::optional<Paths> files = saveInto(target->path, documents, target->format);
    if (!files) return false;
    for (CaptureDocument* document : documents) document->markSaved();
    finishSaving(files->front(), target->format);
    return true;
}

std::optional<TSaver::Paths> TSaver::saveInto(const fs::path& folder, Documents documents, PictureFormat format,
                                              Editable editable) {
    checkDocuments(documents);
    if (folder.empty()) return refuseWithoutFolder();
    WaitWindow wait(creatingPictures);
    Paths written;
    for (size_t i = 0; i < documents.size(); ++i) {
        wait.setPart(i, documents.size());
        const BackToRest rest(*documents[i]);
        const OtherName freeName = [&folder, name = nextDefaultName(*documents[i]), format] {
            return freePath(folder, name, extensionOf(format));
        };
        const auto file = writeTarget(
            freeName(), [&] { return encode(*documents[i], format, wait.asProgress(), editable); },
            [&wait] { return wait.cancelled(); }, freeName);
        if (!file) {
            removeFiles(written);
            return std::nullopt;
        }
        written.push_back(*file);
    }
    removeAbandonedOutputs(folder);
    return written;
}

std::optional<Editable> TSaver::askEditable(Documents documents, PictureFormat format) {
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

std::optional<TSaver::Paths> TSaver::saveForWork(const Result<fs::path>& folder, Documents documents,
                                                 PictureFormat format) {
    if (!folder) {
        showError(folder.message());
        return std::nullopt;
    }
    const std::optional<Editable> editable = askEditable(documents, format);
    if (!editable) return std::nullopt;
    std::optional<Paths> files = saveInto(*folder, documents, format, *editable);
    if (files)
        for (const fs::path& path : *files) rememberWorkingFile(path);
    return files;
}

bool TSaver::copyToClipboard(Documents documents) {
    checkDocuments(documents);
    if (documents.empty()) return false;
    Status copied;
    {
        WaitWindow wait("Please wait: copying data to clipboard...");
        Result<TBitmap> picture = Failure{};
        if (documents.size() == 1) {
            picture = outputPicture(*documents.front(), *text_);
        } else {
            wait.setText("Please wait: concatenating images");
            wait.setPart(0, 2);
            std::vector<TBitmap> pictures;
            pictures.reserve(documents.size());
            std::vector<const TBitmap*> parts;
            for (CaptureDocument* document : documents) {
                const double done = static_cast<double>(pictures.size()) / static_cast<double>(documents.size());
                if (!wait.progress(done)) return false;
                const BackToRest rest(*document);
                Result<TBitmap> one = outputPicture(*document, *text_);
                if (!one) {
                    showError(one.message());
                    return false;
                }
                pictures.push_back(one.take());
            }
            parts.reserve(pictures.size());
            for (const TBitmap& one : pictures) parts.push_back(&one);
            picture = joinPictures(parts);
            wait.setPart(1, 2);
        }
        if (picture) wait.setText("Please wait: copying data to clipboard...");
        copied = picture ? copyPictureToClipboard(*picture, wait.asProgress()) : Status(picture.failure());
        if (wait.cancelled()) return false;
    }
    if (!copied) {
        showError(copied.message());
        return false;
    }
    showRemembered("cmbCopiedSuccessfullyMessage",
                   {"The image has been copied into windows Clipboard.\r\nNow you can paste it using standard "
                    "\"Ctrl+V\" key combination.",
                    "Copied successfully", MessageIcon::Information});
    return true;
}

bool TSaver::sendByMail(Documents documents, PictureFormat format, void* window) {
    const Result<fs::path> folder = mailFolder();
    if (folder) cleanUpMailFolder();
    const std::optional<Paths> files = saveForWork(folder, documents, format);
    return files && mailFiles(*files, window);
}

bool TSaver::mailFiles(const Paths& files, void* window) {
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

std::optional<TSaver::Paths> TSaver::publish(Documents documents, PictureFormat format) {
    return saveForWork(publishFolder(), documents, format);
}

std::optional<TSaver::Paths> TSaver::saveForExternalEditor(Documents documents, PictureFormat format) {
    return saveForWork(externalEditorFolder(), documents, format);
}

bool TSaver::startExternalEditor(const std::string& program, const std::string& parameters) {
    if (shellStart().open(program, parameters)) return true;
    showError("An error occured while starting external editor.\r\nPlease check whether specified path exists.");
    return false;
}

}  // namespace glimmer
