// Changes PNG files chunk by chunk, so that they stay files that get past the checksums: the data of one chunk, image
// data and packed texts unpacked for it, or the chunks' order, number and types.

#include <zlib.h>

#include <algorithm>
#include <array>
#include <random>
#include <string_view>
#include <vector>

#include "fuzz/png_checksums.h"
#include "imaging/png_chunks.h"

namespace {

using namespace glimmer;
using Bytes = std::vector<uint8_t>;

struct Chunk {
    std::array<uint8_t, 4> type{};
    Bytes data;
    [[nodiscard]] bool is(std::string_view name) const { return std::equal(name.begin(), name.end(), type.begin()); }
};

constexpr size_t unpackedLimit = size_t{1} << 18U;

/// Lenient: what is behind the last whole chunk is dropped.
std::vector<Chunk> chunksOf(std::span<const uint8_t> file) {
    std::vector<Chunk> chunks;
    if (file.size() < 8 || !std::equal(pngSignature.begin(), pngSignature.end(), file.begin())) return chunks;
    for (size_t at = 8; file.size() - at >= 12;) {
        const size_t length = bigEndian32(file.data() + at);
        if (length > file.size() - at - 12) break;
        Chunk chunk;
        std::copy_n(file.begin() + static_cast<std::ptrdiff_t>(at + 4), 4, chunk.type.begin());
        const auto body = file.subspan(at + 8, length);
        chunk.data.assign(body.begin(), body.end());
        // One run of image data, so that it can be unpacked.
        if (chunk.is("IDAT") && !chunks.empty() && chunks.back().is("IDAT"))
            chunks.back().data.insert(chunks.back().data.end(), body.begin(), body.end());
        else
            chunks.push_back(std::move(chunk));
        at += 12 + length;
    }
    return chunks;
}

Bytes fileOf(const std::vector<Chunk>& chunks) {
    Bytes file(pngSignature.begin(), pngSignature.end());
    for (const Chunk& chunk : chunks) {
        for (unsigned shift = 32; shift > 0;) {
            shift -= 8;
            file.push_back(static_cast<uint8_t>(chunk.data.size() >> shift));
        }
        file.insert(file.end(), chunk.type.begin(), chunk.type.end());
        file.insert(file.end(), chunk.data.begin(), chunk.data.end());
        file.insert(file.end(), 4, 0);
    }
    repairPngChecksums(file);
    return file;
}

void mutateBytes(Bytes& bytes, size_t more) {
    const size_t size = bytes.size();
    bytes.resize(size + more);
    bytes.resize(LLVMFuzzerMutate(bytes.data(), size, bytes.size()));
}

/// Changes what is packed from `from` on; false when that is no packed data.
bool mutatePacked(Bytes& data, size_t from) {
    Bytes plain(unpackedLimit);
    uLongf length = plain.size();
    if (from > data.size() || uncompress(plain.data(), &length, data.data() + from, data.size() - from) != Z_OK)
        return false;
    plain.resize(length);
    mutateBytes(plain, 64);
    Bytes packed(compressBound(plain.size()));
    uLongf packedLength = packed.size();
    if (compress(packed.data(), &packedLength, plain.data(), plain.size()) != Z_OK) return false;
    data.resize(from);
    data.insert(data.end(), packed.begin(), packed.begin() + static_cast<std::ptrdiff_t>(packedLength));
    return true;
}

void mutateData(Chunk& chunk, bool unpack) {
    if (unpack && chunk.is("IDAT") && mutatePacked(chunk.data, 0)) return;
    if (unpack && chunk.is("zTXt")) {
        const auto end = std::find(chunk.data.begin(), chunk.data.end(), uint8_t{0});
        if (mutatePacked(chunk.data, static_cast<size_t>(end - chunk.data.begin()) + 2)) return;
    }
    mutateBytes(chunk.data, 32);
}

void mutateOrder(std::vector<Chunk>& chunks, std::mt19937& random) {
    constexpr std::array<std::string_view, 14> types = {"IHDR", "PLTE", "IDAT", "IEND", "tRNS", "tEXt", "zTXt",
                                                        "iTXt", "bBIn", "bBPn", "gAMA", "eXIf", "pHYs", "sBIT"};
    const size_t one = random() % chunks.size();
    const auto place = chunks.begin() + static_cast<std::ptrdiff_t>(one);
    switch (random() % 4) {
        case 0:
            chunks.erase(place);
            break;
        case 1: {
            const Chunk again = *place;
            chunks.insert(chunks.begin() + static_cast<std::ptrdiff_t>(random() % (chunks.size() + 1)), again);
            break;
        }
        case 2:
            std::swap(*place, chunks[random() % chunks.size()]);
            break;
        default: {
            const std::string_view type = types[random() % types.size()];
            std::copy(type.begin(), type.end(), place->type.begin());
        }
    }
}

}  // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t room, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<Chunk> chunks = chunksOf({data, size});
    if (chunks.empty() || random() % 16 == 0) return LLVMFuzzerMutate(data, size, room);
    if (random() % 6 == 0)
        mutateOrder(chunks, random);
    else
        mutateData(chunks[random() % chunks.size()], random() % 8 != 0);
    const Bytes file = fileOf(chunks);
    if (file.size() > room) return LLVMFuzzerMutate(data, size, room);
    std::copy(file.begin(), file.end(), data);
    return file.size();
}
