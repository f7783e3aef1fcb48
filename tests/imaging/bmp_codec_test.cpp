#include "imaging/bmp_codec.h"

#include <gtest/gtest.h>

#include "common/bytes.h"
#include "support/pictures.h"

namespace glimmer {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr Colour red = rgb(255, 0, 0);
constexpr Colour green = rgb(0, 255, 0);
constexpr Colour blue = rgb(0, 0, 255);
constexpr Colour white = rgb(255, 255, 255);

/// A file with the given header size, palette (red, green, blue, white) and pixel bytes.
struct BmpFile {
    uint32_t headerSize = 40;
    int32_t width = 2;
    int32_t height = 2;
    uint16_t bits = 24;
    uint32_t compression = 0;
    Bytes masks;  ///< after a header of 40 bytes or inside a longer one
    uint32_t paletteEntries = 0;
    Bytes pixels;

    [[nodiscard]] Bytes make() const {
        ByteWriter header;
        const auto u16 = [&header](int32_t value) {
            header.u8(static_cast<uint8_t>(value));
            header.u8(static_cast<uint8_t>(value >> 8));
        };
        header.u32(headerSize);
        if (headerSize == 12) {
            u16(width);
            u16(height);
            u16(1);
            u16(bits);
        } else {
            header.i32(width);
            header.i32(height);
            u16(1);
            u16(bits);
            if (headerSize > 16) {
                header.u32(compression);
                for (int i = 0; i < 3; ++i) header.u32(0);
                header.u32(paletteEntries);
                header.u32(0);
                header.bytes(masks);
            }
        }
        Bytes info = header.take();
        const size_t end = headerSize == 40 ? 40 + masks.size() : headerSize;
        info.resize(end, 0);
        static constexpr Colour palette[] = {red, green, blue, white};
        for (uint32_t i = 0; i < paletteEntries; ++i) {
            info.insert(info.end(), {blueOf(palette[i]), greenOf(palette[i]), redOf(palette[i])});
            if (headerSize != 12) info.push_back(0);
        }
        ByteWriter file;
        file.u8('B');
        file.u8('M');
        file.u32(static_cast<uint32_t>(14 + info.size() + pixels.size()));
        file.u32(0);
        file.u32(static_cast<uint32_t>(14 + info.size()));
        file.bytes(info);
        file.bytes(pixels);
        return file.take();
    }
};

std::vector<Colour> coloursOf(const TBitmap& bitmap) {
    std::vector<Colour> all;
    for (int32_t y = 0; y < bitmap.height(); ++y)
        for (int32_t x = 0; x < bitmap.width(); ++x) all.push_back(bitmap.pixel(x, y));
    return all;
}

TEST(BmpReader, ReadsEveryKind) {
    struct Case {
        const char* name;
        BmpFile file;
        std::vector<Colour> expected;  ///< from the top
    };
    const std::vector<Colour> square{red, green, blue, white};
    const Bytes rows24{255, 0, 0, 255, 255, 255, 0, 0, 0, 0, 255, 0, 255, 0, 0, 0};
    const Bytes rows32{255, 0, 0, 0, 255, 255, 255, 0, 0, 0, 255, 0, 0, 255, 0, 0};
    const Bytes indices8{2, 3, 0, 0, 0, 1, 0, 0};
    const Bytes indices4{0x23, 0, 0, 0, 0x01, 0, 0, 0};
    const Bytes masks565{0, 0xF8, 0, 0, 0xE0, 0x07, 0, 0, 0x1F, 0, 0, 0};
    const Bytes masksSwapped{0xFF, 0, 0, 0, 0, 0xFF, 0, 0, 0, 0, 0xFF, 0};
    Bytes masksAlpha = masksSwapped;
    masksAlpha.insert(masksAlpha.end(), {0, 0, 0, 0xFF});
    const Case cases[] = {
        {"24", {40, 2, 2, 24, 0, {}, 0, rows24}, square},
        {"24 top-down", {40, 2, -2, 24, 0, {}, 0, rows24}, {blue, white, red, green}},
        {"24 core", {12, 2, 2, 24, 0, {}, 0, rows24}, square},
        {"24 short OS/2 header", {16, 2, 2, 24, 0, {}, 0, rows24}, square},
        {"24 V5", {124, 2, 2, 24, 0, {}, 0, rows24}, square},
        {"24 without the last padding", {40, 1, 1, 24, 0, {}, 0, {0, 0, 255}}, {red}},
        {"32", {40, 2, 2, 32, 0, {}, 0, rows32}, square},
        {"32 fields",
         {40, 2, 2, 32, 3, masksSwapped, 0, {0, 0, 255, 9, 255, 255, 255, 9, 255, 0, 0, 9, 0, 255, 0, 9}},
         square},
        {"16", {40, 2, 2, 16, 0, {}, 0, {0x1F, 0, 0xFF, 0x7F, 0, 0x7C, 0xE0, 0x03}}, square},
        {"16 fields 565", {40, 2, 2, 16, 3, masks565, 0, {0x1F, 0, 0xFF, 0xFF, 0, 0xF8, 0xE0, 0x07}}, square},
        {"8", {40, 2, 2, 8, 0, {}, 4, indices8}, square},
        {"8 core", {12, 2, 2, 8, 0, {}, 4, indices8}, square},
        {"8 V4", {108, 2, 2, 8, 0, {}, 4, indices8}, square},
        {"4", {40, 2, 2, 4, 0, {}, 4, indices4}, square},
        {"1", {40, 9, 1, 1, 0, {}, 2, {0x40, 0x80, 0, 0}}, {red, green, red, red, red, red, red, red, green}},
        {"8 runs",
         {40, 4, 2, 8, 1, {}, 4, {4, 2, 0, 0, 1, 3, 0, 3, 1, 2, 0, 0, 0, 1}},
         {white, green, blue, red, blue, blue, blue, blue}},
        {"8 runs with a skip",
         {40, 3, 2, 8, 1, {}, 4, {1, 1, 0, 2, 1, 1, 1, 2, 0, 1}},
         {red, red, blue, green, red, red}},
        {"4 runs", {40, 4, 1, 4, 2, {}, 4, {2, 0x12, 0, 3, 0x30, 0x10, 0, 1}}, {green, blue, white, red}},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        const Bytes file = one.file.make();
        const Result<TBitmap> bitmap = readBmp(file);
        ASSERT_TRUE(bitmap.ok()) << bitmap.message();
        EXPECT_EQ(coloursOf(*bitmap), one.expected);
        EXPECT_FALSE(bitmap->hasTransparency());
        test::expectNoCrash(file, [](const Bytes& damaged) { return readBmp(damaged).ok(); });
    }
    const Result<TBitmap> alpha =
        readBmp(BmpFile{108, 2, 1, 32, 3, masksAlpha, 0, {255, 0, 0, 255, 0, 0, 255, 100}}.make());
    ASSERT_TRUE(alpha.ok()) << alpha.message();
    EXPECT_EQ(coloursOf(*alpha), (std::vector<Colour>{red, blue}));
    EXPECT_EQ(alpha->alpha(0, 0), 255);
    EXPECT_EQ(alpha->alpha(1, 0), 100);
}

TEST(BmpReader, RefusesWhatCannotBe) {
    const BmpFile refused[] = {
        {40, 0, 2, 24, 0, {}, 0, {}},
        {40, 2, INT32_MIN, 24, 0, {}, 0, {}},
        {40, INT32_MAX, 2, 1, 0, {}, 2, {}},
        {40, 199999, 1000, 8, 1, {}, 2, {0, 1}},  // a size that so few codes cannot fill
        {40, 2, -2, 8, 1, {}, 4, {2, 2, 0, 1}},   // run-length codes know no top-down
        {40, 2, 2, 24, 4, {}, 0, Bytes(16)},      // JPEG inside
        {40, 2, 2, 7, 0, {}, 0, Bytes(16)},
        {40, 2, 2, 16, 3, {5, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, 0, Bytes(8)},  // a field with a hole
        {8, 2, 2, 24, 0, {}, 0, Bytes(16)},
        {40, 2, 2, 24, 0, {}, 0, Bytes(13)},
        {40, 4, 2, 8, 1, {}, 4, {4, 2, 0, 0, 0, 200, 1}},
    };
    for (const BmpFile& file : refused) {
        const Result<TBitmap> bitmap = readBmp(file.make());
        EXPECT_FALSE(bitmap.ok()) << file.width << " x " << file.height << " " << file.bits;
        EXPECT_FALSE(bitmap.message().empty());
    }
}

TEST(BmpWriter, RoundTripIsExact) {
    for (const int32_t width : {1, 2, 3, 4, 17}) {
        const TBitmap bitmap = test::noise(width, 5, PixelFormat::Bgr24, 6);
        const Bytes file = encodeBmp(bitmap, {}).take();
        EXPECT_EQ(file.size(), 54 + bitmap.byteCount());
        const Result<TBitmap> again = readBmp(file);
        ASSERT_TRUE(again.ok()) << again.message();
        EXPECT_TRUE(samePixels(*again, bitmap));
    }
}

}  // namespace
}  // namespace glimmer
