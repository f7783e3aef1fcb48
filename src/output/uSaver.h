#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "common/bitmap.h"
#include "common/progress.h"
#include "common/result.h"
#include "editor/painting/text_painter.h"
#include "imaging/picture_file.h"

namespace glimmer {

class CaptureDocument;

/// Whether a PNG file carries its annotations and the clean page below them.
enum class Editable : uint8_t { AsTheOptionSays, No };

/// Turns captures into output: bytes, files, projects, pages, one joined picture. Shows no window and asks nothing:
/// what goes wrong is a sentence for the caller to tell, and then nothing is left half-written. Who stops it by its
/// progress gets a failure too, and knows that there is nothing to tell. One object for the controller's life.
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

    /// The capture's output picture as a file of that format in memory.
    Result<std::vector<uint8_t>> encode(const CaptureDocument& document, PictureFormat format,
                                        const Progress& progress = {}, Editable editable = Editable::AsTheOptionSays);
    /// The output picture, of several captures joined side by side.
    Result<TBitmap> picture(Documents documents, const Progress& progress = {});

    /// Writes a capture into that file, over an older one; it counts as saved then. The path again.
    Result<std::filesystem::path> save(CaptureDocument& document, const std::filesystem::path& path,
                                       PictureFormat format, const Progress& progress = {});
    /// The same into a folder under a name (without extension), never over an existing file.
    Result<std::filesystem::path> saveAs(CaptureDocument& document, const std::filesystem::path& folder,
                                         const std::string& name, PictureFormat format, const Progress& progress = {});
    /// One file each under its default name, never over an existing one; none is left when one of them failed. For
    /// copies: the captures do not count as saved.
    Result<Paths> saveInto(const std::filesystem::path& folder, Documents documents, PictureFormat format,
                           Editable editable = Editable::AsTheOptionSays, const Progress& progress = {});
    /// The same into a folder of the program's own, from which the files are cleaned up one day.
    Result<Paths> saveForWork(const std::filesystem::path& folder, Documents documents, PictureFormat format,
                              Editable editable, const Progress& progress = {});

    /// Writes all captures as a project, whatever the option for pictures says with what is needed to edit them.
    Status saveProject(Documents documents, const std::filesystem::path& path, const Progress& progress = {});
    /// Writes an HTML page that shows the captures, with a folder of their pictures beside it.
    Status savePage(Documents documents, const std::filesystem::path& path, const Progress& progress = {});

    /// The text of labels in output pictures.
    [[nodiscard]] TextPainter& textPainter() { return *text_; }

private:
    std::unique_ptr<TextPainter> text_;
};

/// The next default name of the file name template, for this capture; the number goes on.
std::string nextDefaultName(const CaptureDocument& document);

}  // namespace glimmer
