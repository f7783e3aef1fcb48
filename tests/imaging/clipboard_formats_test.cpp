#include "imaging/clipboard_formats.h"

#include <gtest/gtest.h>

#include "common/bytes.h"
#include "support/pictures.h"

namespace glimmer {
namespace {

/// Red, green, blue and a half-transparent black, one a column, and white below.
TBitmap sample() {
    TBitmap picture = test::plain(4, 2, rgb(255, 255, 255));
    picture.setPixel(0, 0, rgb(255, 0, 0));
    picture.setPixel(1, 0, rgb(0, 255, 0));
    picture.setPixel(2, 0, rgb(0, 0, 255));
    uint8_t* last = picture.row(0) + 12;
    last[0] = last[1] = last[2] = 0;
    last[3] = 128;
    return picture;
}

TEST(ClipboardFormats, DibIsOpaqueWithRowsFromTheBottom) {
    const std::vector<uint8_t> dib = clipboardDib(sample()).take();
    ByteReader in(dib);
    EXPECT_EQ(in.u32(), 40U);
    EXPECT_EQ(in.i32(), 4);
    EXPECT_EQ(in.i32(), 2);
    EXPECT_EQ(in.u32(), 1U | 24U << 16U);
    ASSERT_EQ(dib.size(), 40U + 2 * 12);
    EXPECT_EQ(dib[40], 255);           // the white row first
    EXPECT_EQ(dib[40 + 12 + 2], 255);  // then red: blue, green, red
    EXPECT_EQ(dib[40 + 12], 0);
    EXPECT_NEAR(dib[40 + 12 + 9], 127, 1);  // half black on white
}

TEST(ClipboardFormats, BothComeBack) {
    const TBitmap picture = sample();
    const Result<TBitmap> v5 = pictureFromDib(clipboardDibV5(picture).take());
    ASSERT_TRUE(v5.ok()) << v5.message();
    EXPECT_TRUE(samePixels(*v5, picture));
    const Result<TBitmap> dib = pictureFromDib(clipboardDib(picture).take());
    ASSERT_TRUE(dib.ok()) << dib.message();
    EXPECT_EQ(dib->size(), picture.size());
    EXPECT_EQ(dib->pixel(1, 0), rgb(0, 255, 0));
}

TEST(ClipboardFormats, OtherProgramsForms) {
    // Eight bits with two colours, as an old program would give it.
    ByteWriter palette;
    palette.u32(40);
    palette.i32(2);
    palette.i32(1);
    palette.u32(1U | 8U << 16U);
    for (int i = 0; i < 4; ++i) palette.u32(0);
    palette.u32(2);  // colours
    palette.u32(0);
    palette.u32(0x00FF0000);  // red
    palette.u32(0x000000FF);  // blue
    palette.u32(0x00000100);  // pixels 0, 1
    const Result<TBitmap> picture = pictureFromDib(palette.data());
    ASSERT_TRUE(picture.ok()) << picture.message();
    EXPECT_EQ(picture->pixel(0, 0), rgb(255, 0, 0));
    EXPECT_EQ(picture->pixel(1, 0), rgb(0, 0, 255));
}

// What a system makes of a bitmap stands behind it, and its fourth bytes hold anything.
TEST(ClipboardFormats, OriginalsAreReadBeforeWhatTheSystemMakesOfThem) {
    constexpr uint32_t png = 0xC123;
    constexpr uint32_t text = 13;
    using Formats = std::vector<uint32_t>;
    const struct {
        Formats offered;
        Formats read;
    } cases[] = {
        {{formatDib, formatDibV5, text}, {formatDib, formatDibV5}},
        {{text, formatDibV5, formatDib}, {formatDibV5, formatDib}},
        {{formatDib, formatDibV5, png}, {png, formatDib, formatDibV5}},
        {{text}, {}},
    };
    for (const auto& one : cases) EXPECT_EQ(readingOrder(one.offered, png), one.read);
}

TEST(ClipboardFormats, MasksMayStandThereTwice) {
    const TBitmap picture = sample();
    std::vector<uint8_t> dib = clipboardDibV5(picture).take();
    dib.insert(dib.begin() + 124, dib.begin() + 40, dib.begin() + 52);
    const Result<TBitmap> read = pictureFromDib(dib);
    ASSERT_TRUE(read.ok()) << read.message();
    EXPECT_TRUE(samePixels(*read, picture));
    // No alpha anywhere is none.
    std::vector<uint8_t> clear = clipboardDibV5(picture).take();
    for (size_t i = 124 + 3; i < clear.size(); i += 4) clear[i] = 0;
    const Result<TBitmap> opaque = pictureFromDib(clear);
    ASSERT_TRUE(opaque.ok());
    EXPECT_EQ(opaque->pixel(1, 0), rgb(0, 255, 0));
    EXPECT_EQ(opaque->format(), PixelFormat::Bgr24);
}

TEST(ClipboardFormats, DamageIsRefused) {
    const std::vector<uint8_t> whole = clipboardDibV5(sample()).take();
    for (size_t size = 0; size < whole.size() - 1; ++size)
        EXPECT_FALSE(pictureFromDib({whole.data(), size}).ok()) << size;
    std::vector<uint8_t> many = whole;
    many[32] = 0xFF;  // colours
    many[35] = 0xFF;
    EXPECT_FALSE(pictureFromDib(many).ok());
    std::vector<uint8_t> wild = whole;
    for (const size_t at : {4, 5, 6, 8, 9, 10, 14, 15}) wild[at] = 0xFF;  // width, height, bits
    EXPECT_FALSE(pictureFromDib(wild).ok());
}

}  // namespace
}  // namespace glimmer
