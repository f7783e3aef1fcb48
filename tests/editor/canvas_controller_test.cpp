#include "editor/canvas/canvas_controller.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "editor/annotations/shapes_list.h"
#include "editor/commands/set_info.h"
#include "editor/painting/cairo_text_painter.h"
#include "imaging/block_at.h"

namespace glimmer {
namespace {

constexpr Modifiers none{};
constexpr Modifiers shift{true, false, false};
constexpr Modifiers ctrl{false, true, false};

/// A window that remembers what it was asked.
class Window final : public CanvasHost {
public:
    TextPainter& textPainter() override { return text; }
    void controllerChanged(const ControllerChange& change) override { changes.push_back(change); }
    void beginTextEdit(AnnotationId id) override { editing = id; }
    void finishTextEdit() override {
        if (editing != noAnnotation) controller->endTextEdit(std::exchange(editing, noAnnotation));
    }
    void inkChanged(const Rect&) override {}
    void reveal(const Rect& area) override { revealed = area; }
    void pickColour(Colour, std::function<void(Colour)> then) override { picked = std::move(then); }
    void failed(const std::string& message) override { failures.push_back(message); }

    CairoTextPainter text;
    CanvasController* controller = nullptr;
    AnnotationId editing = noAnnotation;
    std::vector<ControllerChange> changes;
    Rect revealed;
    std::function<void(Colour)> picked;
    std::vector<std::string> failures;
};

/// A capture of 400 x 300 in a window of the same size.
struct Canvas {
    Canvas() {
        TBitmap picture = TBitmap::create(400, 300, PixelFormat::Bgra32).take();
        std::mt19937 random(1);
        for (int32_t y = 0; y < 300; ++y)
            for (int32_t x = 0; x < 400; ++x) picture.setPixel(x, y, static_cast<Colour>(random() & 0xFFFFFF));
        document = CaptureDocument::create(std::move(picture), {}).take();
        view.setPictureSize({400, 300});
        view.setWindowSize({400, 300});
        controller = std::make_unique<CanvasController>(*document, view, window);
        window.controller = controller.get();
    }
    void drag(Point from, Point to, Modifiers held = none) {
        controller->press(from, held);
        controller->move({(from.x + to.x) / 2, (from.y + to.y) / 2}, held);
        controller->move(to, held);
        controller->release(to, held);
    }
    AnnotationId draw(Rect rect, EditTool tool = EditTool::TextShapeRectangle, const std::string& text = "label") {
        controller->setTool(tool);
        drag({rect.left, rect.top}, {rect.right - 1, rect.bottom - 1});
        const AnnotationId id = document->selectedId();
        if (window.editing != noAnnotation && !text.empty()) controller->textEdited(window.editing, text);
        window.finishTextEdit();
        controller->setTool(EditTool::Pointer);
        return id;
    }
    const TBBShape& shape(AnnotationId id) { return *document->annotations().find(id); }
    size_t steps() const { return document->history().depth(); }

