#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "common/bitmap.h"
#include "common/progress.h"
#include "common/result.h"

namespace glimmer {

/// One text chunk. Keyword: 1 to 79 printable Latin-1 bytes. Text: UTF-8.
struct PngText {
    std::string keyword;
    std::string text;
    bool operator==(const PngText&) const = default;
};

/// One private chunk: a four-letter type, "bBIn" or "bBPn", and its data without length and checksum.
struct PngChunk {
    std::string type;
    std::vector<uint8_t> data;
    bool operator==(const PngChunk&) const = default;
};

/// What travels in a PNG file beside its pixels, each list in file order.
struct PngExtras {
    std::vector<PngText> texts;
    std::vector<PngChunk> chunks;
};

struct PngPicture {
    TBitmap bitmap;  ///< always 32 bits; every alpha is 255 when the file has no transparency
    PngExtras extras;
    /// There were private chunks, but too many, too large or damaged: none is handed out, the picture is flat.
    bool chunksRefused = false;
};

/// Bounds of what is accepted from outside. What this program writes keeps within them too.
struct PngLimits {
    static constexpr size_t fileBytes = size_t{512} * 1024 * 1024;     ///< one whole file
    static constexpr size_t chunks = 1000000;                          ///< chunks in a file, image data included
    static constexpr size_t privateChunks = 10000;                     ///< more of them: all are refused
    static constexpr size_t privateBytes = size_t{256} * 1024 * 1024;  ///< their data together
    static constexpr size_t texts = 16;                                ///< further text chunks are skipped
    static constexpr size_t textBytes = size_t{4} * 1024 * 1024;       ///< one text, packed or unpacked
};

/// Those of them that depend on what a user draws, the same for who writes a file and who reads it.
struct PngBounds {
    size_t fileBytes = PngLimits::fileBytes;
    size_t privateChunks = PngLimits::privateChunks;
    size_t privateBytes = PngLimits::privateBytes;
};

/// Takes the next bytes of an output.
using ByteSink = std::function<Status(std::span<const uint8_t>)>;

/// Decodes a PNG file of any kind: grey, palette, true colour, 1 to 16 bits (16 are rounded to 8), with alpha or a
/// transparent colour, interlaced or not. Gamma and colour profiles are not applied. A picture that is cut short or
/// damaged in any pixel is refused; damage in the private chunks alone only sets chunksRefused.
Result<PngPicture> readPng(std::span<const uint8_t> file, const PngBounds& bounds = {});

/// Encodes a picture, pixel for pixel. The file has no alpha channel when the picture has no transparency. Texts are
/// written compressed ("zTXt") before the image data, private chunks after it, both in the order given. Fails on an
/// empty picture, on one that readPng() would not take back whole within the same bounds, when `sink` fails (with its
/// reason) and when `progress` answers false.
Status writePng(const TBitmap& bitmap, const PngExtras& extras, const ByteSink& sink, const Progress& progress = {},
                const PngBounds& bounds = {});
/// The same into memory.
Result<std::vector<uint8_t>> encodePng(const TBitmap& bitmap, const PngExtras& extras = {},
                                       const Progress& progress = {});

/// Answers whether `count` bytes from `data` on may be read.
using ReadableProbe = std::function<bool(const uint8_t* data, size_t count)>;
/// Length of a PNG file that lies at `data` with nothing said about its length: walks from chunk to chunk up to the
/// end chunk, and asks `readable` before it looks at any byte. Every byte of the length answered was asked for.
/// Fails when the data is no PNG file, leaves readable memory or goes beyond PngLimits.
Result<size_t> measurePng(const uint8_t* data, const ReadableProbe& readable);

}  // namespace glimmer
