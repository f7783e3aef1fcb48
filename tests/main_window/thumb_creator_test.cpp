#include "main_window/thumb_creator.h"

#include <gtest/gtest.h>

#include <string>

#include "editor/commands/add_annotation.h"
#include "editor/document/document.h"
#include "editor/painting/cairo_text_painter.h"
#include "support/pictures.h"

namespace glimmer {
namespace {

constexpr Colour paper = rgb(250, 250, 250);
constexpr Size frame{132, 99};

using test::plain;

std::unique_ptr<CaptureDocument> captureOf(TBitmap picture) {
    return CaptureDocument::create(std::move(picture), {}).take();
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

/// Counts the labels that are laid out.
class CountingPainter : public CairoTextPainter {
public:
    int rendered = 0;

protected:
    TextMask render(const TTextSettings& font, const std::string& text, Size area) override {
        ++rendered;
        return CairoTextPainter::render(font, text, area);
    }
};

// A piece of a thumbnail is idle work: what one of them does has a bound, however many annotations there are.
TEST(ThumbCreator, WorksInPiecesOfOneLabelEach) {
    const auto document = captureOf(plain(1280, 1600, rgb(255, 255, 255)));
    constexpr int labels = 60;
    for (int i = 0; i < labels; ++i) {
        TBBShape shape;
        shape.text.text = "label " + std::to_string(i);
        shape.shape.rectangle = {100, 80 + i * 20, 400, 95 + i * 20};
        shape.setLabelSize({120, 24});
        ASSERT_TRUE(document->run(std::make_unique<AddAnnotation>(shape)).ok());
    }
    CountingPainter text;
    ThumbInWork work(TThumbCreator(frame, paper), *document, text, {}, false);
    int pieces = 0;
    for (; !work.done(); ++pieces) {
        const int before = text.rendered;
        ASSERT_TRUE(work.advance().ok());
        ASSERT_LE(text.rendered, before + 1) << "piece " << pieces;
    }
    EXPECT_EQ(text.rendered, labels);
    EXPECT_GE(pieces, labels);
    EXPECT_TRUE(samePixels(work.take(), thumbOf(*document)));
    // A very large capture without any is reduced strip by strip.
    const auto large = captureOf(plain(8000, 9000, rgb(255, 255, 255)));
    ThumbInWork reduction(TThumbCreator(frame, paper), *large, text, {}, false);
    for (pieces = 0; !reduction.done(); ++pieces) ASSERT_TRUE(reduction.advance().ok());
    EXPECT_GE(pieces, 50);
}

}  // namespace
}  // namespace glimmer
