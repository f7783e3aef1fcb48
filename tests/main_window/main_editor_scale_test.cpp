#include <wx/msw/wrapwin.h>

#include <chrono>

#include "main_editor_fixture.h"

// Many large captures in one 32-bit process.

namespace glimmer {
namespace {

using Clock = std::chrono::steady_clock;

constexpr Size longPage{1280, 10000};

class MainEditorScale : public MainEditorTest {
protected:
    /// A long page that can be told from the others by its last rows.
    static std::unique_ptr<CaptureDocument> page(int number) {
        TBitmap picture = TBitmap::create(longPage.width, longPage.height, PixelFormat::Bgra32).take();
        picture.fill(picture.bounds(), rgb(250, 250, 250));
        picture.fill({0, 9000, 1280, 10000}, mark(number));
        return capture(std::move(picture), "page " + std::to_string(number));
    }
    static Colour mark(int number) { return rgb(static_cast<uint32_t>(number), 17, 99); }

    /// Milliseconds from the press of the mouse on an item until the capture is painted.
    double clickOn(long item) const {
        const wxPoint at = itemPoint(item);
        test::pump();
        const Clock::time_point start = Clock::now();
        test::mousePress(list(), at.x, at.y);
        test::mouseRelease(list(), at.x, at.y);
        test::pump();
        editor_->Update();
        return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    }
};

TEST_F(MainEditorScale, FortyLongPagesAreOpenAndEachIsBackAtAClick) {
    constexpr int count = 40;  // together 2 GB, as much as the process can address
    for (int i = 0; i < count; ++i) {
        editor_->addEditor(page(i)).markSaved();
        test::pump();
    }
    ASSERT_EQ(editor_->editorCount(), static_cast<size_t>(count));
    double slowest = 0;
    for (int i = 0; i < count; ++i) {
        const int item = i * 17 % count;
        // Another program may take the processor away for a while; it does not do so every time.
        double best = 1e9;
        for (int attempt = 0; attempt < 10 && best > 150; ++attempt) {
            clickOn((item + 1) % count);
            best = std::min(best, clickOn(item));
        }
        ASSERT_LE(best, 150) << "page " << item;
        slowest = std::max(slowest, best);
        CaptureDocument* current = editor_->currentEditor();
        ASSERT_EQ(current->info().name, "page " + std::to_string(item));
        EXPECT_EQ(current->background().pixel(640, 9999), mark(item));
        EXPECT_EQ(current->background().pixel(640, 8999), rgb(250, 250, 250));
    }
    RecordProperty("slowest_click_ms", static_cast<int>(slowest));
    int resting = 0;
    for (const CaptureDocument* document : editor_->allEditors()) resting += document->parked() ? 1 : 0;
    EXPECT_EQ(resting, count - 1);

    // Output of all of them wakes one after the other.
    clickLabel("lblSelectAll");
    EXPECT_EQ(editor_->selectedEditors().size(), static_cast<size_t>(count));
    std::filesystem::path project = folder() / "forty.gmp";
    EXPECT_TRUE(saver_.saveProject(editor_->allEditors(), project, false));
    EXPECT_TRUE(messages_.messages.empty()) << messages_.messages[0].text;
    resting = 0;
    for (const CaptureDocument* document : editor_->allEditors()) resting += document->parked() ? 1 : 0;
    EXPECT_EQ(resting, count - 1);
    // What cannot be done is said, and nothing is lost: side by side they are wider than any picture.
    EXPECT_FALSE(saver_.copyToClipboard(editor_->selectedEditors()));
    EXPECT_EQ(messages_.messages.size(), 1U);
    EXPECT_EQ(editor_->editorCount(), static_cast<size_t>(count));
}

TEST_F(MainEditorScale, ClosingEverythingGivesEverythingBack) {
    const auto round = [this] {
        for (int i = 0; i < 6; ++i) editor_->addEditor(page(i)).markSaved();
        for (long i = 0; i < 6; ++i) clickOn(i);
        for (int i = 0; i < 40; ++i) {  // the thumbnails come meanwhile
            test::pump();
            Sleep(10);
        }
        editor_->discardAll();
        test::pump();
        test::pump();
        return test::countObjects();
    };
    round();
    const test::SystemObjects before = round();
    const test::SystemObjects after = round();
    EXPECT_EQ(after.handles, before.handles);
    EXPECT_EQ(after.gdi, before.gdi);
    EXPECT_EQ(after.user, before.user);
    EXPECT_LE(after.privateBytes, before.privateBytes + (1U << 20U));
}

}  // namespace
}  // namespace glimmer
