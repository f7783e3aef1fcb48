#include <algorithm>
#include <array>
#include <bit>
#include <optional>

#include "common/bytes.h"
#include "imaging/bmp_codec.h"

namespace glimmer {

namespace {

enum Compression : uint32_t { plain = 0, runs8 = 1, runs4 = 2, bitFields = 3, alphaBitFields = 6 };

constexpr size_t fileHeaderSize = 14;
constexpr uint32_t coreHeaderSize = 12;
constexpr uint32_t infoHeaderSize = 40;

/// One channel of a pixel with bit fields.
struct Field {
    uint32_t mask = 0;
    [[nodiscard]] uint8_t of(uint32_t pixel) const {
        if (mask == 0) return 0;
        const uint64_t top = mask >> static_cast<unsigned>(std::countr_zero(mask));
        const uint64_t value = (pixel & mask) >> static_cast<unsigned>(std::countr_zero(mask));
        return static_cast<uint8_t>((value * 255 + top / 2) / top);
    }
    /// The bits of a field stand together.
    [[nodiscard]] bool valid() const {
        if (mask == 0) return true;
        const uint64_t top = mask >> static_cast<unsigned>(std::countr_zero(mask));
        return (top & (top + 1)) == 0;
    }
};

struct Header {
    int32_t width = 0;
    int32_t height = 0;
    bool topDown = false;
    unsigned bits = 0;
    uint32_t compression = plain;
    Field red, green, blue, alpha;
    std::array<Colour, 256> palette{};
    std::span<const uint8_t> pixels;
};

uint16_t u16(ByteReader& in) {
    const uint8_t low = in.u8();
    return static_cast<uint16_t>(low | in.u8() << 8U);
}

const Failure cutShort{"The BMP picture is cut short."};
const Failure damaged{"The BMP picture is damaged."};

Status readFields(ByteReader& in, Header& header, uint32_t headerSize) {
    if (header.compression == plain) {
        if (header.bits == 16) {
            header.red.mask = 0x7C00;
            header.green.mask = 0x03E0;
            header.blue.mask = 0x001F;
        } else {
            header.red.mask = 0x00FF0000;
            header.green.mask = 0x0000FF00;
            header.blue.mask = 0x000000FF;
        }
        return {};
    }
    // The masks are part of the longer headers and follow the short one.
    header.red.mask = in.u32();
    header.green.mask = in.u32();
    header.blue.mask = in.u32();
    if (headerSize >= 56 || header.compression == alphaBitFields) header.alpha.mask = in.u32();
    if (!header.red.valid() || !header.green.valid() || !header.blue.valid() || !header.alpha.valid()) return damaged;
    return {};
}

Result<Header> readHeader(std::span<const uint8_t> file) {
    if (file.size() < 2 || file[0] != 'B' || file[1] != 'M') return Failure{"The data is not a BMP picture."};
    ByteReader in(file);
    in.bytes(10);
    const uint32_t pixelOffset = in.u32();
    const uint32_t headerSize = in.u32();
    Header header;
    uint32_t colours = 0;
    int64_t height = 0;
    if (headerSize == coreHeaderSize) {
        header.width = u16(in);
        height = u16(in);
        in.bytes(2);
        header.bits = u16(in);
    } else if (headerSize >= 16 && headerSize <= 256) {
        // OS/2 lets its header end early; what is missing is 0.
        const std::span<const uint8_t> rest = in.bytes(headerSize - 4);
        if (rest.empty()) return cutShort;
        std::array<uint8_t, infoHeaderSize - 4> whole{};
        std::copy_n(rest.begin(), std::min(rest.size(), whole.size()), whole.begin());
        ByteReader fields(whole);
        header.width = fields.i32();
        height = fields.i32();
        fields.bytes(2);
        header.bits = u16(fields);
        header.compression = fields.u32();
        fields.bytes(12);
        colours = fields.u32();
        in = ByteReader(file);
        in.bytes(fileHeaderSize + std::min(headerSize, infoHeaderSize));
        if (headerSize == 64 && header.compression >= bitFields)
            return Failure{"BMP pictures of this kind cannot be read."};
    } else {
        return damaged;
    }
    if (!in.ok()) return cutShort;
    header.topDown = height < 0;
    height = std::abs(height);
    if (Status fits = TBitmap::check(header.width, height, PixelFormat::Bgra32); !fits) return fits.failure();
    header.height = static_cast<int32_t>(height);

    const bool indexed = header.bits == 1 || header.bits == 4 || header.bits == 8;
    const bool known =
        (header.compression == plain && (indexed || header.bits == 16 || header.bits == 24 || header.bits == 32)) ||
        (header.compression == runs8 && header.bits == 8 && !header.topDown) ||
        (header.compression == runs4 && header.bits == 4 && !header.topDown) ||
        ((header.compression == bitFields || header.compression == alphaBitFields) &&
         (header.bits == 16 || header.bits == 32));
    if (!known) return Failure{"BMP pictures of this kind cannot be read."};
    if (header.bits == 16 || header.bits == 32)
        if (Status fields = readFields(in, header, headerSize); !fields) return fields.failure();

    if (indexed) {
        in = ByteReader(file);
        in.bytes(fileHeaderSize + headerSize);
        const size_t all = size_t{1} << header.bits;
        const size_t count = colours == 0 || colours > all ? all : colours;
        const size_t step = headerSize == coreHeaderSize ? 3 : 4;
        for (size_t i = 0; i < count; ++i) {
            // Some files have fewer entries than they say and go over into the pixels.
            if (fileHeaderSize + headerSize + (i + 1) * step > std::max<size_t>(pixelOffset, fileHeaderSize)) break;
            const std::span<const uint8_t> entry = in.bytes(step);
            if (entry.empty()) return cutShort;
            header.palette[i] = rgb(entry[2], entry[1], entry[0]);
        }
    }
    if (!in.ok()) return cutShort;
    if (pixelOffset < fileHeaderSize + headerSize || pixelOffset > file.size()) return damaged;
    header.pixels = file.subspan(pixelOffset);
    return header;
}

int32_t targetRow(const Header& header, int32_t fileRow) {
    return header.topDown ? fileRow : header.height - 1 - fileRow;
}

void put24(uint8_t* to, Colour colour) {
    to[0] = blueOf(colour);
    to[1] = greenOf(colour);
    to[2] = redOf(colour);
}

Result<TBitmap> readPlain(const Header& header) {
    const size_t fileStride = (static_cast<size_t>(header.width) * header.bits + 31) / 32 * 4;
    if (header.pixels.size() / fileStride < static_cast<size_t>(header.height)) {
        // The last row may lack its padding.
        const size_t needed = fileStride * static_cast<size_t>(header.height - 1) +
                              (static_cast<size_t>(header.width) * header.bits + 7) / 8;
        if (header.pixels.size() < needed) return cutShort;
    }
    const bool wide = header.alpha.mask != 0;
    Result<TBitmap> bitmap =
        TBitmap::create(header.width, header.height, wide ? PixelFormat::Bgra32 : PixelFormat::Bgr24);
    if (!bitmap) return bitmap;
    uint8_t allAlpha = 0;
    for (int32_t y = 0; y < header.height; ++y) {
        const uint8_t* from = header.pixels.data() + fileStride * static_cast<size_t>(y);
        uint8_t* to = bitmap->row(targetRow(header, y));
        if (header.bits == 24) {
            std::copy_n(from, static_cast<size_t>(header.width) * 3, to);
            continue;
        }
        for (int32_t x = 0; x < header.width; ++x) {
            if (header.bits <= 8) {
                const auto bit = static_cast<unsigned>(x) * header.bits;
                const unsigned shift = 8 - header.bits - bit % 8;
                const unsigned index = from[bit / 8] >> shift & ((1U << header.bits) - 1);
                put24(to, header.palette[index]);
            } else {
                uint32_t pixel = static_cast<uint32_t>(from[0]) | static_cast<uint32_t>(from[1]) << 8U;
                if (header.bits == 32)
                    pixel |= static_cast<uint32_t>(from[2]) << 16U | static_cast<uint32_t>(from[3]) << 24U;
                from += header.bits / 8;
                to[0] = header.blue.of(pixel);
                to[1] = header.green.of(pixel);
                to[2] = header.red.of(pixel);
                if (wide) {
                    to[3] = header.alpha.of(pixel);
                    allAlpha |= to[3];
                }
            }
            to += wide ? 4 : 3;
        }
    }
    // A field that is declared and never used means an opaque picture.
    if (wide && allAlpha == 0) return bitmap->converted(PixelFormat::Bgr24);
    return bitmap;
}

/// Both run-length codes. Pixels that are skipped have the first colour.
Result<TBitmap> readRuns(const Header& header) {
    // The most that a code can skip is 255 x 255 pixels in four bytes; beyond, the size is a lie.
    const uint64_t pixels = static_cast<uint64_t>(header.width) * static_cast<uint64_t>(header.height);
    if (pixels > (header.pixels.size() + 1) * uint64_t{16384}) return cutShort;
    Result<TBitmap> bitmap = TBitmap::create(header.width, header.height, PixelFormat::Bgr24);
    if (!bitmap) return bitmap;
    bitmap->fill(bitmap->bounds(), header.palette[0]);
    ByteReader in(header.pixels);
    int32_t x = 0;
    int32_t y = 0;
    const auto put = [&](unsigned index) {
        if (x >= header.width || y >= header.height) return;
        put24(bitmap->row(targetRow(header, y)) + static_cast<size_t>(x) * 3, header.palette[index]);
        ++x;
    };
    const bool nibbles = header.compression == runs4;
    while (in.ok() && y < header.height) {
        const unsigned count = in.u8();
        const unsigned code = in.u8();
        if (count > 0) {
            for (unsigned i = 0; i < count; ++i) put(nibbles ? (i % 2 == 0 ? code >> 4U : code & 15U) : code);
        } else if (code == 0) {
            x = 0;
            ++y;
        } else if (code == 1) {
            return bitmap;
        } else if (code == 2) {
            x += in.u8();
            y += in.u8();
            if (x > header.width) return damaged;
        } else {
            const size_t bytes = nibbles ? (code + 1) / 2 : code;
            const std::span<const uint8_t> run = in.bytes(bytes);
            if (run.empty()) return cutShort;
            for (unsigned i = 0; i < code; ++i)
                put(nibbles ? (i % 2 == 0 ? run[i / 2] >> 4U : run[i / 2] & 15U) : run[i]);
            // Runs are padded to an even length.
            if (bytes % 2 != 0) in.u8();
        }
    }
    // The end mark may be missing once all rows are there.
    if (y < header.height - 1 || (y == header.height - 1 && x < header.width)) return cutShort;
    return bitmap;
}

}  // namespace

Result<TBitmap> readBmp(std::span<const uint8_t> file) {
    const Result<Header> header = readHeader(file);
    if (!header) return header.failure();
    if (header->compression == runs8 || header->compression == runs4) return readRuns(*header);
    return readPlain(*header);
}

}  // namespace glimmer
