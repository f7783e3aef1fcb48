#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "imaging/picture_file.h"

namespace glimmer {

/// Where a picture, or several, shall be saved, and how.
struct PictureTarget {
    std::filesystem::path path;  ///< of a file, with the format's extension, or of a folder
    PictureFormat format = PictureFormat::Png;
};

/// Asks the user for files to write: one class for people, others for tests. Nothing is answered when the user gives
/// up. `name` is the proposed name without extension.
class SaveDialogs {
public:
    virtual ~SaveDialogs() = default;
    virtual std::optional<PictureTarget> askPicture(const std::filesystem::path& folder, const std::string& name,
                                                    PictureFormat format) = 0;
    /// One folder and format for several pictures; the target's path is the folder.
    virtual std::optional<PictureTarget> askFolder(const std::filesystem::path& folder, PictureFormat format) = 0;
    virtual std::optional<std::filesystem::path> askProject(const std::filesystem::path& folder,
                                                            const std::string& name) = 0;
    virtual std::optional<std::filesystem::path> askPage(const std::filesystem::path& folder,
                                                         const std::string& name) = 0;
};

SaveDialogs& saveDialogs();
/// Replaces what asks; null means the system's dialogs again. The object must live until it is replaced.
void setSaveDialogs(SaveDialogs* dialogs);

/// The file name with the extension of a format in place of that of another one, or behind a name that has none.
/// What the picture dialog proposes when its filter is changed.
std::string withFormatExtension(const std::string& fileName, PictureFormat format);

}  // namespace glimmer
