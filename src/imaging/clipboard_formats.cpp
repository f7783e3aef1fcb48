#include "imaging/clipboard_formats.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <optional>

#include "common/bytes.h"
#include "imaging/picture_file.h"

namespace glimmer {

namespace {

constexpr uint32_t infoHeaderSize = 40;
constexpr uint32_t coreHeaderSize = 12;
constexpr uint32_t v5HeaderSize = 124;
constexpr uint32_t fileHeaderSize = 14;
constexpr uint32_t uncompressed = 0;
constexpr uint32_t bitFields = 3;
constexpr uint32_t alphaBitFields = 6;
constexpr uint32_t sRgb = 0x73524742;      // 'sRGB'
constexpr uint32_t intentGraphics = 2;     // LCS_GM_GRAPHICS
constexpr uint32_t pixelsPerMetre = 3780;  // 96 to the inch

/// The 40 bytes that all headers begin with.
void writeHeader(ByteWriter& out, uint32_t headerSize, const TBitmap& picture, uint32_t bits, uint32_t compression) {
    const size_t stride = TBitmap::stride(picture.width(), static_cast<PixelFormat>(bits));
    out.u32(headerSize);
    out.i32(picture.width());
    out.i32(picture.height());  // positive: from the bottom
    out.u32(1U | bits << 16U);  // planes, bits
    out.u32(compression);
    out.u32(static_cast<uint32_t>(stride * static_cast<size_t>(picture.height())));
    out.u32(pixelsPerMetre);
    out.u32(pixelsPerMetre);
    out.u32(0);  // no colour table
    out.u32(0);
}

void writeRows(ByteWriter& out, const TBitmap& picture) {
    for (int32_t y = picture.height() - 1; y >= 0; --y) out.bytes({picture.row(y), picture.stride()});
}

/// Whether the three masks of a long header stand behind it a second time, as some programs write them: there is room
/// for them, and they are the same.
bool masksTwice(std::span<const uint8_t> dib, uint32_t offset) {
    ByteReader in(dib);
    const uint32_t headerSize = in.u32();
    const int64_t width = in.i32();
    const int64_t height = in.i32();
    const int64_t bits = in.u32() >> 16U;
    if (in.u32() != bitFields || headerSize < 52 || width <= 0) return false;
    // What another program says may be anything: nothing is multiplied that could run over.
    constexpr size_t masks = 12;
    if ((bits != 16 && bits != 32) || height == 0 || dib.size() < offset + masks) return false;
    const int64_t stride = (width * bits + 31) / 32 * 4;
    if (static_cast<int64_t>(dib.size() - offset - masks) / stride < std::abs(height)) return false;
    return std::equal(dib.begin() + infoHeaderSize, dib.begin() + infoHeaderSize + masks, dib.begin() + offset);
}

/// Where the pixels begin in a packed bitmap, as its header says.
std::optional<uint32_t> pixelOffset(std::span<const uint8_t> dib) {
    ByteReader in(dib);
    const uint32_t headerSize = in.u32();
    if (headerSize == coreHeaderSize) {
        in.bytes(4);
        const uint32_t bits = in.u32() >> 16U;
        return in.ok() ? std::optional(headerSize + (bits <= 8 ? (1U << bits) * 3 : 0)) : std::nullopt;
    }
    if (headerSize < infoHeaderSize || headerSize > v5HeaderSize) return std::nullopt;
    in.bytes(8);
    const uint32_t bits = in.u32() >> 16U;
    const uint32_t compression = in.u32();
    in.bytes(12);
    uint32_t colours = in.u32();
    if (!in.ok() || colours > 256) return std::nullopt;
    if (colours == 0 && bits <= 8) colours = 1U << bits;
    uint32_t masks = 0;  // a short header has them behind it
    if (headerSize == infoHeaderSize && compression == bitFields) masks = 12;
    if (headerSize == infoHeaderSize && compression == alphaBitFields) masks = 16;
    return headerSize + masks + colours * 4;
}

}  // namespace

Result<std::vector<uint8_t>> clipboardDib(const TBitmap& picture) {
    const Result<TBitmap> opaque = flattenedOnWhite(picture);
    if (!opaque) return opaque.failure();
    ByteWriter out;
    writeHeader(out, infoHeaderSize, *opaque, 24, uncompressed);
    writeRows(out, *opaque);
    return out.take();
}

Result<std::vector<uint8_t>> clipboardDibV5(const TBitmap& picture) {
    if (picture.format() != PixelFormat::Bgra32) {
        const Result<TBitmap> converted = picture.converted(PixelFormat::Bgra32);
        if (!converted) return converted.failure();
        return clipboardDibV5(*converted);
    }
    ByteWriter out;
    writeHeader(out, v5HeaderSize, picture, 32, bitFields);
    for (const uint32_t mask : {0x00FF0000U, 0x0000FF00U, 0x000000FFU, 0xFF000000U}) out.u32(mask);
    out.u32(sRgb);
    for (int i = 0; i < 12; ++i) out.u32(0);  // end points and gamma, of no meaning with sRGB
    out.u32(intentGraphics);
    for (int i = 0; i < 3; ++i) out.u32(0);  // no profile
    writeRows(out, picture);
    return out.take();
}

std::vector<uint32_t> readingOrder(std::span<const uint32_t> offered, uint32_t png) {
    std::vector<uint32_t> order;
    for (const uint32_t format : offered)
        if (format == formatDib || format == formatDibV5) order.push_back(format);
    if (std::find(offered.begin(), offered.end(), png) != offered.end()) order.insert(order.begin(), png);
    return order;
}

Result<TBitmap> pictureFromDib(std::span<const uint8_t> dib) {
    std::optional<uint32_t> offset = pixelOffset(dib);
    if (!offset || *offset >= dib.size() || dib.size() > std::numeric_limits<uint32_t>::max() - fileHeaderSize)
        return Failure{"The clipboard's image is damaged."};
    if (masksTwice(dib, *offset)) *offset += 12;
    ByteWriter file;
    file.u8('B');
    file.u8('M');
    file.u32(static_cast<uint32_t>(dib.size()) + fileHeaderSize);
    file.u32(0);
    file.u32(*offset + fileHeaderSize);
    file.bytes(dib);
    return readPicture(file.data());
}

}  // namespace glimmer
