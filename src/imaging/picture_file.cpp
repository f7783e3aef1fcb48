#include "imaging/picture_file.h"

#include <algorithm>
#include <array>

#include "common/assertion.h"
#include "common/text.h"
#include "imaging/bmp_codec.h"
#include "imaging/gif_codec.h"
#include "imaging/jpeg_codec.h"

namespace glimmer {

namespace {

constexpr std::array<PictureFormatInfo, 5> formats{{
    {PictureFormat::Png, "Portable Network Graphics (*.png)", ".png"},
    {PictureFormat::Jpeg, "JPEG Image File (*.jpg)", ".jpg"},
    {PictureFormat::Gif, "CompuServe GIF Image (*.gif)", ".gif"},
    {PictureFormat::Bmp, "Bitmaps (*.bmp)", ".bmp"},
    {PictureFormat::Pdf, "Portable Document Format (*.pdf)", ".pdf"},
}};

bool startsWith(std::span<const uint8_t> file, std::string_view bytes) {
    return file.size() >= bytes.size() && std::equal(bytes.begin(), bytes.end(), file.begin(),
                                                     [](char a, uint8_t b) { return static_cast<uint8_t>(a) == b; });
}

uint8_t onWhite(unsigned value, unsigned alpha) {
    return static_cast<uint8_t>((value * alpha + 255 * (255 - alpha) + 127) / 255);
}

}  // namespace

std::span<const PictureFormatInfo> pictureFormats() { return formats; }

std::string_view extensionOf(int formatNumber) {
    if (formatNumber == 0) return formats[0].extension;
    if (formatNumber == 1) return formats[1].extension;
    if (formatNumber == 2) return formats[2].extension;
    if (formatNumber == 3) return formats[3].extension;
    return formats[4].extension;
}

std::string_view extensionOf(PictureFormat format) { return extensionOf(static_cast<int>(format)); }

std::optional<PictureFormat> formatOfName(std::string_view name) {
    const size_t dot = name.find_last_of("./\\");
    if (dot == std::string_view::npos || name[dot] != '.') return std::nullopt;
    const std::string_view extension = name.substr(dot);
    if (equalsIgnoringCase(extension, ".jpeg")) return PictureFormat::Jpeg;
    for (const PictureFormatInfo& info : formats)
        if (equalsIgnoringCase(extension, info.extension)) return info.format;
    return std::nullopt;
}

std::optional<PictureFormat> detectPicture(std::span<const uint8_t> file) {
    if (startsWith(file, "\x89PNG\r\n\x1A\n")) return PictureFormat::Png;
    if (startsWith(file, "\xFF\xD8\xFF")) return PictureFormat::Jpeg;
    if (startsWith(file, "GIF87a") || startsWith(file, "GIF89a")) return PictureFormat::Gif;
    if (startsWith(file, "BM")) return PictureFormat::Bmp;
    return std::nullopt;
}

Result<TBitmap> readPicture(std::span<const uint8_t> file) {
    const std::optional<PictureFormat> format = detectPicture(file);
    if (!format) return Failure{"The file is not a picture that can be read (PNG, JPEG, GIF or BMP)."};
    if (file.size() > PngLimits::fileBytes) return Failure{"The picture file is too large."};
    switch (*format) {
        case PictureFormat::Jpeg:
            return readJpeg(file);
        case PictureFormat::Gif:
            return readGif(file);
        case PictureFormat::Bmp:
            return readBmp(file);
        default:
            break;
    }
    Result<PngPicture> picture = readPng(file);
    if (!picture) return picture.failure();
    return std::move(picture->bitmap);
}

Result<std::vector<uint8_t>> encodePicture(const TBitmap& bitmap, PictureFormat format, const EncodeOptions& options) {
    GLIMMER_ASSERT(format != PictureFormat::Pdf, "format!=Pdf", "picture_file");
    if (bitmap.empty()) return Failure{"There is no picture to write."};
    if (format == PictureFormat::Png) return encodePng(bitmap, options.extras, options.progress);
    if (bitmap.format() != PixelFormat::Bgr24) {
        const Result<TBitmap> flat = flattenedOnWhite(bitmap);
        if (!flat) return flat.failure();
        return encodePicture(*flat, format, options);
    }
    switch (format) {
        case PictureFormat::Jpeg:
            return encodeJpeg(bitmap, options.jpegQuality, options.progress);
        case PictureFormat::Gif:
            return encodeGif(bitmap, options.progress);
        default:
            return encodeBmp(bitmap, options.progress);
    }
}

Result<TBitmap> flattenedOnWhite(const TBitmap& bitmap) {
    Result<TBitmap> flat = bitmap.converted(PixelFormat::Bgr24);
    if (!flat || !bitmap.hasTransparency()) return flat;
    for (int32_t y = 0; y < bitmap.height(); ++y) {
        const uint8_t* from = bitmap.row(y);
        uint8_t* to = flat->row(y);
        for (int32_t x = 0; x < bitmap.width(); ++x, from += 4, to += 3)
            for (int c = 0; c < 3; ++c) to[c] = onWhite(from[c], from[3]);
    }
    return flat;
}

}  // namespace glimmer
