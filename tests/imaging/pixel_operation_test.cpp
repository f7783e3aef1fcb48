#include "imaging/pixel_operation.h"

#include <gtest/gtest.h>

#include "imaging/gblur2.h"
#include "imaging/glow.h"
#include "support/assertions.h"
#include "support/pictures.h"

namespace glimmer {
namespace {

constexpr Size size{120, 90};

TBitmap image(PixelFormat format) { return test::page(size.width, size.height, format, 9); }

/// The selections that the effects meet: what is selected, and how it is given.
struct Case {
    const char* name;
    std::optional<Region> region;
    std::optional<PixelSelection> selection;
    Region pixels;  ///< what must be changed
};

std::vector<Case> cases() {
    const Region ring = Region::ellipse({20, 10, 90, 80}).subtracted(Region::ellipse({40, 30, 60, 60}));
    const Rect all{0, 0, size.width, size.height};
    return {
        {"rectangle", {}, PixelSelection{{30, 20, 59, 49}}, Region::rectangle({30, 20, 60, 50})},
        {"inverted rectangle", {}, PixelSelection{{59, 49, 30, 20}}, Region::rectangle({30, 20, 60, 50})},
        {"one pixel", {}, PixelSelection{{5, 6, 5, 6}}, Region::rectangle({5, 6, 6, 7})},
        {"over the edges", {}, PixelSelection{{-9, 70, 500, INT32_MAX}}, Region::rectangle({0, 70, 120, 90})},
        {"ellipse",
         {},
         PixelSelection{{30, 20, 59, 49}, PixelSelection::Outline::ellipse},
         Region::ellipse({30, 20, 60, 50})},
        {"ellipse over the edge",
         {},
         PixelSelection{{-30, 20, 59, 149}, PixelSelection::Outline::ellipse},
         Region::ellipse({-30, 20, 60, 150}).intersected(Region::rectangle(all))},
        {"region", ring, {}, ring},
        {"region goes before", ring, PixelSelection{{0, 0, 5, 5}}, ring},
        {"region over the edge", ring.moved(-40, -30), {}, ring.moved(-40, -30).intersected(Region::rectangle(all))},
    };
}

const Region* regionOf(const Case& c) { return c.region ? &*c.region : nullptr; }
const PixelSelection* selectionOf(const Case& c) { return c.selection ? &*c.selection : nullptr; }

/// The picture that an effect makes of the whole box, pixel by pixel; compared inside the selection only.
TBitmap effectOn(const TBitmap& image, const Rect& box, int32_t effect) {
    TBitmap part = image.cropped(box).take().converted(PixelFormat::Bgr24).take();
    if (effect == 2) GBlur(part, 1.7);
    for (int32_t y = 0; y < part.height() && effect != 2; ++y) {
        for (int32_t x = 0; x < part.width(); ++x) {
            const Colour c = part.pixel(x, y);
            const uint32_t grey = (11U * redOf(c) + 59U * greenOf(c) + 30U * blueOf(c)) / 100U;
            const auto blend = [y](uint32_t v) { return ((y % 2 == 0 ? 0U : 0xC0U) * 64 + v * 191 + 127) / 255; };
            if (effect == 3) part.setPixel(x, y, rgb(grey, grey, grey));
            if (effect == 4) part.setPixel(x, y, c ^ 0xFFFFFFU);
            if (effect == 6) part.setPixel(x, y, rgb(blend(redOf(c)), blend(greenOf(c)), blend(blueOf(c))));
        }
    }
    return part;
}

TEST(PixelOperation, EffectsChangeTheSelectionAndNothingElse) {
    for (const PixelFormat format : {PixelFormat::Bgr24, PixelFormat::Bgra32}) {
        const TBitmap before = image(format);
        for (const Case& c : cases()) {
            for (const int32_t effect : {0, 2, 3, 4, 5, 6, 99, 258, -252}) {
                SCOPED_TRACE(std::string(c.name) + ", effect " + std::to_string(effect));
                const TPixelOperation operation = applyEffect(effect, before, regionOf(c), selectionOf(c), 17).take();
                EXPECT_EQ(operation.kind, PixelOperationKind::interlace);
                EXPECT_EQ(operation.colour, 0U);
                EXPECT_EQ(operation.box(), c.pixels.bounds());
                EXPECT_EQ(operation.reach(), c.pixels.bounds());
                EXPECT_EQ(selectionBox(size, regionOf(c), selectionOf(c)), c.pixels.bounds());
                ASSERT_EQ(operation.pBmp->size(), (Size{operation.box().width(), operation.box().height()}));
                EXPECT_EQ(operation.region.has_value(), !c.pixels.isRectangle());
                EXPECT_EQ(operation.rectangle == Rect(), operation.region.has_value());
                EXPECT_TRUE(c.name != std::string("inverted rectangle") ||
                            operation.rectangle == (Rect{30, 20, 59, 49}));

                TBitmap after = before.clone().take();
                drawPixelOperation(&after, operation);
                const TBitmap expected = effectOn(before, operation.box(), effect);
                for (int32_t y = 0; y < size.height; ++y)
                    for (int32_t x = 0; x < size.width; ++x)
                        ASSERT_EQ(after.pixel(x, y),
                                  c.pixels.contains({x, y})
                                      ? expected.pixel(x - operation.box().left, y - operation.box().top)
                                      : before.pixel(x, y))
                            << x << ' ' << y;
                EXPECT_FALSE(after.hasTransparency());
            }
        }
    }
}

TEST(PixelOperation, FillPaintsOpaquely) {
    const TBitmap before = test::noise(size.width, size.height, PixelFormat::Bgra32, 8);
    for (const Case& c : cases()) {
        const TPixelOperation operation = makeFill(before, regionOf(c), selectionOf(c), rgb(1, 2, 3)).take();
        EXPECT_EQ(operation.kind, PixelOperationKind::fill);
        TBitmap after = before.clone().take();
        drawPixelOperation(&after, operation);
        for (int32_t y = 0; y < size.height; ++y) {
            for (int32_t x = 0; x < size.width; ++x) {
                const bool inside = c.pixels.contains({x, y});
                ASSERT_EQ(after.pixel(x, y), inside ? rgb(1, 2, 3) : before.pixel(x, y)) << c.name;
                ASSERT_EQ(after.alpha(x, y), inside ? 255 : before.alpha(x, y)) << c.name;
            }
        }
    }
}

TEST(PixelOperation, TransparencyStaysExceptThatItIsBlurred) {
    const TBitmap before = test::noise(40, 30, PixelFormat::Bgra32, 9);
    const PixelSelection all{{0, 0, 39, 29}};
    for (const int32_t effect : {3, 4, 6}) {
        const TPixelOperation operation = applyEffect(effect, before, nullptr, &all, 25).take();
        for (int32_t y = 0; y < 30; ++y)
            for (int32_t x = 0; x < 40; ++x) ASSERT_EQ(operation.pBmp->alpha(x, y), before.alpha(x, y)) << effect;
    }
    // Writing in one colour, of which only the alpha tells: blurred, it must be as faint as opaque writing would be.
    TBitmap writing = TBitmap::create(40, 30, PixelFormat::Bgra32).take();
    for (int32_t x = 0; x < 40; x += 4) writing.fill({x, 0, x + 2, 30}, rgb(200, 0, 0));
    const TPixelOperation operation = applyEffect(2, writing, nullptr, &all, 40).take();
    for (int32_t x = 10; x < 30; ++x) {
        EXPECT_NEAR(operation.pBmp->alpha(x, 15), 127, 20) << x;
        EXPECT_NEAR(redOf(operation.pBmp->pixel(x, 15)), 200, 4) << "clear pixels have no colour to give";
    }
}

TEST(PixelOperation, BlurNearAHoleKeepsTheRestOpaque) {
    TBitmap picture = test::plain(80, 40, rgb(255, 255, 255));
    picture.row(20)[20 * 4 + 3] = 0;
    const PixelSelection all{{0, 0, 79, 39}};
    const TPixelOperation operation = applyEffect(2, picture, nullptr, &all, 25).take();
    EXPECT_LT(operation.pBmp->alpha(20, 20), 255);
    EXPECT_EQ(operation.pBmp->alpha(60, 20), 255);
    EXPECT_GE(redOf(operation.pBmp->pixel(20, 20)), 250);
}

TEST(PixelOperation, RefusesWhatCannotBe) {
    const TBitmap picture = image(PixelFormat::Bgr24);
    const PixelSelection outside{{200, 5, 210, 9}};
    const Region none;
    EXPECT_FALSE(applyEffect(2, picture, nullptr, &outside, 25).ok());
    EXPECT_FALSE(makeFill(picture, &none, nullptr, 0).ok());
    EXPECT_FALSE(makeGlow(picture, nullptr, &outside, 0).ok());
    TBitmap canvas = picture.clone().take();
    TPixelOperation operation;
    operation.kind = PixelOperationKind::blur;
    using test::expectAssertion;
    expectAssertion("pSelection != NULL", "uEditor",
                    [&] { static_cast<void>(applyEffect(2, picture, nullptr, nullptr, 25)); });
    expectAssertion("pCanvas!=NULL", "uEditor", [&] { drawPixelOperation(nullptr, operation); });
    expectAssertion("strOperation.pBmp != NULL", "uEditor", [&] { drawPixelOperation(&canvas, operation); });
    EXPECT_TRUE(samePixels(canvas, picture));
}

TEST(Glow, FadesOutwardsAndLeavesTheInside) {
    const TBitmap picture = test::plain(size.width, size.height, rgb(255, 255, 255));
    const PixelSelection selection{{40, 30, 69, 59}};
    const TPixelOperation operation = makeGlow(picture, nullptr, &selection, rgb(255, 0, 0)).take();
    EXPECT_EQ(operation.reach(), (Rect{20, 10, 90, 80}));
    EXPECT_EQ(operation.pBmp->size(), (Size{70, 70}));
    TBitmap after = picture.clone().take();
    drawPixelOperation(&after, operation);
    // Along the row through the middle, from inside to the right.
    for (int32_t x = 40; x < 70; ++x) EXPECT_EQ(after.pixel(x, 45), rgb(255, 255, 255));
    EXPECT_EQ(after.pixel(70, 45), rgb(255, 0, 0)) << "full beside the edge";
    for (int32_t x = 71; x < 89; ++x) EXPECT_GT(greenOf(after.pixel(x, 45)), greenOf(after.pixel(x - 1, 45))) << x;
    EXPECT_EQ(after.pixel(89, 45), rgb(255, 255, 255)) << "nothing at twenty pixels";
    // Round at the corner: the same at the same distance (3, 4 and 5).
    EXPECT_EQ(after.pixel(69 + 3, 59 + 4), after.pixel(69 + 5, 45));
    EXPECT_EQ(after.pixel(39 - 14, 29 - 14), rgb(255, 255, 255));
    for (int32_t y = 0; y < size.height; ++y)
        for (int32_t x = 0; x < size.width; ++x)
            ASSERT_TRUE(operation.reach().contains({x, y}) || after.pixel(x, y) == rgb(255, 255, 255));
}

TEST(Glow, GoesByTheNearestPixelOfAnyRegion) {
    const TBitmap picture = test::noise(size.width, size.height, PixelFormat::Bgr24, 10);
    const Region region = Region::ellipse({-5, 4, 30, 60}).exclusiveOr(Region::rectangle({10, 20, 70, 40}));
    const TPixelOperation operation = makeGlow(picture, &region, nullptr, rgb(0, 250, 9)).take();
    TBitmap after = picture.clone().take();
    drawPixelOperation(&after, operation);
    const Region cut = region.intersected(Region::rectangle(picture.bounds()));
    for (int32_t y = 0; y < size.height; y += 3) {
        for (int32_t x = 0; x < size.width; x += 2) {
            double nearest = 1000;
            for (int32_t j = y - 20; j <= y + 20; ++j)
                for (int32_t i = x - 20; i <= x + 20; ++i)
                    if (cut.contains({i, j})) nearest = std::min(nearest, std::hypot(i - x, j - y));
            const double left = nearest == 0 || nearest >= 20 ? 0 : (20 - nearest) / 19;
            const Colour c = picture.pixel(x, y);
            const double expected = greenOf(c) + left * left * (250.0 - greenOf(c));
            ASSERT_NEAR(greenOf(after.pixel(x, y)), expected, 2.5) << x << ' ' << y << ' ' << nearest;
            ASSERT_TRUE(left > 0 || after.pixel(x, y) == c);
        }
    }
}

TEST(Glow, ShowsOnClearPixels) {
    TBitmap picture = TBitmap::create(80, 80, PixelFormat::Bgra32).take();
    const Region dot = Region::rectangle({40, 40, 41, 41});
    const TBitmap pixels = glow(picture, dot, rgb(9, 99, 199)).take();
    EXPECT_EQ(pixels.size(), (Size{41, 41}));
    EXPECT_EQ(pixels.alpha(20, 20), 0) << "inside";
    EXPECT_EQ(pixels.alpha(21, 20), 255);
    EXPECT_EQ(pixels.pixel(25, 20), rgb(9, 99, 199));
    EXPECT_GT(pixels.alpha(25, 20), 100);
    EXPECT_LT(pixels.alpha(25, 20), 250);
    EXPECT_EQ(pixels.alpha(0, 0), 0);
}

}  // namespace
}  // namespace glimmer
