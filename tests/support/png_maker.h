#pragma once

#include <zlib.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

// Makes PNG files of every kind by the format's plain rules, with nothing but zlib, so that a reader is tested
// against something else than the writer beside it.

namespace glimmer::test {

using Bytes = std::vector<uint8_t>;

inline void putBig32(Bytes& out, uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<uint8_t>(value >> shift));
}

inline void putChunk(Bytes& out, std::string_view type, const Bytes& data) {
    putBig32(out, static_cast<uint32_t>(data.size()));
    const size_t start = out.size();
    out.insert(out.end(), type.begin(), type.end());
    out.insert(out.end(), data.begin(), data.end());
    putBig32(out, static_cast<uint32_t>(crc32(0, out.data() + start, static_cast<uInt>(out.size() - start))));
}

inline Bytes deflated(const Bytes& data) {
    uLongf length = compressBound(static_cast<uLong>(data.size()));
    Bytes out(length);
    compress(out.data(), &length, data.data(), static_cast<uLong>(data.size()));
    out.resize(length);
    return out;
}

/// The content of a zlib stream that holds `size` bytes; another length when it does not, empty when it is damaged.
inline Bytes inflated(const Bytes& stream, size_t size) {
    Bytes out(size + 1);
    uLongf length = static_cast<uLongf>(out.size());
    if (uncompress(out.data(), &length, stream.data(), static_cast<uLong>(stream.size())) != Z_OK) length = 0;
    out.resize(length);
    return out;
}

struct PngKind {
    int depth = 8;       ///< bits of a sample
    int colourType = 2;  ///< as in the file: 0 grey, 2 RGB, 3 palette, 4 grey + alpha, 6 RGB + alpha
    bool interlaced = false;
    Bytes palette;       ///< content of PLTE
    Bytes transparency;  ///< content of tRNS
};

/// `sample(x, y, channel)` answers a raw sample of the kind's depth.
inline Bytes makePng(uint32_t width, uint32_t height, const PngKind& kind,
                     const std::function<uint32_t(uint32_t, uint32_t, int)>& sample) {
    const int channels = kind.colourType == 2 ? 3 : kind.colourType == 4 ? 2 : kind.colourType == 6 ? 4 : 1;
    struct Pass {
        uint32_t x, y, dx, dy;
    };
    const std::vector<Pass> passes = kind.interlaced
                                         ? std::vector<Pass>{{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4},
                                                             {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}}
                                         : std::vector<Pass>{{0, 0, 1, 1}};
    Bytes raw;
    for (const Pass& pass : passes) {
        if (pass.x >= width) continue;
        for (uint32_t y = pass.y; y < height; y += pass.dy) {
            raw.push_back(0);
            uint32_t bits = 0;
            int held = 0;
            for (uint32_t x = pass.x; x < width; x += pass.dx) {
                for (int c = 0; c < channels; ++c) {
                    bits = bits << kind.depth | sample(x, y, c);
                    held += kind.depth;
                    for (; held >= 8; held -= 8) raw.push_back(static_cast<uint8_t>(bits >> (held - 8)));
                }
            }
            if (held > 0) raw.push_back(static_cast<uint8_t>(bits << (8 - held)));
        }
    }
    Bytes file{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    Bytes header;
    putBig32(header, width);
    putBig32(header, height);
    header.insert(header.end(), {static_cast<uint8_t>(kind.depth), static_cast<uint8_t>(kind.colourType), 0, 0,
                                 static_cast<uint8_t>(kind.interlaced ? 1 : 0)});
    putChunk(file, "IHDR", header);
    putChunk(file, "gAMA", {0, 0, 0x80, 0});
    if (!kind.palette.empty()) putChunk(file, "PLTE", kind.palette);
    if (!kind.transparency.empty()) putChunk(file, "tRNS", kind.transparency);
    putChunk(file, "IDAT", deflated(raw));
    putChunk(file, "IEND", {});
    return file;
}

}  // namespace glimmer::test
