#include "output/picture/watermark.h"

#include <gtest/gtest.h>

#include "support/pictures.h"

namespace glimmer {
namespace {

constexpr Colour white = rgb(255, 255, 255);

/// Every character is 10 x 20 and wholly covered; a line breaks anywhere.
class BlockPainter : public TextPainter {
public:
    Size measure(const TTextSettings& /*font*/, const std::string& text, int32_t width) override {
        const auto length = static_cast<int32_t>(text.size());
        const int32_t perLine = width <= 0 ? length : std::max(width / 10, 1);
        return {std::min(length, perLine) * 10, (length + perLine - 1) / perLine * 20};
    }

protected:
    TextMask render(const TTextSettings& /*font*/, const std::string& /*text*/, Size area) override {
        return {area, std::vector<uint8_t>(static_cast<size_t>(area.width) * static_cast<size_t>(area.height), 255)};
    }
};

TBitmap canvas(int32_t width, int32_t height, PixelFormat format = PixelFormat::Bgr24) {
    return test::plain(width, height, white, format);
}

/// The smallest rectangle around everything that is no longer white.
Rect changed(const TBitmap& picture) {
    Rect area;
    for (int32_t y = 0; y < picture.height(); ++y)
        for (int32_t x = 0; x < picture.width(); ++x)
            if (picture.pixel(x, y) != white) area = area.united({x, y, x + 1, y + 1});
    return area;
}

TEST(Watermark, LiesAtEachOfTheNinePlaces) {
    const Point corners[] = {{10, 10}, {45, 10}, {80, 10}, {10, 40}, {80, 40}, {10, 70}, {45, 70}, {80, 70}, {45, 40}};
    for (int i = 0; i < 9; ++i) {
        const Rect place = watermarkPlace({100, 90}, {10, 10}, static_cast<WatermarkPosition>(i), 10);
        EXPECT_EQ((Point{place.left, place.top}), corners[i]) << i;
    }
    EXPECT_EQ(watermarkPlace({100, 90}, {200, 10}, WatermarkPosition::BottomRight, 10), (Rect{10, 70, 210, 80}));
}

TEST(Watermark, TextHasItsBoxFrameAndInk) {
    TBitmap picture = canvas(200, 100);
    WatermarkSettings settings;
    settings.background = rgb(255, 0, 0);
    settings.backgroundOpacity = 50;
    settings.frame = rgb(0, 0, 255);
    settings.frameWidth = 2;
    BlockPainter painter;
    drawTextWatermark(picture, settings, "abc", painter);
    // 30 x 20 of text, 6 pixels around it and a line of 2, 10 from the corner.
    const Rect box{200 - 10 - 46, 100 - 10 - 36, 190, 90};
    EXPECT_EQ(changed(picture), box);
    EXPECT_EQ(picture.pixel(box.left + 1, box.top + 1), rgb(0, 0, 255));
    EXPECT_EQ(picture.pixel(box.left + 2, box.top + 2), rgb(255, 127, 127));
    EXPECT_EQ(picture.pixel(box.left + 8, box.top + 8), rgb(0, 0, 255));
}

TEST(Watermark, NothingIsDrawnBesideThePicture) {
    BlockPainter painter;
    for (const Size size : {Size{1, 1}, Size{25, 15}, Size{60, 300}}) {
        for (const int32_t margins : {0, 10, 1000}) {
            TBitmap picture = canvas(size.width, size.height, PixelFormat::Bgra32);
            WatermarkSettings settings;
            settings.margins = margins;
            drawTextWatermark(picture, settings, "a rather long text", painter);
            settings.frameWidth = 20;
            drawTextWatermark(picture, settings, "", painter);
            EXPECT_TRUE(drawBitmapWatermark(picture, settings, canvas(300, 300)).ok());
        }
    }
}

TEST(Watermark, APictureIsBlendedByItsAlphaAndTheOpacity) {
    TBitmap mark = TBitmap::create(2, 1, PixelFormat::Bgra32).take();
    mark.setPixel(0, 0, rgb(0, 0, 0));
    mark.setPixel(1, 0, rgb(0, 0, 0));
    mark.row(0)[7] = 128;
    WatermarkSettings settings;
    settings.position = WatermarkPosition::TopLeft;
    settings.margins = 0;
    settings.bitmapOpacity = 100;
    TBitmap picture = canvas(4, 4);
    ASSERT_TRUE(drawBitmapWatermark(picture, settings, mark).ok());
    EXPECT_EQ(picture.pixel(0, 0), rgb(0, 0, 0));
    EXPECT_EQ(picture.pixel(1, 0), rgb(127, 127, 127));
    EXPECT_EQ(picture.pixel(2, 0), white);
    settings.bitmapOpacity = 20;
    picture = canvas(4, 4);
    ASSERT_TRUE(drawBitmapWatermark(picture, settings, mark).ok());
    EXPECT_EQ(picture.pixel(0, 0), rgb(204, 204, 204));
    // On a transparent picture the mark itself shows.
    TBitmap clear = TBitmap::create(4, 4, PixelFormat::Bgra32).take();
    settings.bitmapOpacity = 100;
    ASSERT_TRUE(drawBitmapWatermark(clear, settings, mark).ok());
    EXPECT_EQ(clear.alpha(0, 0), 255);
    EXPECT_EQ(clear.alpha(1, 0), 128);
    EXPECT_EQ(clear.alpha(2, 0), 0);
}

TEST(Watermark, ALargePictureIsReducedIntoTheMargins) {
    TBitmap mark = TBitmap::create(400, 100, PixelFormat::Bgr24).take();
    TBitmap picture = canvas(100, 100);
    WatermarkSettings settings;
    settings.bitmapOpacity = 100;
    ASSERT_TRUE(drawBitmapWatermark(picture, settings, mark).ok());
    EXPECT_EQ(changed(picture), (Rect{10, 70, 90, 90}));
}

TEST(Watermark, ComesFromTheOptions) {
    Options options;
    options.setNumber("cmbWMPosition", 8);
    options.setNumber("cmbWMTextAlignment", 0);
    options.setNumber("spnWMFrameWidth", 20);
    const WatermarkSettings settings = watermarkSettings(options);
    EXPECT_EQ(settings.position, WatermarkPosition::Centred);
    EXPECT_EQ(settings.alignment, TextAlignment::Left);
    EXPECT_EQ(settings.frameWidth, 20);
    EXPECT_EQ(settings.background, rgb(0xFE, 0xFE, 0xD8));
    EXPECT_FALSE(settings.fromBitmap);
}

}  // namespace
}  // namespace glimmer
