#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "common/bitmap.h"
#include "editor/painting/text_painter.h"
#include "imaging/picture_file.h"

namespace glimmer {

class CaptureDocument;

/// How a capture is saved; the values are those of the capture actions' description.
enum class SaveMode : uint8_t {
    Interactive = 5,  ///< the save dialog asks for name and format
    Automatic = 7,    ///< PNG under the default name in the folder used last, without a question
};

/// Whether a PNG file carries its annotations and the clean page below them.
enum class Editable : uint8_t { AsTheOptionSays, No };

/// Turns captures into output: files, projects, pages, mail, the clipboard. Says itself what goes wrong, with the
/// texts of a message box; a capture that could not be saved stays open and unsaved, and nothing is left half-written.
class TSaver {
public:
    using Documents = std::span<CaptureDocument* const>;
    using Paths = std::vector<std::filesystem::path>;

    TSaver();
    ~TSaver();
    TSaver(const TSaver&) = delete;
    TSaver& operator=(const TSaver&) = delete;
    TSaver(TSaver&&) = delete;
    TSaver& operator=(TSaver&&) = delete;

    /// The file written, or nothing when the user gave up or it failed.
    std::optional<std::filesystem::path> savePicture(CaptureDocument& document, SaveMode mode);
    /// Interactively: one as above, several into one folder under their default names. Whether all were saved; of
    /// several none is when the user gave up or one failed.
    bool savePictures(Documents documents);
    /// One file each under its default name, never over an existing one; nothing when any of them failed, and then
    /// none is left.
    std::optional<Paths> saveInto(const std::filesystem::path& folder, Documents documents, PictureFormat format,
                                  Editable editable = Editable::AsTheOptionSays);

    /// Copies the picture, or several joined side by side; whether it is on the clipboard.
    bool copyToClipboard(Documents documents);
    /// Saves into the mail folder and hands the files to the user's mail program, whose window belongs to `window`
    /// (HWND, may be null).
    bool sendByMail(Documents documents, PictureFormat format = PictureFormat::Png, void* window = nullptr);
    /// The second half of that: attaches files that lie in the mail folder. Whether the mail program has them, or will.
    static bool mailFiles(const Paths& files, void* window);
    /// Saves into the publish folder; the files, or nothing when it failed.
    std::optional<Paths> publish(Documents documents, PictureFormat format = PictureFormat::Png);
    /// Saves the copies that an external editor is to open; nothing when it failed.
    std::optional<Paths> saveForExternalEditor(Documents documents, PictureFormat format = PictureFormat::Png);
    /// Starts it, the parameters as they are; says what is wrong when it does not start.
    static bool startExternalEditor(const std::string& program, const std::string& parameters);

    /// Writes all captures as a project. Asks for a name when `path` is empty or `ask` is set, and puts the answer
    /// there. Whether it was saved.
    bool saveProject(Documents documents, std::filesystem::path& path, bool ask);
    /// Writes an HTML page that shows the captures, with a folder of their pictures; the page's path.
    std::optional<std::filesystem::path> exportPage(Documents documents);

    /// The capture's output picture as a file of that format in memory; the failure is a sentence.
    Result<std::vector<uint8_t>> encode(const CaptureDocument& document, PictureFormat format,
                                        const Progress& progress = {}, Editable editable = Editable::AsTheOptionSays);
    /// Captures are about to leave the computer, or for another program: asks once, with an answer that can be kept,
    /// whether what is covered on them may be uncovered there. Asks nothing when nothing is covered or the files carry
    /// no clean page anyway. Nothing when the user gives up.
    static std::optional<Editable> askEditable(Documents documents, PictureFormat format);
    /// The text of labels in output pictures.
    [[nodiscard]] TextPainter& textPainter() { return *text_; }

private:
    using Encode = std::function<Result<std::vector<uint8_t>>()>;
    Result<std::vector<uint8_t>> encodeEditable(const CaptureDocument& document, bool withAnnotations,
                                                const Progress& progress);
    using OtherName = std::function<std::filesystem::path()>;
    std::optional<std::filesystem::path> writeTarget(const std::filesystem::path& path, const Encode& encode,
                                                     const std::function<bool()>& cancelled,
                                                     const OtherName& otherName = {});
    /// Into a folder of our own, from which the files are cleaned up one day.
    std::optional<Paths> saveForWork(const Result<std::filesystem::path>& folder, Documents documents,
                                     PictureFormat format);

    std::unique_ptr<TextPainter> text_;
};

/// The next default name of the file name template, for this capture; the number goes on.
std::string nextDefaultName(const CaptureDocument& document);

}  // namespace glimmer
