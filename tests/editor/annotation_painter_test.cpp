#include "editor/painting/annotation_painter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

#include "editor/annotations/shapes_list.h"
#include "editor/painting/badge_picture.h"
#include "editor/painting/cairo_text_painter.h"
#include "support/pictures.h"

namespace glimmer {
namespace {

constexpr Colour page = rgb(250, 240, 10);

TBitmap paper(int32_t width, int32_t height, Colour colour = page) { return test::plain(width, height, colour); }

/// A shape alone: the other parts are hidden.
TBBShape bare(ShapeKind kind, const Rect& rect) {
    TBBShape shape;
    shape.shape.rectangle = rect;
    shape.shape.settings.kind = kind;
    for (const Part part : {Part::Text, Part::Line, Part::Number}) shape.part(part).setVisible(false);
    return shape;
}

void expectNear(Colour seen, Colour wanted, int tolerance, const std::string& what) {
    EXPECT_NEAR(redOf(seen), redOf(wanted), tolerance) << what;
    EXPECT_NEAR(greenOf(seen), greenOf(wanted), tolerance) << what;
    EXPECT_NEAR(blueOf(seen), blueOf(wanted), tolerance) << what;
}

Colour mixed(Colour above, Colour below, double part) {
    const auto one = [part](uint8_t a, uint8_t b) {
        return static_cast<uint32_t>(std::lround(a * part + b * (1 - part)));
    };
    return rgb(one(redOf(above), redOf(below)), one(greenOf(above), greenOf(below)), one(blueOf(above), blueOf(below)));
}

class Painting : public testing::Test {
protected:
    void paint(TBitmap& bitmap, const TBBShape& shape) { paintAnnotation(bitmap, bitmap.bounds(), shape, text, plain); }

