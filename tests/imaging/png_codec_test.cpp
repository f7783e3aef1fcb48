#include "imaging/png_codec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "imaging/png_rows.h"
#include "support/pictures.h"
#include "support/png_maker.h"

namespace glimmer {
namespace {

using test::Bytes;
using test::PngKind;

Bytes withChunks(const Bytes& file, const std::vector<std::pair<std::string, Bytes>>& chunks) {
    Bytes result(file.begin(), file.end() - 12);
    for (const auto& [type, data] : chunks) test::putChunk(result, type, data);
    test::putChunk(result, "IEND", {});
    return result;
}

Bytes small() { return encodePng(test::noise(5, 3, PixelFormat::Bgr24, 1)).take(); }

TEST(PngReader, ReadsEveryKind) {
    constexpr uint32_t width = 19;
    constexpr uint32_t height = 11;
    for (const bool interlaced : {false, true}) {
        for (const auto& [colourType, depths] : std::vector<std::pair<int, std::vector<int>>>{
                 {0, {1, 2, 4, 8, 16}}, {2, {8, 16}}, {3, {1, 2, 4, 8}}, {4, {8, 16}}, {6, {8, 16}}}) {
            for (const int depth : depths) {
                for (const bool transparent : {false, true}) {
                    if (transparent && colourType >= 4) continue;
                    SCOPED_TRACE(testing::Message() << "type " << colourType << " depth " << depth << " interlaced "
                                                    << interlaced << " transparent " << transparent);
                    const uint32_t top = (1U << static_cast<unsigned>(depth)) - 1;
                    const auto sample = [top](uint32_t x, uint32_t y, int c) {
                        return (x * 7919 + y * 104729 + static_cast<uint32_t>(c) * 31337) % 65521 & top;
                    };
                    const auto scaled = [top](uint32_t value) { return (value * 255 * 2 + top) / (2 * top); };
                    PngKind kind{depth, colourType, interlaced, {}, {}};
                    if (colourType == 3) {
                        for (uint32_t i = 0; i <= top; ++i)
                            kind.palette.insert(kind.palette.end(),
                                                {static_cast<uint8_t>(i * 3), static_cast<uint8_t>(255 - i),
                                                 static_cast<uint8_t>(i ^ 0x55U)});
                    }
                    if (transparent) {
                        if (colourType == 3) {
                            kind.transparency = {0, 128};
                        } else {
                            for (int c = 0; c < (colourType == 0 ? 1 : 3); ++c) {
                                const uint32_t value = sample(2, 1, c);
                                kind.transparency.push_back(static_cast<uint8_t>(value >> 8U));
                                kind.transparency.push_back(static_cast<uint8_t>(value));
                            }
                        }
                    }
                    Result<PngPicture> picture = readPng(test::makePng(width, height, kind, sample));
                    ASSERT_TRUE(picture.ok()) << picture.message();
                    ASSERT_EQ(picture->bitmap.format(), PixelFormat::Bgra32);
                    ASSERT_EQ(picture->bitmap.size(), (Size{width, height}));
                    for (uint32_t y = 0; y < height; ++y) {
                        for (uint32_t x = 0; x < width; ++x) {
                            uint32_t c[3];
                            uint32_t alpha = 255;
                            if (colourType == 3) {
                                const uint32_t index = sample(x, y, 0);
                                for (size_t i = 0; i < 3; ++i) c[i] = kind.palette[size_t{3} * index + i];
                                if (index < kind.transparency.size()) alpha = kind.transparency[index];
                            } else {
                                const bool grey = colourType == 0 || colourType == 4;
                                bool hit = transparent;
                                for (int i = 0; i < 3; ++i) {
                                    const int channel = grey ? 0 : i;
                                    c[i] = scaled(sample(x, y, channel));
                                    hit = hit && sample(x, y, channel) == sample(2, 1, channel);
                                }
                                if (colourType >= 4) alpha = scaled(sample(x, y, grey ? 1 : 3));
                                if (hit) alpha = 0;
                            }
                            const auto px = static_cast<int32_t>(x);
                            const auto py = static_cast<int32_t>(y);
                            ASSERT_EQ(picture->bitmap.pixel(px, py), rgb(c[0], c[1], c[2])) << x << "," << y;
                            ASSERT_EQ(picture->bitmap.alpha(px, py), alpha) << x << "," << y;
                        }
                    }
                }
            }
        }
    }
}

TEST(PngWriter, RoundTripIsExact) {
    for (const auto& [name, bitmap] : test::assortment()) {
        SCOPED_TRACE(name);
        const Bytes file = encodePng(bitmap).take();
        Result<PngPicture> again = readPng(file);
        ASSERT_TRUE(again.ok()) << again.message();
        EXPECT_TRUE(samePixels(again->bitmap, bitmap));
        // The colour type's alpha bit, or a transparency chunk for palettes.
        const bool alphaInFile = (file[25] & 4U) != 0 || std::search(file.begin(), file.end(), std::begin("tRNS"),
                                                                     std::end("tRNS") - 1) != file.end();
        EXPECT_EQ(alphaInFile, bitmap.hasTransparency());
        EXPECT_EQ(*measurePng(file.data(),
                              [&](const uint8_t* at, size_t count) {
                                  return at >= file.data() && at + count <= file.data() + file.size();
                              }),
                  file.size());
    }
    EXPECT_FALSE(encodePng(TBitmap()).ok());
}

/// Small pictures are compressed whole, the largest row by row.
TEST(PngWriter, BothWaysOfCompressingHoldTheSameRows) {
    const size_t pieceSize = 100;
    for (const auto& [name, bitmap] : test::assortment()) {
        SCOPED_TRACE(name);
        std::vector<Bytes> unpacked;
        for (const uint64_t wholeLimit : {wholeRowsLimit, uint64_t{0}}) {
            PngRows rows(bitmap);
            Bytes stream;
            const ByteSink sink = [&stream, pieceSize](std::span<const uint8_t> piece) {
                EXPECT_LE(piece.size(), pieceSize);
                stream.insert(stream.end(), piece.begin(), piece.end());
                return Status();
            };
            ASSERT_TRUE(compressRows(rows, pieceSize, sink, {}, wholeLimit).ok());
            const size_t size = rows.rowBytes() * static_cast<size_t>(bitmap.height());
            unpacked.push_back(test::inflated(stream, size));
            EXPECT_EQ(unpacked.back().size(), size);
            PngRows again(bitmap);
            EXPECT_FALSE(compressRows(
                             again, pieceSize, sink, [](double) { return false; }, wholeLimit)
                             .ok());
            EXPECT_EQ(
                compressRows(
                    again, pieceSize, [](std::span<const uint8_t>) { return Status(Failure{"full"}); }, {}, wholeLimit)
                    .message(),
                "full");
        }
        EXPECT_EQ(unpacked[0], unpacked[1]);
    }
}

TEST(PngWriter, ExtrasComeBackInOrder) {
    PngExtras extras;
    extras.texts = {{"VERSION", "1.8"},
                    {"CREATOR", ""},
                    {"LATIN", "caf\xC3\xA9"},
                    {"MISTAKABLE", "\xC3\x83\xC2\xA9"},
                    {"NOTES", "\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82\r\n" + std::string(100000, 'x')}};
    extras.chunks = {{"bBIn", {2, 1, 2, 3}}, {"bBIn", {1}}, {"bBPn", Bytes(300000, 7)}, {"bBIn", {}}, {"bBPn", {9}}};
    const Bytes file = encodePng(test::noise(40, 30, PixelFormat::Bgr24, 3), extras).take();
    Result<PngPicture> again = readPng(file);
    ASSERT_TRUE(again.ok()) << again.message();
    EXPECT_FALSE(again->chunksRefused);
    EXPECT_EQ(again->extras.texts, extras.texts);
    EXPECT_EQ(again->extras.chunks, extras.chunks);
    const std::string text(file.begin(), file.end());
    EXPECT_LT(text.find("VERSION"), text.find("CREATOR"));
    EXPECT_LT(text.find("NOTES"), text.find("IDAT"));
    EXPECT_LT(text.find("IDAT"), text.find("bBIn"));
    EXPECT_EQ(text.find("iTXt"), std::string::npos);
    EXPECT_EQ(text.find("tEXt"), std::string::npos);
    EXPECT_EQ(text.substr(text.size() - 8, 4), "IEND");
}

TEST(PngWriter, StopsWhenToldTo) {
    const TBitmap bitmap = test::noise(64, 1000, PixelFormat::Bgr24, 5);
    double last = -1;
    const Result<Bytes> all = encodePng(bitmap, {}, [&last](double part) {
        EXPECT_GE(part, last);
        EXPECT_LE(part, 1.0);
        last = part;
        return true;
    });
    EXPECT_TRUE(all.ok());
    EXPECT_GT(last, 0.5);
    EXPECT_FALSE(encodePng(bitmap, {}, [](double part) { return part < 0.3; }).ok());
    EXPECT_FALSE(encodePng(bitmap, {}, [](double) -> bool { throw std::runtime_error("form is gone"); }).ok());
    size_t taken = 0;
    const Status full = writePng(bitmap, {}, [&taken](std::span<const uint8_t> data) {
        taken += data.size();
        return taken > 5000 ? Status(Failure{"The disk is full."}) : Status();
    });
    EXPECT_EQ(full.message(), "The disk is full.");
}

TEST(PngReader, PrivateChunksThatLieLeaveThePictureFlat) {
    const Bytes file = small();
    Bytes broken = withChunks(file, {{"bBIn", {2, 0}}, {"bBPn", {1, 2, 3}}});
    broken[broken.size() - 13] ^= 1U;  // last byte of the second chunk's checksum
    Bytes total = withChunks(file, {});
    struct Case {
        const char* name;
        Bytes file;
        bool refused;
        size_t chunks;
    };
    const Case cases[] = {
        {"bad checksum", broken, true, 0},
        {"one too many", withChunks(file, {PngLimits::privateChunks + 1, {"bBIn", {1, 0}}}), true, 0},
        {"unknown types", withChunks(file, {{"bBXn", {1}}, {"prVt", {2}}, {"bBIn", {3}}}), false, 1},
        {"no data", withChunks(file, {{"bBIn", {}}}), false, 1},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        Result<PngPicture> picture = readPng(one.file);
        ASSERT_TRUE(picture.ok()) << picture.message();
        EXPECT_EQ(picture->chunksRefused, one.refused);
        EXPECT_EQ(picture->extras.chunks.size(), one.chunks);
        EXPECT_EQ(picture->bitmap.size(), (Size{5, 3}));
    }
}

TEST(PngReader, BoundsTexts) {
    const Bytes plain = small();
    Bytes bomb{'N', 0, 0};
    const Bytes packed = test::deflated(Bytes(size_t{64} * 1024 * 1024, 'a'));
    bomb.insert(bomb.end(), packed.begin(), packed.end());
    std::vector<std::pair<std::string, Bytes>> chunks(200, {"tEXt", {'K', 0, 'v'}});
    chunks.insert(chunks.begin(), {"zTXt", bomb});
    const Result<PngPicture> picture = readPng(withChunks(plain, chunks));
    ASSERT_TRUE(picture.ok()) << picture.message();
    EXPECT_LE(picture->extras.texts.size(), PngLimits::texts);
    for (const PngText& text : picture->extras.texts) EXPECT_LE(text.text.size(), PngLimits::textBytes);
}

TEST(PngReader, RefusesLargeSizesBeforeTakingMemory) {
    for (const auto& [width, height] : {std::pair{200001U, 1U}, {1U, 200001U}, {60000U, 60000U}, {0U, 4U}}) {
        Bytes file = test::makePng(1, 1, {}, [](uint32_t, uint32_t, int) { return 0U; });
        Bytes header(file.begin(), file.begin() + 8);
        Bytes data;
        test::putBig32(data, width);
        test::putBig32(data, height);
        data.insert(data.end(), {8, 2, 0, 0, 0});
        test::putChunk(header, "IHDR", data);
        header.insert(header.end(), file.begin() + 33, file.end());
        EXPECT_FALSE(readPng(header).ok()) << width << " x " << height;
    }
}

TEST(PngReader, DamageIsAnsweredNotSuffered) {
    const Bytes file = encodePng(test::noise(23, 17, PixelFormat::Bgra32, 9),
                                 {{{"VERSION", "1.8"}}, {{"bBIn", {1, 2, 3}}, {"bBPn", Bytes(100, 1)}}})
                           .take();
    for (size_t length = 0; length < file.size(); ++length) {
        const Bytes part(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length));
        const Result<PngPicture> picture = readPng(part);
        EXPECT_FALSE(picture.ok()) << length;
        EXPECT_FALSE(picture.message().empty());
        EXPECT_FALSE(measurePng(part.data(), [&](const uint8_t* at, size_t count) {
                         return count <= part.size() - static_cast<size_t>(at - part.data());
                     }).ok());
    }
    test::expectNoCrash(file, [](const Bytes& damaged) { return readPng(damaged).ok(); });
}

TEST(MeasurePng, LooksOnlyWhereItMay) {
    Bytes memory = small();
    const size_t length = memory.size();
    memory.resize(length + 1000, 0xAB);
    size_t furthest = 0;
    const ReadableProbe probe = [&](const uint8_t* at, size_t count) {
        furthest = std::max(furthest, static_cast<size_t>(at - memory.data()) + count);
        return true;
    };
    EXPECT_EQ(*measurePng(memory.data(), probe), length);
    EXPECT_EQ(furthest, length);
    EXPECT_FALSE(measurePng(nullptr, probe).ok());
    EXPECT_FALSE(measurePng(memory.data() + 1, probe).ok());
    Bytes endless(memory.begin(), memory.begin() + 33);
    test::putBig32(endless, 0x7FFFFFFF);
    endless.insert(endless.end(), {'I', 'D', 'A', 'T'});
    EXPECT_FALSE(measurePng(endless.data(), [](const uint8_t*, size_t) { return true; }).ok());
}

}  // namespace
}  // namespace glimmer