    Window window;
    CanvasView view;
    std::unique_ptr<CaptureDocument> document;
    std::unique_ptr<CanvasController> controller;
};

// The window hears once of what an input changed, and of the capture's changes by its observers only.
TEST(Canvas, tellsTheWindowOnceAndOfItsOwnOnly) {
    Canvas c;
    const auto told = [&](const std::function<void()>& input) {
        c.window.changes.clear();
        input();
        EXPECT_LE(c.window.changes.size(), 1U);
        return c.window.changes.empty() ? ControllerChange() : c.window.changes.front();
    };
    const AnnotationId id = c.draw({100, 150, 200, 200});
    EXPECT_TRUE(told([&] { c.controller->setTool(EditTool::Line); }).tool);
    EXPECT_FALSE(told([&] { c.controller->setTool(EditTool::Line); }).any());
    EXPECT_FALSE(told([&] { c.controller->key(Key::Right, none); }).any()) << "the capture's own";
    EXPECT_TRUE(told([&] { c.controller->press({120, 150}, none); }).hover);
    EXPECT_TRUE(told([&] { c.controller->key(Key::Escape, none); }).hover);
    EXPECT_TRUE(told([&] { c.controller->showPart(Part::Number, true); }).settings);
    EXPECT_TRUE(told([&] { c.controller->beginDrawing(id); }).mode);
    EXPECT_TRUE(told([&] { c.controller->setPen({true, 0, 3}); }).settings);
    const ControllerChange ended = told([&] { c.controller->setTool(EditTool::Pointer); });
    EXPECT_TRUE(ended.mode && ended.tool);
}

TEST(Canvas, aDragOnEmptyCanvasSelectsAnAreaWhicheverWayItGoes) {
    for (const auto& [from, to] : {std::pair<Point, Point>{{50, 40}, {149, 99}},
                                   {{149, 99}, {50, 40}},
                                   {{50, 99}, {149, 40}},
                                   {{149, 40}, {50, 99}}}) {
        Canvas c;
        c.drag(from, to);
        const Rect area = c.document->selection().bounds({400, 300});
        EXPECT_EQ(area, (Rect{50, 40, 150, 100})) << "both corners' pixels are in it";
        EXPECT_EQ(c.steps(), 0U) << "selecting is not a step";
        c.controller->press({300, 200}, none);
        c.controller->release({300, 200}, none);
        EXPECT_TRUE(c.document->selection().empty()) << "a click elsewhere";
    }
}

TEST(Canvas, areasCanBeSquareAddedMovedResizedAndInverted) {
    Canvas c;
    c.drag({10, 10}, {60, 30}, shift);
    EXPECT_EQ(c.document->selection().rect, (Rect{10, 10, 61, 61}));
    c.drag({100, 10}, {119, 19}, ctrl);
    EXPECT_EQ(c.document->selection().kind, Selection::Kind::Region);
    EXPECT_EQ(c.document->selection().pixels({400, 300}).pixelCount(), 51U * 51 + 20 * 10);
    c.drag({105, 15}, {115, 25});
    EXPECT_EQ(c.document->selection().bounds({400, 300}), (Rect{20, 20, 130, 71})) << "moved as a whole";
    c.controller->execute(EditCommand::InvertSelection);
    EXPECT_EQ(c.document->selection().pixels({400, 300}).pixelCount(), 400U * 300 - 51 * 51 - 200);
    c.controller->key(Key::Delete, none);
    EXPECT_TRUE(c.document->selection().empty());
    c.drag({100, 100}, {199, 199});
    c.drag({200, 200}, {250, 220});  // the corner's handle
    EXPECT_NEAR(c.document->selection().rect.right, 250, 1);
    EXPECT_NEAR(c.document->selection().rect.bottom, 220, 1);
    c.drag({150, 150}, {1000, 1000});
    EXPECT_EQ(c.document->selection().bounds({400, 300}).right, 400) << "the area stays on the picture";
    c.controller->setTool(EditTool::TextShapeEllipse);
    c.controller->key(Key::Delete, none);
    c.controller->setTool(EditTool::TextShapeEllipse);
    c.drag({10, 10}, {60, 60});
    EXPECT_EQ(c.document->selection().kind, Selection::Kind::Ellipse);
    c.controller->setTool(EditTool::TextShapePolygon);
    for (const Point p : {Point{200, 200}, Point{300, 200}, Point{300, 280}}) {
        c.controller->press(p, none);
        c.controller->release(p, none);
    }
    c.controller->key(Key::Enter, none);
    EXPECT_EQ(c.document->selection().kind, Selection::Kind::Polygon);
    EXPECT_TRUE(c.document->selection().pixels({400, 300}).contains({295, 210}));
    EXPECT_FALSE(c.document->selection().pixels({400, 300}).contains({205, 270}));
}

// Pixels inside the selection become what the operation makes of them; outside nothing changes; undo is exact.
TEST(Canvas, pixelOperationsChangeTheSelectionOnly) {
    enum class Shape { Rectangle, Ellipse, Inverted };
    for (const char operation : {'F', 'B', 'G', 'N', 'L', 'T'}) {
        for (const Shape shape : {Shape::Rectangle, Shape::Ellipse, Shape::Inverted}) {
            SCOPED_TRACE(testing::Message() << operation << static_cast<int>(shape));
            Canvas c;
            if (shape == Shape::Ellipse) c.controller->setTool(EditTool::TextShapeEllipse);
            c.drag({100, 80}, {219, 169});
            if (shape == Shape::Inverted) c.controller->execute(EditCommand::InvertSelection);
            const Region inside = c.document->selection().pixels({400, 300});
            const TBitmap before = c.document->background().clone().take();
            ASSERT_TRUE(c.controller->key(letter(operation), ctrl));
            if (operation == 'F' || operation == 'L') {
                EXPECT_EQ(c.steps(), 0U) << "waits for the picker";
                c.window.picked(rgb(10, 20, 30));
            }
            ASSERT_EQ(c.steps(), 1U);
            const TBitmap& after = c.document->background();
            uint64_t changedInside = 0;
            uint64_t changedOutside = 0;
            for (int32_t y = 0; y < 300; ++y)
                for (int32_t x = 0; x < 400; ++x)
                    if (before.pixel(x, y) != after.pixel(x, y))
                        ++(inside.contains({x, y}) ? changedInside : changedOutside);
            if (operation == 'L') {
                EXPECT_EQ(changedInside, 0U);
                EXPECT_GT(changedOutside, 500U);
            } else {
                EXPECT_EQ(changedOutside, 0U);
                EXPECT_GT(changedInside, inside.pixelCount() * 9 / 10);
            }
            if (operation == 'F') {
                EXPECT_EQ(after.pixel(inside.rects()[0].left, inside.rects()[0].top), rgb(10, 20, 30));
            }
            c.controller->key(letter('Z'), ctrl);
            EXPECT_TRUE(samePixels(c.document->background(), before));
        }
    }
}

TEST(Canvas, cropKeepsTheAnnotationsOverTheirPixelsAndNoneOutside) {
    Canvas c;
    const AnnotationId hidden = c.draw({10, 200, 40, 230});
    c.controller->execute(EditCommand::ToggleShape);
    c.controller->execute(EditCommand::ToggleText);
    c.controller->execute(EditCommand::ToggleLine);
    c.draw({340, 250, 390, 290}, EditTool::RectHighlight);
    const AnnotationId id = c.draw({150, 150, 200, 180});
    const TShapesList before = c.document->annotations();
    c.drag({100, 80}, {319, 239});
    const Colour corner = c.document->background().pixel(100, 80);
    ASSERT_TRUE(c.controller->key(letter('R'), ctrl));
    EXPECT_EQ(c.document->size(), (Size{220, 160}));
    EXPECT_EQ(c.document->background().pixel(0, 0), corner);
    EXPECT_EQ(c.shape(id).shape.rectangle, (Rect{50, 70, 100, 100}));
    EXPECT_EQ(c.document->annotations().size(), 1U) << "what was written outside is not saved with the rest";
    EXPECT_TRUE(c.document->selection().empty());
    c.controller->key(letter('Z'), ctrl);
    EXPECT_EQ(c.document->size(), (Size{400, 300}));
    EXPECT_EQ(c.document->annotations(), before);
    EXPECT_FALSE(c.shape(hidden).anyVisible());
}

TEST(Canvas, aLabelWithoutTextIsNotKept) {
    Canvas c;
    const AnnotationId id = c.draw({100, 100, 200, 160}, EditTool::TextShapeRectangle, "");
    EXPECT_TRUE(c.shape(id).shape.isVisible());
    EXPECT_FALSE(c.shape(id).text.isVisible());
    EXPECT_FALSE(c.shape(id).line.isVisible());
    EXPECT_EQ(c.steps(), 1U);

    // Emptied after a drag: two things, and the drag can be had back.
    const AnnotationId label = c.draw({50, 50, 90, 90}, EditTool::Text);
    const Rect before = c.shape(label).text.rectangle;
    c.drag({60, 60}, {70, 70});
    c.controller->execute(EditCommand::EditText);
    c.controller->textEdited(label, "");
    c.window.finishTextEdit();
    EXPECT_EQ(c.document->annotations().find(label), nullptr);
    for (int i = 0; i < 2; ++i) c.controller->execute(EditCommand::Undo);
    EXPECT_EQ(c.shape(label).text.rectangle, before.moved(10, 10));
}

TEST(Canvas, anArrowNeedsNoTextAndTheFirstNumberIsOne) {
    Canvas c;
    c.draw({50, 50, 90, 90}, EditTool::Text, "");
    EXPECT_EQ(c.steps(), 0U) << "a label without text was never there";
    const AnnotationId arrow = c.draw({100, 100, 200, 160}, EditTool::TextLine, "");
    EXPECT_TRUE(c.shape(arrow).line.isVisible());
    const AnnotationId second = c.draw({100, 200, 200, 260});
    c.controller->execute(EditCommand::ToggleNumber);
    EXPECT_EQ(c.shape(second).number.number, 1);
    c.document->selectAnnotation(arrow);
    c.controller->execute(EditCommand::ToggleNumber);
    EXPECT_EQ(c.shape(arrow).number.number, 2);
    for (const Part part : {Part::Line, Part::Number}) c.controller->showPart(part, false);
    EXPECT_FALSE(c.controller->overlay().polyline.empty()) << "what is all hidden is still seen to be selected";
}

TEST(Canvas, theBodyMovesAllTheLabelMovesAloneAndSnaps) {
    Canvas c;
    const AnnotationId id = c.draw({100, 150, 200, 200});
    const TBBShape before = c.shape(id);
    c.drag({110, 151}, {130, 171});
    EXPECT_EQ(c.shape(id).shape.rectangle, (Rect{120, 170, 220, 220}));
    const Rect label = c.shape(id).text.rectangle;
    const Point on{middle(label.left, label.right), middle(label.top, label.bottom)};
    c.controller->press(on, none);
    c.controller->move({on.x + 70, on.y + 3}, none);
    EXPECT_FALSE(c.controller->overlay().guides.empty());
    c.controller->release({on.x + 70, on.y + 3}, none);
    EXPECT_EQ(c.shape(id).shape.rectangle, (Rect{120, 170, 220, 220})) << "the shape stayed";
    c.drag({on.x + 71, on.y + 4}, {on.x + 3, on.y + 2});
    EXPECT_EQ(c.shape(id).text.settings.position, 2) << "near its place it snaps";
    EXPECT_EQ(c.shape(id).text.rectangle, label);
    EXPECT_TRUE(c.controller->overlay().guides.empty());
}

TEST(Canvas, whatADragDidIsOverWhenTheNextOneBegins) {
    Canvas c;
    const AnnotationId id = c.draw({100, 150, 200, 200});
    const auto label = [&] { return c.shape(id).text.rectangle; };
    const auto shape = [&] { return c.shape(id).shape.rectangle; };
    c.drag({200, 200}, {240, 230});  // the lower right handle
    EXPECT_EQ(shape(), (Rect{100, 150, 240, 230}));
    c.drag({110, 151}, {120, 156});  // the frame: moves, also after an undo of the resizing
    EXPECT_EQ(shape(), (Rect{110, 155, 250, 235}));
    c.controller->execute(EditCommand::Undo);
    c.drag({110, 151}, {120, 156});
    EXPECT_EQ(shape(), (Rect{110, 155, 250, 235}));

    // The handles stand on the part that was pressed last, dragged or not, and can be pulled there.
    const Point on{middle(label().left, label().right), middle(label().top, label().bottom)};
    c.drag(on, {on.x + 60, on.y - 30});
    EXPECT_EQ(c.controller->overlay().handles[0], handlePoint(label(), 0));
    c.drag({120, 156}, {120, 156});  // a click on the frame
    EXPECT_EQ(c.controller->overlay().handles[0], handlePoint(shape(), 0));
    c.drag({250, 235}, {260, 245});
    EXPECT_EQ(shape(), (Rect{110, 155, 260, 245}));
    const Point moved{middle(label().left, label().right), middle(label().top, label().bottom)};
    c.drag(moved, moved);
    EXPECT_EQ(c.controller->overlay().handles[0], handlePoint(label(), 0));
}

// Wherever a handle is shown a press grabs it, wherever none is shown none is grabbed; the pointer tells the same.
TEST(Canvas, handlesAreWhereTheyCanBeGrabbed) {
    constexpr CanvasCursor sizing[] = {CanvasCursor::NorthWestSouthEast, CanvasCursor::NorthEastSouthWest,
                                       CanvasCursor::Vertical, CanvasCursor::Horizontal};
    for (unsigned visible = 1; visible < 16; ++visible) {
        SCOPED_TRACE(visible);
        Canvas c;
        const AnnotationId id = c.draw({100, 150, 200, 200});
        for (size_t i = 0; i < partCount; ++i) c.controller->showPart(static_cast<Part>(i), (visible >> i & 1) != 0);
        const TBBShape before = c.shape(id);
        const CanvasOverlay overlay = c.controller->overlay();
        EXPECT_FALSE(overlay.handles.empty() && overlay.polyline.empty()) << "one sees that it is selected";
        for (const Rect& rect : {before.shape.rectangle, before.text.rectangle}) {
            const Point corner = handlePoint(rect, 4);
            const bool shown =
                std::find(overlay.handles.begin(), overlay.handles.end(), corner) != overlay.handles.end();
            const CanvasCursor cursor = c.controller->cursorAt(corner);
            EXPECT_EQ(std::find(std::begin(sizing), std::end(sizing), cursor) != std::end(sizing), shown);
            if (!shown) continue;
            c.drag(corner, {corner.x + 9, corner.y + 7});
            EXPECT_EQ(c.document->selectedId(), id);
            EXPECT_FALSE(c.shape(id) == before);
            c.controller->execute(EditCommand::Undo);
        }
    }
}

TEST(Canvas, insertMakesWhatTheSettingsSay) {
    for (const ShapeKind kind :
         {ShapeKind::FilledRectangle, ShapeKind::Rectangle, ShapeKind::FilledEllipse, ShapeKind::Ellipse}) {
        Canvas c;
        c.controller->changeKind(kind);
        c.controller->key(Key::Insert, none);
        c.window.finishTextEdit();
        EXPECT_EQ(c.document->selectedAnnotation()->shape.settings.kind, kind);
        c.drag({10, 10}, {60, 40});
        c.controller->key(letter('A'), ctrl);
        c.window.finishTextEdit();
        const ShapeKind converted = c.document->selectedAnnotation()->shape.settings.kind;
        EXPECT_EQ(converted, kind == ShapeKind::FilledRectangle ? kind : ShapeKind::Rectangle);
    }
}

TEST(Canvas, drawingInAnAnnotationChangesItsShapeOnlyAndOnlyByStrokes) {
    Canvas c;
    const AnnotationId id = c.draw({100, 150, 200, 200});
    const TBBShape frame = c.shape(id);
    const size_t steps = c.steps();
    c.controller->changeKind(ShapeKind::Drawing);
    c.controller->endDrawing();
    EXPECT_EQ(c.shape(id), frame) << "nothing was drawn";
    EXPECT_EQ(c.steps(), steps);
    c.controller->changeKind(ShapeKind::Drawing);
    c.drag({120, 160}, {180, 190});
    c.controller->endDrawing();
    ASSERT_EQ(c.document->annotations().size(), 1U);
    EXPECT_EQ(c.shape(id).shape.settings.kind, ShapeKind::Drawing);
    EXPECT_EQ(c.shape(id).text.text, "label");

    // Stretched, and beyond the picture's edge: taken up and put back, or drawn in, it stays so.
    const Rect drawn = c.shape(id).shape.rectangle;
    c.drag({drawn.right, drawn.bottom}, {drawn.right + 40, drawn.bottom + 30});
    c.drag({150, 180}, {-20, 180});
    const TBBShape stretched = c.shape(id);
    ASSERT_LT(stretched.shape.rectangle.left, 0);
    c.controller->beginDrawing(id);
    c.controller->endDrawing();
    EXPECT_EQ(c.shape(id), stretched);
    c.controller->beginDrawing(id);
    c.drag({30, 180}, {31, 180});
    c.controller->endDrawing();
    EXPECT_EQ(c.shape(id).shape.rectangle.left, stretched.shape.rectangle.left);
    EXPECT_EQ(c.shape(id).shape.rectangle.bottom, stretched.shape.rectangle.bottom);

    // A new name for the capture in the middle; the strokes are still what is taken back.
    const TBBShape before = c.shape(id);
    c.controller->beginDrawing(id);
    c.drag({10, 20}, {50, 20});
    ASSERT_TRUE(c.document->run(std::make_unique<SetInfo>(SetInfo::Field::Name, "renamed")));
    EXPECT_TRUE(c.controller->key(letter('Z'), ctrl));
    EXPECT_EQ(c.document->info().name, "renamed");
    EXPECT_EQ(c.shape(id), before);

    // Another kind takes the ink away, from memory and from what is saved.
    c.controller->endDrawing();
    c.document->selectAnnotation(id);
    c.controller->changeKind(ShapeKind::Ellipse);
    EXPECT_EQ(c.shape(id).shape.drawing, nullptr);
    c.controller->execute(EditCommand::Undo);
    EXPECT_EQ(c.shape(id), before);

    // Cleared: what else it shows stays.
    c.controller->beginDrawing(id);
    c.controller->clearDrawing();
    c.controller->endDrawing();
    ASSERT_EQ(c.document->annotations().size(), 1U);
    EXPECT_EQ(c.shape(id).text, before.text);
    EXPECT_EQ(c.shape(id).shape.drawing->size(), (Size{1, 1}));
}

TEST(Canvas, aLineIsPulledByItsEnds) {
    Canvas c;
    const AnnotationId line = c.draw({50, 50, 150, 100}, EditTool::Line, "");
    const auto ends = [&] {
        auto found = c.shape(line).freeLineEnds();
        EXPECT_EQ(found.size(), 2U);
        return found;
    };
    EXPECT_EQ(c.controller->overlay().handles.size(), 2U);
    // The line joins the nearest corners of two places of 3 x 3 pixels.
    constexpr int32_t place = 3;
    const auto expectNear = [](Point at, Point expected) {
        EXPECT_NEAR(at.x, expected.x, place);
        EXPECT_NEAR(at.y, expected.y, place);
    };
    const Point back = ends()[1].at;
    const Point front = ends()[0].at;
    c.drag(front, {front.x + 40, front.y + 60});
    expectNear(ends()[1].at, back);  // the other end stays
    expectNear(ends()[0].at, {front.x + 40, front.y + 60});
    c.drag(ends()[1].at, {300, 200});
    expectNear(ends()[1].at, {300, 200});
    EXPECT_EQ(c.steps(), 3U);
    c.controller->execute(EditCommand::Undo);
    expectNear(ends()[1].at, back);

    // A pointer's tip as well, while its label has the usual handles and stays where it is.
    const AnnotationId pointer = c.draw({200, 220, 280, 150}, EditTool::TextLine);
    const Rect label = c.shape(pointer).text.rectangle;
    const auto tip = c.shape(pointer).freeLineEnds();
    ASSERT_EQ(tip.size(), 1U);
    EXPECT_EQ(c.controller->overlay().handles.size(), 9U);
    c.drag(tip[0].at, {tip[0].at.x - 30, tip[0].at.y + 10});
    EXPECT_EQ(c.shape(pointer).text.rectangle, label);
    expectNear(c.shape(pointer).freeLineEnds()[0].at, {tip[0].at.x - 30, tip[0].at.y + 10});
}

TEST(Canvas, annotationsFromElsewhereLandWhereTheyAreDropped) {
    Canvas c;
    const AnnotationId id = c.draw({50, 50, 100, 80});
    const TBBShape copy = c.shape(id);
    ASSERT_TRUE(c.controller->dropAnnotations({copy}, {250, 200}));
    ASSERT_EQ(c.document->annotations().size(), 2U);
    const TBBShape& dropped = c.document->annotations()[1];
    EXPECT_EQ(c.document->selectedId(), dropped.id());
    EXPECT_EQ(dropped.text.text, copy.text.text);
    const Rect bounds = dropped.bounds();
    EXPECT_NEAR((bounds.left + bounds.right) / 2.0, 250, 1);
    EXPECT_NEAR((bounds.top + bounds.bottom) / 2.0, 200, 1);
    c.controller->execute(EditCommand::Undo);
    EXPECT_EQ(c.document->annotations().size(), 1U);
}

TEST(Canvas, areasAreMadeMovedAndUsedWithTheKeyboardAlone) {
    Canvas c;
    const TBitmap before = c.document->background().clone().take();
    ASSERT_TRUE(c.controller->key(letter('A'), {true, true, false}));
    const Rect area = c.document->selection().rect;
    EXPECT_EQ(area, (Rect{120, 105, 280, 195})) << "in the middle of what is seen";
    c.controller->key(Key::Right, shift);
    c.controller->key(Key::Down, ctrl);
    EXPECT_EQ(c.document->selection().rect, (Rect{130, 105, 290, 196}));
    ASSERT_TRUE(c.controller->key(letter('N'), ctrl));
    EXPECT_NE(c.document->background().pixel(130, 105), before.pixel(130, 105));
    EXPECT_EQ(c.document->background().pixel(129, 105), before.pixel(129, 105));
    Rect captured;
    c.controller->beginCapture([&](Rect taken) { captured = taken; });
    c.controller->key(letter('A'), {true, true, false});
    c.controller->key(Key::Left, none);
    c.controller->key(Key::Enter, none);
    EXPECT_EQ(captured, area.moved(-1, 0));
}

TEST(Canvas, freeDrawingBecomesAnAnnotationAndCanBeTakenUpAgain) {
    Canvas c;
    c.controller->changeKind(ShapeKind::Drawing);
    ASSERT_EQ(c.controller->mode(), CanvasMode::FreeDrawing);
    c.controller->setPen({false, c.controller->pen().colour, 5});
    c.drag({50, 50}, {150, 50});
    c.drag({50, 80}, {150, 80});
    EXPECT_TRUE(c.controller->key(letter('Z'), ctrl)) << "takes the last stroke back";
    c.controller->setPen({true, c.controller->pen().colour, 5});
    c.drag({100, 50}, {100, 50});
    EXPECT_EQ(c.steps(), 1U) << "kept stroke by stroke, one step in all";
    EXPECT_EQ(c.document->annotations().size(), 1U);
    EXPECT_FALSE(c.controller->rightPress({10, 10}));
    ASSERT_EQ(c.controller->mode(), CanvasMode::Annotation);
    ASSERT_EQ(c.document->annotations().size(), 1U);
    const TBBShape made = c.document->annotations()[0];
    EXPECT_EQ(made.shape.settings.kind, ShapeKind::Drawing);
    EXPECT_LE(made.shape.rectangle.bottom, 60);
    const Point origin{made.shape.rectangle.left, made.shape.rectangle.top};
    EXPECT_EQ(made.shape.drawing->pixel(70 - origin.x, 50 - origin.y), rgb(255, 255, 0));
    EXPECT_EQ(made.shape.drawing->alpha(70 - origin.x, 50 - origin.y), 255);
    EXPECT_EQ(made.shape.drawing->alpha(100 - origin.x, 50 - origin.y), 0) << "erased";
    EXPECT_EQ(made.shape.drawing->pixel(100 - origin.x, 50 - origin.y), 0U) << "nothing behind the transparency";
    c.window.finishTextEdit();
    c.controller->setPen({});
    c.controller->beginDrawing(made.id());
    EXPECT_EQ(c.controller->inkedId(), made.id());
    c.drag({50, 120}, {150, 120});
    c.controller->endDrawing();
    ASSERT_EQ(c.document->annotations().size(), 1U);
    EXPECT_GT(c.document->annotations()[0].shape.rectangle.bottom, 120);
    c.controller->execute(EditCommand::Undo);
    EXPECT_EQ(c.document->annotations()[0].shape, made.shape);

    // What is erased whole is gone with one step, and comes back with one.
    c.controller->beginDrawing(made.id());
    c.drag({50, 150}, {150, 150});
    c.controller->clearDrawing();
    c.controller->endDrawing();
    EXPECT_TRUE(c.document->annotations().empty());
    c.controller->execute(EditCommand::Undo);
    ASSERT_EQ(c.document->annotations().size(), 1U);
    EXPECT_EQ(c.document->annotations()[0].shape, made.shape);
    c.controller->execute(EditCommand::Undo);
    EXPECT_TRUE(c.document->annotations().empty());
    c.controller->changeKind(ShapeKind::Drawing);
    c.drag({50, 50}, {150, 50});
    c.controller->key(letter('Z'), ctrl);
    c.controller->endDrawing();
    EXPECT_TRUE(c.document->annotations().empty()) << "nothing drawn, nothing made";
    EXPECT_EQ(c.steps(), 0U);
}

TEST(Canvas, captureModeHandsTheAreaOn) {
    Canvas c;
    std::vector<Rect> answers;
    const auto answer = [&](Rect area) { answers.push_back(area); };
    c.controller->beginCapture(answer);
    c.drag({30, 40}, {129, 139});
    EXPECT_FALSE(c.controller->execute(EditCommand::Blur));
    EXPECT_TRUE(c.controller->overlay().dimOutside);
    c.controller->key(Key::Enter, none);
    c.controller->beginCapture(answer);
    c.controller->key(Key::Escape, none);
    EXPECT_EQ(answers, (std::vector<Rect>{{30, 40, 130, 140}, {}}));
    EXPECT_EQ(c.controller->mode(), CanvasMode::Annotation);
}

TEST(Canvas, escLeavesOneThingAtATime) {
    Canvas c;
    c.draw({50, 150, 100, 200});
    c.controller->setTool(EditTool::TextLine);
    EXPECT_TRUE(c.controller->key(Key::Escape, none));
    EXPECT_EQ(c.document->selectedId(), noAnnotation);
    EXPECT_EQ(c.controller->tool(), EditTool::TextLine);
    EXPECT_TRUE(c.controller->key(Key::Escape, none));
    EXPECT_EQ(c.controller->tool(), EditTool::Pointer);
    EXPECT_FALSE(c.controller->key(Key::Escape, none));
}

TEST(Canvas, theWindowToolSelectsTheFramedBlock) {
    TBitmap page = TBitmap::create(200, 150, PixelFormat::Bgra32).take();
    page.fill(page.bounds(), rgb(255, 255, 255));
    for (int32_t y = 40; y < 100; ++y)
        for (int32_t x = 50; x < 160; ++x) page.setPixel(x, y, static_cast<Colour>(x * y & 0xFFFF));
    EXPECT_EQ(blockAt(page, {100, 70}), (Rect{50, 40, 160, 100}));
}

// Whatever comes in, in whatever order: no assertion, and undoing everything gives the capture back.
TEST(Canvas, anyInputLeavesAConsistentCapture) {
    for (unsigned seed = 1; seed <= 5; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto any = [&](int32_t low, int32_t high) {
            return low + static_cast<int32_t>(random() % static_cast<uint32_t>(high - low + 1));
        };
        Canvas c;
        const TBitmap before = c.document->background().clone().take();
        constexpr Key keys[] = {Key::Escape, Key::Enter,  Key::Tab,    Key::Backspace, Key::Insert, Key::Delete,
                                Key::Left,   Key::Right,  Key::Up,     Key::Down,      letter('A'), letter('B'),
                                letter('F'), letter('G'), letter('I'), letter('L'),    letter('N'), letter('T'),
                                letter('Y'), letter('Z'), letter('1'), letter('2'),    letter('3'), letter('4')};
        for (int i = 0; i < 2000; ++i) {
            const Point at{any(-40, 440), any(-40, 340)};
            const Modifiers held{any(0, 4) == 0, any(0, 2) == 0, any(0, 6) == 0};
            switch (any(0, 13)) {
                case 0:
                case 1:
                    c.controller->press(at, held);
                    break;
                case 2:
                case 3:
                case 4:
                    c.controller->move(at, held);
                    break;
                case 5:
                case 6:
                    c.controller->release(at, held);
                    break;
                case 7:
                    c.controller->doubleClick(at, held);
                    break;
                case 8:
                    c.controller->rightPress(at);
                    break;
                case 9:
                    c.controller->captureLost();
                    break;
                case 10:
                    c.controller->setTool(static_cast<EditTool>(any(0, 9)));
                    break;
                case 11:
                    c.controller->changeKind(static_cast<ShapeKind>(any(1, 5)));
                    break;
                case 12:
                    if (c.window.editing != noAnnotation)
                        c.controller->textEdited(c.window.editing, std::string(3, 'a'));
                    if (c.window.picked) std::exchange(c.window.picked, nullptr)(static_cast<Colour>(any(0, 0xFFFFFF)));
                    break;
                default:
                    c.controller->key(keys[random() % std::size(keys)], held);
            }
            static_cast<void>(c.controller->overlay());
            static_cast<void>(c.controller->cursorAt(at));
        }
        c.controller->captureLost();
        if (c.controller->mode() == CanvasMode::FreeDrawing) c.controller->endDrawing();
        c.window.finishTextEdit();
        EXPECT_TRUE(c.window.failures.empty());
        while (c.document->history().canUndo()) ASSERT_TRUE(c.document->undo());
        EXPECT_TRUE(samePixels(c.document->background(), before));
        EXPECT_TRUE(c.document->annotations().empty());
    }
}

}  // namespace
}  // namespace glimmer
