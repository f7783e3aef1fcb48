#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/bitmap.h"
#include "common/result.h"
#include "imaging/png_codec.h"

namespace glimmer {

/// The picture formats; the number is that of the save dialog's filter list, counted from 0, and is stored in
/// settings.
enum class PictureFormat { Png = 0, Jpeg = 1, Gif = 2, Bmp = 3, Pdf = 4 };

/// One row of the table of formats.
struct PictureFormatInfo {
    PictureFormat format;
    std::string_view filterText;  ///< "JPEG Image File (*.jpg)"
    std::string_view extension;   ///< ".jpg"
};

/// All formats in the order of the save dialog.
std::span<const PictureFormatInfo> pictureFormats();

/// Extension for a format number; every number outside 0 to 3 gives ".pdf".
std::string_view extensionOf(int formatNumber);
std::string_view extensionOf(PictureFormat format);

/// Format for a file name by its extension in any case of letters (".jpeg" is one too); nothing when it is another.
std::optional<PictureFormat> formatOfName(std::string_view name);

/// Kind of a picture file by its first bytes; nothing when it is none that can be read (a PDF file cannot).
std::optional<PictureFormat> detectPicture(std::span<const uint8_t> file);

/// Decodes a PNG, JPEG, GIF (first frame) or BMP file, told apart by its bytes. The bitmap has 32 bits when the
/// file's kind knows transparency, else 24 or 32. Damaged or too large files are refused with a sentence.
Result<TBitmap> readPicture(std::span<const uint8_t> file);

struct EncodeOptions {
    static constexpr int defaultJpegQuality = 80;
    int jpegQuality = defaultJpegQuality;  ///< 1 to 100; others are brought into the range
    PngExtras extras;                      ///< for PNG only
    Progress progress;                     ///< see Progress in png_codec.h
};

/// Encodes a picture in one of the readable formats (PDF has its own writer). PNG keeps transparency; the others
/// know none and get the picture on white.
Result<std::vector<uint8_t>> encodePicture(const TBitmap& bitmap, PictureFormat format,
                                           const EncodeOptions& options = {});

/// A 24-bit copy of a picture, laid on white where it is transparent.
Result<TBitmap> flattenedOnWhite(const TBitmap& bitmap);

}  // namespace glimmer
