#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "editor/annotations/shapes_list.h"
#include "editor/commands/add_annotation.h"
#include "editor/commands/change_annotation.h"
#include "editor/commands/change_numbers.h"
#include "editor/commands/change_order.h"
#include "editor/commands/crop_picture.h"
#include "editor/commands/delete_annotation.h"
#include "editor/commands/draw_operation.h"
#include "editor/commands/set_info.h"
#include "editor/document/document.h"

namespace glimmer {
namespace {

using Random = std::mt19937;

int32_t between(Random& random, int32_t low, int32_t high) {
    return std::uniform_int_distribution<int32_t>(low, high)(random);
}

/// A page-like picture: bands of flat colour, some text-like speckle and a noisy photo.
TBitmap page(int32_t width, int32_t height, uint32_t seed) {
    Random random(seed);
    TBitmap picture = TBitmap::create(width, height, PixelFormat::Bgra32).take();
    picture.fill(picture.bounds(), rgb(255, 255, 255));
    for (int32_t y = 0; y < height; y += 40) {
        picture.fill({0, y, width, y + 12}, rgb(static_cast<uint32_t>(between(random, 0, 255)), 240, 250));
        for (int32_t x = 0; x < width; x += 7)
            for (int32_t row = y + 18; row < std::min(height, y + 30); ++row)
                if (between(random, 0, 2) == 0)
                    picture.setPixel(x + between(random, 0, 6) % 7 * (x + 7 < width), row, 0);
    }
    for (int32_t y = height / 2; y < height / 2 + height / 8; ++y)
        for (int32_t x = 0; x < width / 2; ++x)
            picture.setPixel(x, y,
                             rgb(static_cast<uint32_t>(x + y + between(random, 0, 9)),
                                 static_cast<uint32_t>(x / 2 + between(random, 0, 9)), 90));
    return picture;
}

std::unique_ptr<CaptureDocument> document(int32_t width, int32_t height) {
    return CaptureDocument::create(page(width, height, 7), {"http://a.b/", "Title", "Name", "", 0}).take();
}

/// All that an undo must bring back.
struct State {
    TBitmap picture;
    TShapesList annotations;
    CaptureInfo info;
};

State stateOf(const CaptureDocument& capture) {
    return {capture.background().clone().take(), capture.annotations(), capture.info()};
}

testing::AssertionResult same(const CaptureDocument& capture, const State& state) {
    if (!samePixels(capture.background(), state.picture)) return testing::AssertionFailure() << "pixels differ";
    if (!(capture.annotations() == state.annotations)) return testing::AssertionFailure() << "annotations differ";
    if (!(capture.info() == state.info)) return testing::AssertionFailure() << "name or notes differ";
    return testing::AssertionSuccess();
}

/// An operation whose result is these pixels at that place.
std::unique_ptr<UndoCommand> pixelsAt(Point at, TBitmap pixels) {
    TPixelOperation operation;
    operation.rectangle = {at.x, at.y, at.x + pixels.width() - 1, at.y + pixels.height() - 1};
    operation.kind = PixelOperationKind::interlace;
    operation.pBmp = std::make_shared<const TBitmap>(std::move(pixels));
    return std::make_unique<DrawOperation>(std::move(operation));
}

AnnotationId anyAnnotation(const CaptureDocument& capture, Random& random) {
    const auto last = static_cast<int32_t>(capture.annotations().size()) - 1;
    return capture.annotations()[static_cast<size_t>(between(random, 0, last))].id();
}

/// Any operation on a rectangle, an ellipse or a free-form area, also at the picture's edges.
std::unique_ptr<UndoCommand> randomPixels(const CaptureDocument& capture, Random& random) {
    const Size size = capture.size();
    const int32_t left = between(random, 0, size.width - 1);
    const int32_t top = between(random, 0, size.height - 1);
    PixelSelection framed;
    framed.rectangle = {left, top, between(random, left, size.width - 1), between(random, top, size.height - 1)};
    if (between(random, 0, 2) == 0) framed.outline = PixelSelection::Outline::ellipse;
    const Rect inside{left, top, framed.rectangle.right + 1, framed.rectangle.bottom + 1};
    const Region around = Region::rectangle(inside).invertedWithin(capture.background().bounds());
    const Region* free = between(random, 0, 2) == 0 && !around.empty() ? &around : nullptr;
    const TBitmap& image = capture.background();
    const auto colour = static_cast<Colour>(between(random, 0, 0xFFFFFF));
    const auto kind = static_cast<PixelOperationKind>(between(random, 1, 6));
    Result<TPixelOperation> operation = kind == PixelOperationKind::fill ? makeFill(image, free, &framed, colour)
                                        : kind == PixelOperationKind::glow
                                            ? makeGlow(image, free, &framed, colour)
                                            : applyEffect(static_cast<int32_t>(kind), image, free, &framed, 25);
    // An ellipse of a few pixels may be empty.
    if (!operation) operation = makeFill(image, nullptr, &framed, colour);
    if (!operation) return pixelsAt({left, top}, page(1, 1, 1));
    return std::make_unique<DrawOperation>(operation.take());
}

std::unique_ptr<UndoCommand> randomCrop(const CaptureDocument& capture, Random& random) {
    const Size size = capture.size();
    if (size.width < 40 || size.height < 40) return randomPixels(capture, random);
    const int32_t left = between(random, 0, 3);
    const int32_t top = between(random, 0, 3);
    return std::make_unique<CropPicture>(
        Rect{left, top, size.width - between(random, 0, 3), size.height - between(random, 0, 3)});
}

std::unique_ptr<UndoCommand> randomChange(const CaptureDocument& capture, Random& random) {
    TBBShape shape = *capture.annotations().find(anyAnnotation(capture, random));
    switch (between(random, 0, 4)) {
        case 0:
            shape.moveBy(between(random, -30, 30), between(random, -30, 30));
            break;
        case 1:
            shape.text.text += "äx";
            break;
        case 2:
            shape.shape.settings.opacity = between(random, 0, 100);
            break;
        case 3:
            shape.setTextPosition(between(random, 0, 12));
            break;
        default:
            shape.part(static_cast<Part>(between(random, 0, 3))).setVisible(between(random, 0, 1) == 1);
    }
    return std::make_unique<ChangeAnnotation>(std::move(shape));
}

std::unique_ptr<UndoCommand> randomCommand(const CaptureDocument& capture, Random& random) {
    if (capture.annotations().empty() || between(random, 0, 4) == 0) {
        const Rect rect{between(random, 0, 80), between(random, 0, 80), between(random, 81, 150),
                        between(random, 81, 150)};
        return std::make_unique<AddAnnotation>(
            TBBShape(predefinedStyles()[static_cast<size_t>(between(random, 0, 4))], rect));
    }
    const auto last = static_cast<int32_t>(capture.annotations().size()) - 1;
    switch (between(random, 0, 8)) {
        case 0:
            return std::make_unique<DeleteAnnotation>(anyAnnotation(capture, random));
        case 1:
            return randomPixels(capture, random);
        case 2:
            return randomCrop(capture, random);
        case 3:
            return std::make_unique<ChangeOrder>(anyAnnotation(capture, random),
                                                 static_cast<size_t>(between(random, 0, last)));
        case 4:
            return std::make_unique<ChangeNumbers>(
                ChangeNumbers::Numbers{{anyAnnotation(capture, random), between(random, 1, 99)}});
        case 5:
            return std::make_unique<SetInfo>(between(random, 0, 1) == 0 ? SetInfo::Field::Name : SetInfo::Field::Notes,
                                             std::to_string(between(random, 0, 999)));
        default:
            return randomChange(capture, random);
    }
}

// Random work with undo and redo in between: at every place of the history, reached from either side and whether its
// pixels are deflated or not, the capture is exactly what it was there.
TEST(History, everyStepBringsBackExactlyTheStateBeforeAndAfterIt) {
    for (uint32_t seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE(seed);
        Random random(seed);
        const auto capture = document(160, 120);
        Gesture dragging = capture->beginGesture();
        std::vector<State> states;
        states.push_back(stateOf(*capture));
        for (int step = 0; step < 120; ++step) {
            const int32_t choice = between(random, 0, 9);
            if (choice < 6) {
                Gesture gesture = between(random, 0, 1) == 0 ? dragging : Gesture();
                ASSERT_TRUE(capture->run(randomCommand(*capture, random), gesture));
                // A step of its own, or a longer last one.
                states.resize(capture->history().depth());
                states.push_back(stateOf(*capture));
            } else if (choice < 8) {
                ASSERT_TRUE(capture->undo());
            } else if (choice == 8) {
                ASSERT_TRUE(capture->redo());
            } else {
                while (capture->compactSome()) {
                }
            }
            ASSERT_TRUE(same(*capture, states[capture->history().depth()]));
        }
        while (capture->history().canUndo()) ASSERT_TRUE(capture->undo());
        ASSERT_TRUE(same(*capture, states.front()));
        while (capture->history().canRedo()) ASSERT_TRUE(capture->redo());
        ASSERT_TRUE(same(*capture, states[capture->history().depth()]));
    }
}

TEST(History, changesOfOneGestureAreOneStepAndOthersAreNot) {
    const auto capture = document(100, 100);
    Gesture drawing = capture->beginGesture();
    ASSERT_TRUE(
        capture->run(std::make_unique<AddAnnotation>(TBBShape(predefinedStyles()[0], {10, 10, 11, 11})), drawing));
    const AnnotationId id = capture->annotations()[0].id();
    const auto move = [&](Gesture& gesture) {
        TBBShape shape = *capture->annotations().find(id);
        shape.moveBy(1, 0);
        ASSERT_TRUE(capture->run(std::make_unique<ChangeAnnotation>(shape), gesture));
    };
    for (int i = 0; i < 5; ++i) move(drawing);
    EXPECT_EQ(capture->history().depth(), 1U) << "drawing with the mouse is one step";
    Gesture drag = capture->beginGesture();
    for (int i = 0; i < 5; ++i) move(drag);
    EXPECT_EQ(capture->history().depth(), 2U);
    Gesture none;
    move(none);
    move(none);
    EXPECT_EQ(capture->history().depth(), 4U) << "without a gesture nothing merges";
    ASSERT_TRUE(capture->undo());
    ASSERT_TRUE(capture->undo());
    move(drag);
    EXPECT_EQ(capture->history().depth(), 3U) << "after an undo the old drag is over";
    while (capture->history().canUndo()) ASSERT_TRUE(capture->undo());
    EXPECT_TRUE(capture->annotations().empty());
    ASSERT_TRUE(capture->redo());
    EXPECT_EQ(capture->annotations()[0].shape.rectangle, (Rect{15, 10, 16, 11})) << "redone as it was finished";
}

TEST(Document, isModifiedUntilSavedAndAgainAfterEachChangeOrUndo) {
    const auto capture = document(50, 50);
    EXPECT_TRUE(capture->modified()) << "a new capture is nowhere on the disk";
    Gesture typing = capture->beginGesture();
    const auto type = [&](const char* text) {
        ASSERT_TRUE(capture->run(std::make_unique<SetInfo>(SetInfo::Field::Notes, text), typing));
    };
    type("a");
    capture->markSaved();
    EXPECT_FALSE(capture->modified());
    type("ab");
    EXPECT_TRUE(capture->modified());
    ASSERT_TRUE(capture->undo());
    EXPECT_FALSE(capture->modified()) << "back at the saved state, typing did not merge across the save";
    ASSERT_TRUE(capture->undo());
    EXPECT_TRUE(capture->modified());
    type("b");
    EXPECT_TRUE(capture->modified()) << "the saved state cannot be reached any more";
    ASSERT_TRUE(capture->undo());
    EXPECT_TRUE(capture->modified());
}

TEST(Document, announcesWhatToPaintAgain) {
    const auto capture = document(200, 200);
    Rect dirty;
    bool state = false;
    const int observer = capture->observe([&](const DocumentChange& change) {
        if (change.pixels || change.annotations || change.selection) dirty = dirty.united(change.area);
        state |= change.state;
    });
    TBBShape shape(predefinedStyles()[0], {20, 20, 40, 40});
    shape.text.setVisible(false);
    shape.line.setVisible(false);
    ASSERT_TRUE(capture->run(std::make_unique<AddAnnotation>(shape)));
    TBBShape moved = capture->annotations()[0];
    moved.moveBy(100, 0);
    dirty = {};
    ASSERT_TRUE(capture->run(std::make_unique<ChangeAnnotation>(moved)));
    EXPECT_TRUE(dirty.contains({20, 20})) << "where it was";
    EXPECT_TRUE(dirty.contains({139, 39})) << "where it is";
    dirty = {};
    ASSERT_TRUE(capture->run(pixelsAt({5, 6}, page(10, 20, 1))));
    EXPECT_EQ(dirty, (Rect{5, 6, 15, 26}));
    EXPECT_TRUE(state);
    dirty = {};
    capture->forget(observer);
    ASSERT_TRUE(capture->undo());
    EXPECT_EQ(dirty, Rect{});
}

#ifdef __SANITIZE_ADDRESS__
constexpr int manySteps = 100;  // the sanitizers' own pace
#else
constexpr int manySteps = 1000;
#endif

TEST(History, aThousandPixelStepsOnALargeCaptureStaySmall) {
    constexpr size_t limit = 150'000'000;  // for the picture and a thousand steps
    const auto capture = document(1280, 10000);
    const size_t allowed = (limit - capture->background().byteCount()) / 1000 * manySteps;
    Random random(3);
    for (int i = 0; i < manySteps; ++i) {
        const Point at{between(random, 0, 880), between(random, 0, 9700)};
        TBitmap part = capture->background().cropped({at.x, at.y, at.x + 400, at.y + 300}).take();
        // A cheap blur: what it leaves packs like what a real one leaves.
        for (int32_t y = 0; y < part.height(); ++y) {
            uint8_t* row = part.row(y);
            for (size_t x = 4; x < size_t{400} * 4; ++x) row[x] = static_cast<uint8_t>((row[x] + 3 * row[x - 4]) / 4);
        }
        ASSERT_TRUE(capture->run(pixelsAt(at, std::move(part))));
    }
    EXPECT_LT(capture->history().byteCount(), allowed);
    while (capture->history().canUndo()) ASSERT_TRUE(capture->undo());
    EXPECT_TRUE(samePixels(capture->background(), page(1280, 10000, 7)));
    EXPECT_LT(capture->history().byteCount(), allowed) << "what can be redone counts as well";
}

}  // namespace
}  // namespace glimmer
