#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "output/uSaver.h"

namespace glimmer {

/// How a capture is saved; the values are those of the capture actions' description.
enum class SaveMode : uint8_t {
    Interactive = 5,  ///< the save dialog asks for name and format
    Automatic = 7,    ///< PNG under the default name in the folder used last, without a question
};

/// The saver's outputs as the user meets them: dialogs before, the wait window meanwhile, messages afterwards. A
/// capture that could not be saved stays open and unsaved.
class SpokenSaver {
public:
    using Documents = TSaver::Documents;
    using Paths = TSaver::Paths;

    /// `saver` outlives it.
    explicit SpokenSaver(TSaver& saver) : saver_(saver) {}

    /// The file written, or nothing when the user gave up or it failed.
    std::optional<std::filesystem::path> savePicture(CaptureDocument& document, SaveMode mode);
    /// Interactively: one as above, several into one folder under their default names. Whether all were saved; of
    /// several none is when the user gave up or one failed.
    bool savePictures(Documents documents);

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

    /// Captures are about to leave the computer, or for another program: asks once, with an answer that can be kept,
    /// whether what is covered on them may be uncovered there. Asks nothing when nothing is covered or the files carry
    /// no clean page anyway. Nothing when the user gives up.
    static std::optional<Editable> askEditable(Documents documents, PictureFormat format);

private:
    std::optional<Paths> saveForWork(const Result<std::filesystem::path>& folder, Documents documents,
                                     PictureFormat format);

    TSaver& saver_;
};

}  // namespace glimmer