    CairoTextPainter text;
    PaintOptions plain{false, 0, {}};  // without shadows
};

TEST_F(Painting, FillIsMixedByItsOpacityAndFramesAreCrisp) {
    for (const int32_t opacity : {0, 10, 46, 60, 65, 70, 100}) {
        for (const Colour below : {page, rgb(0, 0, 0), rgb(255, 255, 255), rgb(1, 128, 77)}) {
            TBitmap bitmap = paper(100, 80, below);
            TBBShape shape = bare(ShapeKind::FilledRectangle, {20, 10, 80, 60});
            shape.shape.settings.opacity = opacity;
            shape.shape.settings.frameWidth = 3;
            paint(bitmap, shape);
            expectNear(bitmap.pixel(50, 30), mixed(rgb(204, 236, 255), below, opacity / 100.0), 1,
                       std::to_string(opacity));
            for (const Point frame : {Point{20, 10}, Point{79, 59}, Point{22, 30}, Point{50, 12}, Point{77, 57}})
                EXPECT_EQ(bitmap.pixel(frame.x, frame.y), rgb(255, 0, 0)) << frame.x << ',' << frame.y;
            for (const Point outside : {Point{19, 10}, Point{20, 9}, Point{80, 59}, Point{79, 60}})
                EXPECT_EQ(bitmap.pixel(outside.x, outside.y), below);
            EXPECT_NE(bitmap.pixel(23, 30), rgb(255, 0, 0));
        }
    }
}

TEST_F(Painting, OutlinesLeaveTheMiddleAlone) {
    TBitmap bitmap = paper(100, 100);
    paint(bitmap, bare(ShapeKind::Rectangle, {10, 10, 90, 90}));
    EXPECT_EQ(bitmap.pixel(50, 50), page);
    EXPECT_EQ(bitmap.pixel(10, 50), rgb(255, 0, 0));
    bitmap = paper(100, 100);
    TBBShape ellipse = bare(ShapeKind::Ellipse, {10, 10, 90, 90});
    ellipse.shape.settings.frameWidth = 5;
    paint(bitmap, ellipse);
    EXPECT_EQ(bitmap.pixel(50, 50), page);
    EXPECT_EQ(bitmap.pixel(12, 10), page) << "the corner is outside of the ellipse";
    EXPECT_EQ(bitmap.pixel(12, 50), rgb(255, 0, 0));
    EXPECT_EQ(bitmap.pixel(50, 87), rgb(255, 0, 0));
    // Soft somewhere along the curve: a colour that is neither.
    int soft = 0;
    for (int32_t x = 10; x < 50; ++x)
        for (int32_t y = 10; y < 50; ++y)
            soft += bitmap.pixel(x, y) != page && bitmap.pixel(x, y) != rgb(255, 0, 0) ? 1 : 0;
    EXPECT_GT(soft, 20);
}

TEST_F(Painting, HiddenPartsPaintNothing) {
    TBitmap bitmap = paper(200, 200);
    TBBShape shape = bare(ShapeKind::FilledRectangle, {50, 50, 100, 100});
    shape.shape.setVisible(false);
    paint(bitmap, shape);
    EXPECT_TRUE(samePixels(bitmap, paper(200, 200)));
}

TEST_F(Painting, BadgeLeavesOutItsRedAndCentresTheNumber) {
    TBBShape shape = bare(ShapeKind::Rectangle, {20, 20, 220, 220});
    shape.number.setVisible(true);
    shape.number.settings.position = NumberPosition::InsideCentre;
    shape.number.number = 8;
    TBitmap bitmap = paper(240, 240);
    paint(bitmap, shape);
    const Rect badge = shape.number.badge(shape);
    ASSERT_EQ(badge, (Rect{104, 104, 136, 136}));
    EXPECT_EQ(badgePicture().size(), (Size{32, 32}));
    EXPECT_EQ(badgePicture().pixel(0, 0), rgb(255, 0, 0));
    EXPECT_EQ(bitmap.pixel(104, 104), page) << "the corner is transparent";
    EXPECT_NE(bitmap.pixel(120, 105), page);
    // The digit's ink: its bounding box lies in the middle.
    Rect dark = {999, 999, 0, 0};
    for (int32_t y = badge.top + 5; y < badge.bottom - 5; ++y) {
        for (int32_t x = badge.left + 5; x < badge.right - 5; ++x) {
            if (redOf(bitmap.pixel(x, y)) > 128) continue;
            dark = {std::min(dark.left, x), std::min(dark.top, y), std::max(dark.right, x + 1),
                    std::max(dark.bottom, y + 1)};
        }
    }
    ASSERT_FALSE(dark.empty());
    EXPECT_NEAR((dark.left + dark.right) / 2.0, 120, 2);
    EXPECT_NEAR((dark.top + dark.bottom) / 2.0, 120, 3);
}

TEST_F(Painting, LineHasShaftHeadsAndOutline) {
    for (const int32_t width : {1, 4, 11}) {
        TBBShape shape = bare(ShapeKind::Rectangle, {20, 20, 60, 180});
        shape.line.setVisible(true);
        shape.line.settings.width = width;
        shape.line.settings.lineColour = rgb(0, 0, 255);
        shape.line.settings.frameColour = rgb(0, 255, 0);
        shape.line.settings.front = LineEnd::Arrow;
        shape.line.settings.back = LineEnd::Bullet;
        shape.text.settings.position = freeTextPosition;
        shape.text.rectangle = {260, 90, 300, 110};
        TBitmap bitmap = paper(320, 200);
        paint(bitmap, shape);
        const auto column = [&](int32_t x, Colour colour) {
            int32_t count = 0;
            for (int32_t y = 0; y < 200; ++y) count += bitmap.pixel(x, y) == colour ? 1 : 0;
            return count;
        };
        const LineRoute route = *shape.route();
        EXPECT_EQ(route, (LineRoute{{60, 100}, {260, 100}}));
        EXPECT_NEAR(column(160, rgb(0, 0, 255)), width, 1) << "shaft";
        EXPECT_GE(column(160, rgb(0, 255, 0)), width % 2 == 0 ? 0 : 2) << "outline";
        // Near its base the head is twice tan 25 degrees of the length wide.
        const int32_t base = 60 + arrowLength(width) - 2;
        EXPECT_NEAR(column(base, rgb(0, 0, 255)), 2 * std::tan(0.43633) * (arrowLength(width) - 2) - 1, 2) << width;
        EXPECT_NEAR(column(260, rgb(0, 0, 255)), 2 * bulletRadius(width) + 1, 2) << "bullet";
    }
}

TEST_F(Painting, DrawingKeepsItsOwnTransparencyAndStretches) {
    TBitmap ink = TBitmap::create(4, 4, PixelFormat::Bgra32).take();
    ink.setPixel(0, 0, rgb(0, 0, 200));
    ink.setPixel(1, 0, rgb(0, 0, 200));
    ink.row(0)[7] = 128;
    TBBShape shape = bare(ShapeKind::Drawing, {10, 10, 14, 14});
    shape.shape.drawing = std::make_shared<const TBitmap>(std::move(ink));
    TBitmap bitmap = paper(60, 60);
    paint(bitmap, shape);
    EXPECT_EQ(bitmap.pixel(10, 10), rgb(0, 0, 200));
    expectNear(bitmap.pixel(11, 10), mixed(rgb(0, 0, 200), page, 128 / 255.0), 1, "half ink");
    EXPECT_EQ(bitmap.pixel(12, 10), page);
    bitmap = paper(60, 60);
    shape.shape.rectangle = {10, 10, 50, 50};
    paint(bitmap, shape);
    EXPECT_EQ(bitmap.pixel(19, 19), rgb(0, 0, 200));
    EXPECT_EQ(bitmap.pixel(30, 30), page);
    bitmap = paper(60, 60);
    shape.shape.rectangle = {10, 10, 12, 12};  // each pixel is the mean of four: two of them with ink
    paint(bitmap, shape);
    expectNear(bitmap.pixel(10, 10), mixed(rgb(0, 0, 200), page, (255 + 128) / 4.0 / 255), 1, "shrunk");
}

TEST_F(Painting, LabelHasBackgroundFrameAndTextInItsColour) {
    TBBShape shape(*predefinedStyle("Red Frame"), {100, 150, 200, 200});
    shape.line.setVisible(false);
    shape.text.text = "Hamburg";
    fitLabel(shape, text);
    TBitmap bitmap = paper(300, 250);
    paint(bitmap, shape);
    const Rect label = shape.text.rectangle;
    EXPECT_EQ(label.bottom, 110);
    EXPECT_EQ(bitmap.pixel(label.left, label.top), rgb(255, 0, 0));
    EXPECT_EQ(bitmap.pixel(label.left + 2, label.top + 2), rgb(255, 255, 255));
    const auto dark = [&] {
        int count = 0;
        for (int32_t y = label.top + 2; y < label.bottom - 2; ++y)
            for (int32_t x = label.left + 2; x < label.right - 2; ++x)
                count += greenOf(bitmap.pixel(x, y)) < 100 ? 1 : 0;
        return count;
    };
    EXPECT_GT(dark(), 40);
    // Without text while it is edited in place; without ground when it is not filled.
    bitmap = paper(300, 250);
    shape.setId(5);
    plain.editedId = 5;
    paint(bitmap, shape);
    EXPECT_EQ(dark(), 0);
    plain.editedId = 0;
    shape.text.settings.filled = false;
    bitmap = paper(300, 250);
    paint(bitmap, shape);
    EXPECT_EQ(bitmap.pixel(label.left, label.top), page);
    EXPECT_EQ(bitmap.pixel(label.left + 2, label.top + 2), page);
}

TEST_F(Painting, LabelWrapsAtItsWidthAndGrows) {
    TBBShape shape(*predefinedStyle("Default"), {100, 150, 200, 200});
    shape.text.text = "one line";
    fitLabel(shape, text);
    const Rect one = shape.text.rectangle;
    shape.text.text = "many words that cannot stand on one line of this label, however short they are";
    shape.text.rectangle = {};
    fitLabel(shape, text);
    const Rect many = shape.text.rectangle;
    EXPECT_EQ(many.width(), initialLabelTextWidth + 2 * labelPaddingX);
    EXPECT_GE(many.height(), 2 * one.height() - 2 * labelPaddingY);
    fitLabelUnwrapped(shape, text);
    EXPECT_EQ(shape.text.rectangle.height(), one.height());
    EXPECT_GT(shape.text.rectangle.width(), many.width());
    const std::string awkward[] = {"",
                                   "\n\n",
                                   std::string("a\0b", 3),
                                   "\xED\xA0\x80 alone",
                                   "\xFF\xFE",
                                   std::string(3000, 'w'),
                                   "\xE4\xB8\xAD\xE6\x96\x87 \xD0\xAF \xF0\x9F\x98\x80"};
    for (const std::string& words : awkward) {
        shape.text.text = words;
        shape.text.rectangle = {};
        fitLabel(shape, text);
        EXPECT_GT(shape.text.rectangle.height(), 2 * labelPaddingY);
        TBitmap bitmap = paper(300, 250);
        paint(bitmap, shape);
    }
}

TEST_F(Painting, ShadowsLieOutsideOfTheFill) {
    TBBShape shape = bare(ShapeKind::FilledRectangle, {20, 20, 80, 80});
    TBitmap without = paper(120, 120);
    paint(without, shape);
    TBitmap with = paper(120, 120);
    plain.shadows = true;
    paint(with, shape);
    for (int32_t y = 20; y < 80; ++y)
        for (int32_t x = 20; x < 80; ++x) ASSERT_EQ(with.pixel(x, y), without.pixel(x, y)) << x << ',' << y;
    EXPECT_LT(redOf(with.pixel(80, 50)), redOf(page));
    EXPECT_LT(redOf(with.pixel(80, 50)), redOf(with.pixel(82, 50))) << "fades outwards";
    const Rect bounds = shape.bounds();
    for (int32_t y = 0; y < 120; ++y)
        for (int32_t x = 0; x < 120; ++x)
            if (!bounds.contains({x, y})) {
                ASSERT_EQ(with.pixel(x, y), page);
            }
}

TBBShape randomShape(std::mt19937& random, int32_t reach) {
    const auto upTo = [&random](int32_t n) { return static_cast<int32_t>(random() % static_cast<uint32_t>(n)); };
    TShapeStyle style = predefinedStyles()[random() % 5];
    style.shape.kind = static_cast<ShapeKind>(1 + upTo(4));
    style.shape.frameWidth = 1 + upTo(11);
    style.shape.opacity = upTo(101);
    style.line.width = 1 + upTo(11);
    style.line.front = static_cast<LineEnd>(1 + upTo(3));
    style.line.back = static_cast<LineEnd>(1 + upTo(3));
    style.text.position = upTo(13);
    style.text.filled = upTo(3) > 0;
    style.number.visible = upTo(2) > 0;
    style.number.position = static_cast<NumberPosition>(1 + upTo(4));
    const Point at = {upTo(reach) - 20, upTo(reach) - 20};
    TBBShape shape(style, {at.x, at.y, at.x + upTo(90), at.y + upTo(90)});
    shape.text.text = "Text";
    shape.number.number = upTo(100000);
    shape.text.rectangle = {at.x + upTo(200) - 100, at.y + upTo(200) - 100, 0, 0};
    shape.setLabelSize({30 + upTo(50), 16 + upTo(20)});
    return shape;
}

TEST_F(Painting, InPiecesGivesTheSamePixelsAndTouchesNothingElse) {
    std::mt19937 random(11);
    plain.shadows = true;
    for (int round = 0; round < 6; ++round) {
        TShapesList list;
        for (int i = 0; i < 8; ++i) list.add(randomShape(random, 300));
        const bool transparent = round % 3 == 2;
        const auto ground = [&] {
            TBitmap bitmap = paper(300, 280);
            if (transparent)
                for (int32_t y = 100; y < 180; ++y)
                    for (int32_t x = 0; x < 300; ++x) bitmap.row(y)[x * 4 + 3] = static_cast<uint8_t>(x * 255 / 299);
            return bitmap;
        };
        TBitmap whole = ground();
        paintAnnotations(whole, whole.bounds(), list, text, plain);
        TBitmap pieces = ground();
        const TBitmap untouched = ground();
        for (int32_t top = -10; top < 300; top += 37) {
            for (int32_t left = -10; left < 320; left += 41) {
                const Rect clip = {left, top, left + 41, top + 37};
                TBitmap one = ground();
                paintAnnotations(one, clip, list, text, plain);
                paintAnnotations(pieces, clip, list, text, plain);
                for (int32_t y = 0; y < 280; ++y) {
                    if (y >= clip.top && y < clip.bottom) continue;
                    ASSERT_EQ(std::memcmp(one.row(y), untouched.row(y), one.stride()), 0) << "row " << y;
                }
                for (int32_t y = std::max(0, clip.top); y < std::min(280, clip.bottom); ++y)
                    for (int32_t x = 0; x < 300; ++x)
                        if (x < clip.left || x >= clip.right) {
                            const size_t at = static_cast<size_t>(x) * 4;
                            ASSERT_EQ(std::memcmp(one.row(y) + at, untouched.row(y) + at, 4), 0);
                        }
            }
        }
        if (!transparent) {
            EXPECT_TRUE(samePixels(whole, pieces)) << round;
            continue;
        }
        // A tile that has become opaque by an earlier piece is blended with fewer roundings.
        int worst = 0;
        for (size_t i = 0; i < whole.byteCount(); ++i) {
            const auto seen = [i](const TBitmap& bitmap) { return bitmap.bytes()[i] * bitmap.bytes()[i | 3U] / 255; };
            worst = std::max(worst, std::abs(seen(whole) - seen(pieces)));
        }
        EXPECT_LE(worst, 4) << round;
    }
}

TEST_F(Painting, OriginMovesTheImage) {
    std::mt19937 random(5);
    TShapesList list;
    for (int i = 0; i < 6; ++i) list.add(randomShape(random, 200));
    TBitmap whole = paper(200, 200);
    paintAnnotations(whole, whole.bounds(), list, text, plain);
    TBitmap part = paper(90, 80);
    plain.origin = {40, 70};
    paintAnnotations(part, part.bounds(), list, text, plain);
    EXPECT_TRUE(samePixels(part, whole.cropped({40, 70, 130, 150}).take()));
}

TEST_F(Painting, OnTransparentPixelsKeepsStraightAlpha) {
    TBitmap bitmap = TBitmap::create(60, 60, PixelFormat::Bgra32).take();  // wholly transparent
    TBBShape shape = bare(ShapeKind::FilledRectangle, {10, 10, 50, 50});
    paint(bitmap, shape);
    EXPECT_EQ(bitmap.alpha(5, 5), 0);
    EXPECT_EQ(bitmap.alpha(10, 10), 255);
    EXPECT_NEAR(bitmap.alpha(30, 30), 0.46 * 255, 1);
    expectNear(bitmap.pixel(30, 30), rgb(204, 236, 255), 2, "the colour is not darkened by the transparency");
}

TEST_F(Painting, FarAndHugeAnnotationsAreHarmless) {
    TBitmap bitmap = paper(50, 40000);
    TShapesList list;
    list.add(bare(ShapeKind::FilledEllipse, {-maxCoordinate, -maxCoordinate, maxCoordinate, maxCoordinate}));
    list.add(bare(ShapeKind::Rectangle, {5, 39000, 45, 39900}));
    paintAnnotations(bitmap, bitmap.bounds(), list, text, plain);
    EXPECT_EQ(bitmap.pixel(5, 39500), rgb(255, 0, 0));
    expectNear(bitmap.pixel(20, 35000), mixed(rgb(204, 236, 255), page, 0.46), 1, "inside of the huge ellipse");
}

TEST(Decorations, StayInTheClip) {
    TBitmap bitmap = paper(60, 40);
    const GuideLine guides[] = {{true, 12}, {false, 7}, {true, 500}};
    paintGuides(bitmap, {0, 0, 60, 20}, guides);
    EXPECT_EQ(bitmap.pixel(12, 3), guideColour);
    EXPECT_EQ(redOf(bitmap.pixel(12, 3)), 0);
    EXPECT_EQ(bitmap.pixel(59, 7), guideColour);
    EXPECT_EQ(bitmap.pixel(12, 20), page);
    const Point points[] = {{30, 20}};
    paintHandles(bitmap, bitmap.bounds(), points, 7);
    EXPECT_EQ(bitmap.pixel(27, 17), guideColour);
    EXPECT_EQ(bitmap.pixel(33, 23), guideColour);
    EXPECT_EQ(bitmap.pixel(30, 20), rgb(255, 255, 255));
    EXPECT_EQ(bitmap.pixel(34, 20), page);
}

}  // namespace
}  // namespace glimmer
