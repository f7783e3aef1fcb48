#include <gtest/gtest.h>

#include <new>

#include "editor/commands/add_annotation.h"
#include "editor/commands/change_annotation.h"
#include "editor/commands/change_numbers.h"
#include "editor/commands/change_order.h"
#include "editor/commands/crop_picture.h"
#include "editor/commands/delete_annotation.h"
#include "editor/commands/draw_operation.h"
#include "editor/commands/set_info.h"
#include "editor/document/document.h"
#include "support/pictures.h"

// Memory for pixels may be missing at any place of any change. The sanitizers watch for what is then left behind.

namespace glimmer {
namespace {

int untilFailure = 0;  // allocations from now on up to the one that fails; below 1: it was, or none does

bool failsNow() { return --untilFailure == 0; }

/// Needs room again to come back from rest, as the program's own memory does.
class Scarce final : public PixelMemory {
public:
    explicit Scarce(size_t count) : bytes_(count) {}
    [[nodiscard]] uint8_t* data() const override { return const_cast<uint8_t*>(bytes_.data()); }
    bool park() override { return true; }
    uint8_t* wake() override { return failsNow() ? nullptr : data(); }

private:
    std::vector<uint8_t> bytes_;
};

struct FailingMemory : testing::Test {
    void SetUp() override {
        setPixelAllocator([](size_t count) -> std::unique_ptr<PixelMemory> {
            return failsNow() ? nullptr : std::make_unique<Scarce>(count);
        });
        TBitmap picture = test::page(60, 50, PixelFormat::Bgra32, 40);
        picture.row(20)[83] = 0;  // one clear pixel
        capture = CaptureDocument::create(std::move(picture), {}).take();
    }
    void TearDown() override { setPixelAllocator(nullptr); }

    struct State {
        TBitmap picture;
        TShapesList annotations;
        std::string name;
        size_t depth;
    };
    [[nodiscard]] State now() const {
        return {capture->background().clone().take(), capture->annotations(), capture->info().name,
                capture->history().depth()};
    }
    [[nodiscard]] bool is(const State& state) const {
        return samePixels(capture->background(), state.picture) && capture->annotations() == state.annotations &&
               capture->info().name == state.name && capture->history().depth() == state.depth;
    }

    /// Tries the change with the first allocation failing, with the second, and so on, until none is left to fail.
    void throughEveryFailure(const std::function<Status()>& change) {
        const State before = now();
        const bool couldRedo = capture->history().canRedo();
        for (int failing = 1;; ++failing) {
            capture->park();
            untilFailure = failing;
            bool done = false;
            try {
                done = change().ok();
            } catch (const std::bad_alloc&) {  // a picture at rest finds no room to wake
            }
            const bool failed = untilFailure < 1;
            untilFailure = 0;
            ASSERT_NE(done, failed) << failing;
            if (done) return;
            ++failures;
            ASSERT_TRUE(is(before) && capture->history().canRedo() == couldRedo) << failing;
        }
    }

    std::unique_ptr<CaptureDocument> capture;
    int failures = 0;
};

using Maker = std::function<std::unique_ptr<UndoCommand>(const CaptureDocument&)>;

Maker annotation(const TBBShape& shape) {
    return [shape](const CaptureDocument&) { return std::make_unique<AddAnnotation>(shape); };
}

/// Null where there is no memory to make the operation.
Maker pixels(const std::function<Result<TPixelOperation>(const TBitmap&, const PixelSelection&)>& make) {
    return [make](const CaptureDocument& capture) -> std::unique_ptr<UndoCommand> {
        Result<TPixelOperation> made = make(capture.background(), {{5, 6, 45, 40}});
        return made ? std::make_unique<DrawOperation>(made.take()) : nullptr;
    };
}

Maker effect(PixelOperationKind kind) {
    return pixels([kind](const TBitmap& image, const PixelSelection& area) {
        return applyEffect(static_cast<int32_t>(kind), image, nullptr, &area, 25);
    });
}

TEST_F(FailingMemory, leavesCaptureAndHistoryWholeWhereverItStrikes) {
    const TShapeStyle& style = predefinedStyles()[0];
    const std::vector<Maker> makers = {
        annotation(TBBShape(style, {5, 5, 20, 20})),
        annotation(pictureAnnotation(style, test::plain(9, 9, rgb(1, 2, 3)), {30, 30})),
        [](const CaptureDocument& c) {
            TBBShape shape = c.annotations()[0];
            shape.moveBy(3, 4);
            return std::make_unique<ChangeAnnotation>(shape);
        },
        [](const CaptureDocument& c) {
            return std::make_unique<ChangeNumbers>(ChangeNumbers::Numbers{{c.annotations()[0].id(), 7}});
        },
        [](const CaptureDocument& c) { return std::make_unique<ChangeOrder>(c.annotations()[0].id(), 1); },
        [](const CaptureDocument&) { return std::make_unique<SetInfo>(SetInfo::Field::Name, "new"); },
        effect(PixelOperationKind::blur),
        effect(PixelOperationKind::grayscale),
        effect(PixelOperationKind::interlace),
        pixels([](const TBitmap& image, const PixelSelection& area) { return makeFill(image, nullptr, &area, 7); }),
        pixels([](const TBitmap& image, const PixelSelection& area) { return makeGlow(image, nullptr, &area, 7); }),
        effect(PixelOperationKind::blur),
        [](const CaptureDocument&) {
            return std::make_unique<CropPicture>(Rect{6, 7, 50, 42});
        },
        effect(PixelOperationKind::invert),
        [](const CaptureDocument& c) { return std::make_unique<DeleteAnnotation>(c.annotations()[0].id()); }};
    std::vector<State> states;
    for (const Maker& make : makers) {
        states.push_back(now());
        SCOPED_TRACE(states.size());
        throughEveryFailure([&]() -> Status {
            std::unique_ptr<UndoCommand> command = make(*capture);
            return command != nullptr ? capture->run(std::move(command)) : Status(Failure{"no operation"});
        });
    }
    states.push_back(now());
    for (const bool forward : {false, true})
        for (size_t step = 0; step < makers.size(); ++step) {
            const size_t to = forward ? step + 1 : makers.size() - 1 - step;
            SCOPED_TRACE((forward ? "redo to " : "undo to ") + std::to_string(to));
            throughEveryFailure([&] { return forward ? capture->redo() : capture->undo(); });
            ASSERT_TRUE(is(states[to]));
        }
    EXPECT_GT(failures, 50) << "there was nothing to fail";
}

}  // namespace
}  // namespace glimmer
