// What was blacked out, blurred or cut off is in nothing that leaves the program. The proof: every output is byte for
// byte that of a capture that never had the former pixels.

#include <gtest/gtest.h>

#include "editor/annotations/annotation_clipboard.h"
#include "editor/annotations/shapes_list.h"
#include "editor/commands/crop_picture.h"
#include "editor/commands/draw_operation.h"
#include "editor/painting/cairo_text_painter.h"
#include "editor/recovery/recovery_keeper.h"
#include "imaging/clipboard_formats.h"
#include "main_window/thumb_creator.h"
#include "output/files/editable_png.h"
#include "output/picture/output_picture.h"
#include "support/pictures.h"
#include "support/scratch_folder.h"

namespace glimmer {
namespace {

constexpr Rect secret{120, 90, 260, 150};

std::unique_ptr<CaptureDocument> captureOf(TBitmap picture) {
    TShapesList shapes;
    TBBShape shape(*predefinedStyle("Red Frame"), {100, 80, 280, 160});
    shape.text.text = "Names are hidden";
    CairoTextPainter text;
    fitLabel(shape, text);
    shapes.insert(0, std::move(shape));
    return CaptureDocument::create(std::move(picture), {}, std::move(shapes)).take();
}

PixelSelection selectionOf(const Rect& area) {
    PixelSelection selection;
    selection.rectangle = {area.left, area.top, area.right - 1, area.bottom - 1};
    return selection;
}

std::vector<std::vector<uint8_t>> everyOutputOf(const CaptureDocument& capture) {
    CairoTextPainter text;
    const TBitmap shown = outputPicture(capture, text).take();
    const Size size = capture.size();
    const EditableParts parts{
        capture.background(), capture.annotations(), {0, 0, size.width, size.height}, capture.info().notes};
    const auto pixelsOf = [](const TBitmap& picture) {
        return std::vector<uint8_t>(picture.bytes().begin(), picture.bytes().end());
    };
    const TBBShape shape = capture.annotations()[0];
    return {pixelsOf(shown),
            encodeEditablePng(shown, parts, true).take(),
            encodeEditablePng(shown, parts, false).take(),
            clipboardDib(shown).take(),
            clipboardDibV5(shown).take(),
            encodeAnnotations({shape}),
            pixelsOf(TThumbCreator({150, 150}, rgb(255, 255, 255)).create(capture, text, {}, false).take())};
}

class RedactedCapture : public testing::Test {
protected:
    TBitmap page_ = test::page(500, 400, PixelFormat::Bgra32, 40);
};

TEST_F(RedactedCapture, AfterFillNothingTellsWhatWasThere) {
    const auto capture = captureOf(page_.clone().take());
    const PixelSelection selection = selectionOf(secret);
    ASSERT_TRUE(capture->run(
        std::make_unique<DrawOperation>(makeFill(capture->background(), nullptr, &selection, rgb(0, 0, 0)).take())));
    TBitmap innocent = page_.clone().take();
    innocent.fill(secret, rgb(0, 0, 0));
    EXPECT_EQ(everyOutputOf(*capture), everyOutputOf(*captureOf(innocent.clone().take())));

    // Nor does what is kept against a crash; only the open editor's undo knows.
    const test::ScratchFolder folder("redaction");
    {
        RecoveryKeeper keeper(folder.path(), std::chrono::milliseconds(0));
        keeper.add(*capture);
        ASSERT_TRUE(capture->undo());
        while (!keeper.complete()) keeper.work(std::chrono::milliseconds(1));
        ASSERT_TRUE(capture->redo());
        for (int i = 0; i < 50; ++i) keeper.work(std::chrono::milliseconds(5));
        keeper.leave(*capture);
    }
    RecoveryStore store(folder.path());
    const auto found = store.leftBehind();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_TRUE(samePixels(RecoveryStore::open(found[0]).take()->background(), innocent));
    size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(found[0].folder))
        files += entry.path().extension() == ".band" ? 1 : 0;
    EXPECT_EQ(files, StoredPicture::bandCount(innocent.size())) << "the former bands are gone";

    ASSERT_TRUE(capture->undo());
    EXPECT_TRUE(samePixels(capture->background(), page_));
}

TEST_F(RedactedCapture, AfterCropNothingIsLeftOfTheRest) {
    const auto capture = captureOf(page_.clone().take());
    const Rect area{90, 70, 300, 200};
    ASSERT_TRUE(capture->run(std::make_unique<CropPicture>(area)));
    TShapesList shapes;
    TBBShape moved = captureOf(page_.clone().take())->annotations()[0];
    moved.moveBy(-area.left, -area.top);
    shapes.insert(0, std::move(moved));
    EXPECT_EQ(everyOutputOf(*capture),
              everyOutputOf(*CaptureDocument::create(page_.cropped(area).take(), {}, std::move(shapes)).take()));
}

TEST_F(RedactedCapture, AfterBlurOnlyBlurredPixelsAreLeft) {
    const auto capture = captureOf(page_.clone().take());
    const PixelSelection selection = selectionOf(secret);
    ASSERT_TRUE(capture->run(std::make_unique<DrawOperation>(
        applyEffect(static_cast<int32_t>(PixelOperationKind::blur), capture->background(), nullptr, &selection, 25)
            .take())));
    size_t same = 0;
    for (int32_t y = secret.top; y < secret.bottom; ++y)
        for (int32_t x = secret.left; x < secret.right; ++x)
            same += capture->background().pixel(x, y) == page_.pixel(x, y) && page_.pixel(x, y) != rgb(255, 255, 255);
    EXPECT_LT(same, 50U);
    EXPECT_EQ(everyOutputOf(*capture), everyOutputOf(*captureOf(capture->background().clone().take())));
}

}  // namespace
}  // namespace glimmer
