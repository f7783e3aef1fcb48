#include "output/thumb_creator.h"

#include <gtest/gtest.h>

#include "editor/cairo_text_painter.h"
#include "editor/commands/add_annotation.h"
#include "editor/document.h"

namespace glimmer {
namespace {

constexpr Colour paper = rgb(250, 250, 250);
constexpr Size frame{132, 99};

std::unique_ptr<CaptureDocument> captureOf(TBitmap picture) {
    return CaptureDocument::create(std::move(picture), {}).take();
}

TBitmap plain(int32_t width, int32_t height, Colour colour) {
    TBitmap bitmap = TBitmap::create(width, height, PixelFormat::Bgra32).take();
    bitmap.fill(bitmap.bounds(), colour);
    return bitmap;
}

TBitmap thumbOf(const CaptureDocument& document, bool unsaved = false) {
    CairoTextPainter text;
    return TThumbCreator(frame, paper).create(document, text, {}, unsaved).take();
}

TEST(ThumbCreator, CentresThePictureInItsFrame) {
    const TBitmap thumb = thumbOf(*captureOf(plain(400, 100, rgb(10, 20, 30))));
    EXPECT_EQ(thumb.size(), frame);
    EXPECT_EQ(thumb.pixel(66, 49), rgb(10, 20, 30));
    EXPECT_EQ(thumb.pixel(66, 5), paper);
    EXPECT_EQ(thumb.pixel(66, 93), paper);
}

TEST(ThumbCreator, ShowsTheTopOfATallPage) {
    const TThumbCreator creator(frame, paper);
    EXPECT_EQ(creator.shownPart({1280, 800}), (Rect{0, 0, 1280, 800}));
    EXPECT_EQ(creator.shownPart({1280, 10000}), (Rect{0, 0, 1280, 1920}));
    TBitmap page = plain(660, 10000, rgb(255, 255, 255));
    page.fill({0, 0, 660, 990}, rgb(200, 0, 0));
    page.fill({0, 990, 660, 10000}, rgb(0, 0, 200));
    const TBitmap thumb = thumbOf(*captureOf(std::move(page)));
    // The red part has just the proportions that are shown, so nothing of the blue one is.
    EXPECT_EQ(thumb.pixel(66, 3), rgb(200, 0, 0));
    EXPECT_EQ(thumb.pixel(66, 95), rgb(200, 0, 0));
}

TEST(ThumbCreator, AveragesInsteadOfSampling) {
    // Black and white columns of one pixel: any sampling would give one or the other.
    TBitmap stripes = plain(1320, 990, rgb(255, 255, 255));
    for (int32_t x = 0; x < 1320; x += 2) stripes.fill({x, 0, x + 1, 990}, rgb(0, 0, 0));
    const TBitmap thumb = thumbOf(*captureOf(std::move(stripes)));
    for (int32_t x = 10; x < 120; ++x) EXPECT_NEAR(redOf(thumb.pixel(x, 50)), 128, 12) << x;
}

TEST(ThumbCreator, ShowsAnnotationsAcrossStripsAndTheUnsavedMark) {
    const auto document = captureOf(plain(1320, 990, rgb(255, 255, 255)));
    TBBShape shape;
    shape.shape.settings.kind = ShapeKind::FilledRectangle;
    shape.shape.settings.shapeColour = rgb(0, 0, 255);
    shape.shape.settings.opacity = 100;
    shape.shape.rectangle = {100, 100, 1200, 900};
    ASSERT_TRUE(document->run(std::make_unique<AddAnnotation>(shape)).ok());
    const TBitmap thumb = thumbOf(*document);
    for (int32_t y = 20; y < 80; ++y) EXPECT_EQ(thumb.pixel(66, y), rgb(0, 0, 255)) << y;
    EXPECT_FALSE(samePixels(thumb, thumbOf(*document, true)));
}

}  // namespace
}  // namespace glimmer
