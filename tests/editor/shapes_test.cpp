#include "editor/annotations/uShapes.h"

#include <gtest/gtest.h>

#include <random>

#include "editor/annotations/shapes_list.h"
#include "support/assertions.h"

namespace glimmer {
namespace {

const Rect place = {100, 100, 300, 200};

TBBShape annotation() {
    TShapeStyle style = *predefinedStyle("Red Frame");
    style.number.visible = true;
    TBBShape shape(style, place);
    shape.setLabelSize({60, 20});
    return shape;
}

std::shared_ptr<const TBitmap> ink(int32_t width, int32_t height, Point dot) {
    TBitmap picture = TBitmap::create(width, height, PixelFormat::Bgra32).take();
    picture.setPixel(dot.x, dot.y, 0x00FFFF);
    return std::make_shared<const TBitmap>(std::move(picture));
}

// Contrast of relative luminance as accessibility guidelines define it.
double luminance(Colour c) {
    const auto linear = [](uint8_t v) { return std::pow(v / 255.0, 2.2); };
    return 0.2126 * linear(redOf(c)) + 0.7152 * linear(greenOf(c)) + 0.0722 * linear(blueOf(c));
}
double contrast(Colour a, Colour b) {
    const double x = luminance(a) + 0.05;
    const double y = luminance(b) + 0.05;
    return std::max(x, y) / std::min(x, y);
}

TEST(Styles, CanBeReadOnWhiteAndOnDarkPages) {
    for (const TShapeStyle& style : predefinedStyles()) {
        EXPECT_TRUE(style.text.filled) << style.name;
        EXPECT_GE(contrast(style.text.textColour, style.text.backgroundColour), 7) << style.name;
        for (const Colour page : {rgb(255, 255, 255), rgb(20, 20, 20)}) {
            const double line = std::max(contrast(style.line.lineColour, page), contrast(style.line.frameColour, page));
            EXPECT_GE(line, 3) << style.name;
        }
    }
}

TEST(Settings, ComeBackIntoTheirRanges) {
    TShapeDescriptor wild;
    wild.style.shape = {static_cast<ShapeKind>(0), 0xFF123456, 0xFFFFFFFF, 101, 0, true};
    wild.style.text.fontSize = -5;
    wild.style.text.alignment = static_cast<TextAlignment>(7);
    wild.style.text.position = 13;
    wild.style.text.fontName = std::string(5000, 'x');
    wild.style.line.width = 99;
    wild.style.line.front = static_cast<LineEnd>(0);
    wild.style.line.back = static_cast<LineEnd>(4);
    wild.style.number.position = static_cast<NumberPosition>(255);
    wild.shapeRect = {INT32_MAX, 5, INT32_MIN, -5};
    wild.text = std::string(maxTextUnits + 9, 'y');
    wild.number = -1;
    clampDescriptor(wild);
    EXPECT_EQ(wild.style.shape.kind, ShapeKind::FilledRectangle);
    EXPECT_EQ(wild.style.shape.shapeColour, 0x123456U);
    EXPECT_EQ(wild.style.shape.opacity, 100);
    EXPECT_EQ(wild.style.shape.frameWidth, 1);
    EXPECT_EQ(wild.style.text.fontSize, minFontSize);
    EXPECT_EQ(wild.style.text.alignment, TextAlignment::Left);
    EXPECT_EQ(wild.style.text.position, freeTextPosition);
    EXPECT_EQ(wild.style.text.fontName.size(), maxNameUnits);
    EXPECT_EQ(wild.style.line.width, 11);
    EXPECT_EQ(wild.style.line.front, LineEnd::None);
    EXPECT_EQ(wild.style.line.back, LineEnd::None);
    EXPECT_EQ(wild.style.number.position, NumberPosition::OutsideTopLeft);
    EXPECT_EQ(wild.shapeRect, (Rect{-maxCoordinate, -5, maxCoordinate, 5}));
    EXPECT_EQ(wild.text.size(), maxTextUnits);
    EXPECT_EQ(wild.number, 0);
    wild.style.shape.kind = ShapeKind::Drawing;
    clampDescriptor(wild);
    EXPECT_NE(wild.drawing, nullptr) << "a drawing always has a picture";
}

TEST(Press, GoesToAllPartsAndTheTopmostTakesIt) {
    TBBShape shape = annotation();
    EXPECT_FALSE(shape.mouseDown({5, 5}));
    EXPECT_TRUE(shape.mouseDown({150, 150}));
    EXPECT_EQ(shape.activePart(), Part::Shape);
    shape.mouseUp();
    EXPECT_TRUE(shape.mouseDown({200, 50})) << "on the label";
    EXPECT_EQ(shape.activePart(), Part::Text);
    shape.mouseUp();
    EXPECT_TRUE(shape.mouseDown({84, 84})) << "on the badge";
    EXPECT_EQ(shape.activePart(), Part::Number);
    shape.mouseUp();
    EXPECT_TRUE(shape.mouseDown({200, 80})) << "on the line";
    EXPECT_EQ(shape.activePart(), Part::Line);
    shape.mouseUp();
    // Where badge and shape overlap, the badge lies on top.
    shape.number.settings.position = NumberPosition::InsideCentre;
    EXPECT_TRUE(shape.mouseDown({200, 150}));
    EXPECT_EQ(shape.activePart(), Part::Number);
    EXPECT_FALSE(shape.shape.dragging()) << "only one part drags";
}

TEST(Press, WithTheActivePartHiddenGoesToTheFirstVisibleOne) {
    TBBShape shape = annotation();
    shape.setActivePart(Part::Shape);
    shape.shape.setVisible(false);
    EXPECT_FALSE(shape.mouseDown({84, 84})) << "the badge is not the first visible part";
    EXPECT_TRUE(shape.mouseDown({200, 50}));
    EXPECT_EQ(shape.activePart(), Part::Text);
    shape.mouseUp();
    for (const Part part : {Part::Text, Part::Line, Part::Number}) shape.part(part).setVisible(false);
    EXPECT_FALSE(shape.anyVisible());
    EXPECT_TRUE(shape.bounds().empty());
    test::expectAssertion("f != ARRAYSIZE(vObjects)", "uShapes", [&] { shape.mouseDown({150, 150}); });
}

TEST(Press, WithAGrabbedHandleResizesAndLaysOutTheRest) {
    TBBShape shape = annotation();
    ASSERT_TRUE(shape.grabHandleAt({303, 203}, 11));
    EXPECT_EQ(shape.activeHandle(), 4);
    ASSERT_TRUE(shape.mouseDown({303, 203}));
    shape.mouseMove({323, 243});
    EXPECT_EQ(shape.shape.rectangle, (Rect{100, 100, 320, 240}));
    EXPECT_EQ(shape.text.rectangle, labelRect({100, 100, 320, 240}, {60, 20}, 2));
    shape.mouseMove({53, 243});  // beyond the other side: inverted until released
    EXPECT_EQ(shape.shape.rectangle, (Rect{100, 100, 50, 240}));
    shape.mouseUp();
    EXPECT_EQ(shape.shape.rectangle, (Rect{50, 100, 100, 240}));
    EXPECT_EQ(shape.activeHandle(), noHandle);
    EXPECT_EQ(shape.text.rectangle, labelRect({50, 100, 100, 240}, {60, 20}, 2));
    test::expectAssertion("nGrabId>=0&&nGrabId<8", "uShapes", [&] { shape.shape.grabHandle(8); });
}

TEST(Drag, MovesAllOrTheLabelAlone) {
    TBBShape shape = annotation();
    ASSERT_TRUE(shape.mouseDown({150, 150}));
    for (const Point at : {Point{155, 150}, Point{170, 140}}) shape.mouseMove(at);
    shape.mouseUp();
    EXPECT_EQ(shape.shape.rectangle, place.moved(20, -10));
    EXPECT_EQ(shape.text.rectangle, labelRect(place.moved(20, -10), {60, 20}, 2));

    const Rect before = shape.text.rectangle;
    ASSERT_TRUE(shape.mouseDown({before.left + 5, before.top + 5}));
    shape.mouseMove({before.left + 10, before.top + 5});
    EXPECT_EQ(shape.text.rectangle, before) << "snapped to its place";
    EXPECT_EQ(shape.text.settings.position, 2);
    shape.mouseMove({before.left + 15, before.top - 20});
    EXPECT_EQ(shape.text.rectangle, before.moved(10, -25)) << "free";
    EXPECT_EQ(shape.text.settings.position, freeTextPosition);
    shape.mouseUp();
    EXPECT_EQ(shape.shape.rectangle, place.moved(20, -10));
    shape.moveBy(7, 8);
    EXPECT_EQ(shape.text.rectangle, before.moved(17, -17)) << "a free label goes with its shape";
}

TEST(Drag, LabelHandlesChangeTheLabelAlone) {
    TBBShape shape = annotation();
    shape.setActivePart(Part::Text);
    const Rect label = shape.text.rectangle;
    ASSERT_TRUE(shape.grabHandleAt({label.right, label.bottom}, 11));
    ASSERT_TRUE(shape.mouseDown({label.right, label.bottom}));
    shape.mouseMove({label.right + 30, label.bottom + 10});
    shape.mouseUp();
    EXPECT_EQ(shape.text.rectangle, (Rect{label.left, label.top, label.right + 30, label.bottom + 10}));
    EXPECT_EQ(shape.shape.rectangle, place);
}

TEST(Hits, FollowWhatIsPainted) {
    const struct {
        ShapeKind kind;
        bool middle, edge, corner;
    } rows[] = {
        {ShapeKind::FilledRectangle, true, true, true}, {ShapeKind::Rectangle, false, true, true},
        {ShapeKind::FilledEllipse, true, true, false},  {ShapeKind::Ellipse, false, true, false},
        {ShapeKind::Drawing, false, false, true},
    };
    for (const auto& row : rows) {
        TBBShape shape;
        shape.shape.rectangle = {100, 100, 200, 200};
        shape.shape.settings.kind = row.kind;
        shape.shape.drawing = ink(50, 50, {0, 0});
        for (const Part part : {Part::Text, Part::Line, Part::Number}) shape.part(part).setVisible(false);
        const auto hit = [&](Point point) { return shape.partAt(point, {2}).has_value(); };
        EXPECT_EQ(hit({150, 150}), row.middle) << static_cast<int>(row.kind);
        EXPECT_EQ(hit({101, 150}), row.edge) << static_cast<int>(row.kind);
        EXPECT_EQ(hit({101, 101}), row.corner) << static_cast<int>(row.kind);
        EXPECT_FALSE(hit({97, 97}));
        EXPECT_FALSE(hit({202, 150}));
    }
    TBBShape blank;
    blank.shape.rectangle = {100, 100, 200, 200};
    blank.shape.settings.kind = ShapeKind::Drawing;
    test::expectAssertion("pPicture != NULL", "uShapes", [&] { (void)blank.partAt({150, 150}); });
    blank.shape.drawing = std::make_shared<const TBitmap>(TBitmap::create(9, 9, PixelFormat::Bgra32).take());
    EXPECT_TRUE(blank.partAt({150, 150}).has_value()) << "a drawing without ink can be hit anywhere";
}

TEST(Equality, LooksAtEverythingButTheDrag) {
    const TBBShape shape = annotation();
    TBBShape other = shape;
    EXPECT_EQ(shape, other);
    EXPECT_EQ(TBBShape(shape.describe()), shape);
    ASSERT_TRUE(other.mouseDown({150, 150}));
    EXPECT_EQ(shape, other);
    other.mouseUp();
    // Every setting counts.
    const TShapeStyle settings = shape.settings();
    size_t count = 0;
    visitStyle(settings, [&](const char*, const auto&) { ++count; });
    for (size_t changed = 0; changed < count; ++changed) {
        TShapeDescriptor description = shape.describe();
        size_t at = 0;
        visitStyle(description.style, [&](const char*, auto& field) {
            using Field = std::decay_t<decltype(field)>;
            if (at++ != changed) return;
            if constexpr (std::is_same_v<Field, std::string>)
                field += "x";
            else if constexpr (std::is_same_v<Field, bool>)
                field = !field;
            else if constexpr (std::is_enum_v<Field>)
                field = static_cast<Field>(static_cast<int>(field) ^ 1);
            else
                ++field;
        });
        EXPECT_NE(TBBShape(description), shape) << changed;
    }
    TBBShape drawn = shape;
    drawn.shape.drawing = ink(4, 4, {1, 1});
    EXPECT_NE(drawn, shape);
    other = drawn;
    other.shape.drawing = ink(4, 4, {1, 1});
    EXPECT_EQ(drawn, other) << "the same pixels in another picture";
    other.shape.drawing = ink(4, 4, {1, 2});
    EXPECT_NE(drawn, other);
}

TEST(ApplyStyle, KeepsPlacesAndOnRequestVisibility) {
    TBBShape shape = annotation();
    shape.setTextPosition(8);
    TShapeStyle style = *predefinedStyle("Cold Glass");
    style.line.visible = false;
    shape.applyStyle(style, false);
    EXPECT_EQ(shape.styleName, "Cold Glass");
    EXPECT_EQ(shape.shape.settings.shapeColour, rgb(0, 102, 255));
    EXPECT_TRUE(shape.line.isVisible());
    EXPECT_TRUE(shape.number.isVisible());
    EXPECT_EQ(shape.text.settings.position, 8);
    shape.applyStyle(style, true);
    EXPECT_FALSE(shape.line.isVisible());
    EXPECT_FALSE(shape.number.isVisible());
}

TEST(List, KeepsOrderAndIds) {
    TShapesList list;
    const uint32_t a = list.add(annotation());
    const uint32_t b = list.add(annotation());
    const uint32_t c = list.add(annotation());
    const auto order = [&] {
        std::vector<uint32_t> ids;
        for (const TBBShape& shape : list) ids.push_back(shape.id());
        return ids;
    };
    EXPECT_EQ(list.topAt({150, 150})->id(), c);
    EXPECT_TRUE(list.moveTo(a, 2));
    EXPECT_EQ(order(), (std::vector{b, c, a}));
    EXPECT_TRUE(list.moveTo(c, 0));
    EXPECT_EQ(order(), (std::vector{c, b, a}));
    EXPECT_FALSE(list.moveTo(999, 0));

    const TShapesList before = list;
    const TBBShape removed = *list.find(b);
    EXPECT_TRUE(list.remove(b));
    EXPECT_NE(list, before);
    const uint32_t d = list.add(annotation());
    EXPECT_NE(d, b) << "an id is not given again while it may come back";
    list.remove(d);
    EXPECT_EQ(list.insert(1, removed), b);
    EXPECT_EQ(list, before);
    EXPECT_NE(list.insert(0, removed), b) << "the id is taken";
}

TEST(List, NumbersInTheOrderThatItHas) {
    TShapesList list;
    EXPECT_EQ(list.nextNumber(), 1);
    for (const int32_t number : {7, 3, 7, 20}) {
        TBBShape shape = annotation();
        shape.number.number = number;
        list.add(shape);
    }
    EXPECT_EQ(list.nextNumber(), 21);
    const auto numbers = [&] {
        std::vector<int32_t> all;
        for (const TBBShape& shape : list) all.push_back(shape.number.number);
        return all;
    };
    list.renumber();
    EXPECT_EQ(numbers(), (std::vector{2, 1, 3, 4}));
}

}  // namespace
}  // namespace glimmer
