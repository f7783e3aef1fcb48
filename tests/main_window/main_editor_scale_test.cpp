#include <wx/msw/wrapwin.h>

#include "main_editor_fixture.h"

// Many large captures in one 32-bit process.

namespace glimmer {
namespace {

constexpr Size longPage{1280, 10000};

class MainEditorScale : public MainEditorTest {
protected:
    /// A long page that can be told from the others by its last rows.
    static std::unique_ptr<CaptureDocument> page(int number, uint32_t red = 250) {
        TBitmap picture = TBitmap::create(longPage.width, longPage.height, PixelFormat::Bgra32).take();
        picture.fill(picture.bounds(), rgb(red, 250, 250));
        picture.fill({0, 9000, 1280, 10000}, mark(number));
        return capture(std::move(picture), "page " + std::to_string(number));
    }
    static Colour mark(int number) { return rgb(static_cast<uint32_t>(number), 17, 99); }

    void clickOn(long item) const {
        const wxPoint at = itemPoint(item);
        test::mousePress(list(), at.x, at.y);
        test::mouseRelease(list(), at.x, at.y);
        test::pump();
    }
    [[nodiscard]] size_t resting() const {
        size_t count = 0;
        for (const CaptureDocument* capture : session().all()) count += capture->parked() ? 1 : 0;
        return count;
    }
};

TEST_F(MainEditorScale, FortyLongPagesAreOpenAndEachIsBackAtAClick) {
    constexpr int count = 40;  // together 2 GB, as much as the process can address
    for (int i = 0; i < count; ++i) {
        session().add(page(i)).markSaved();
        test::pump();
    }
    ASSERT_EQ(session().size(), static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        const int item = i * 17 % count;
        clickOn(item);
        CaptureDocument* current = session().current();
        ASSERT_EQ(current->info().name, "page " + std::to_string(item));
        EXPECT_EQ(current->background().pixel(640, 9999), mark(item));
        EXPECT_EQ(current->background().pixel(640, 8999), rgb(250, 250, 250));
    }
    EXPECT_EQ(resting(), size_t{count - 1});

    // Output of all of them wakes one after the other.
    clickLabel("lblSelectAll");
    EXPECT_EQ(editor_->selectedCaptures().size(), static_cast<size_t>(count));
    std::filesystem::path project = folder() / "forty.gmp";
    EXPECT_TRUE(saver_.saveProject(session().all(), project, false));
    EXPECT_TRUE(messages_.messages.empty()) << messages_.messages[0].text;
    EXPECT_EQ(resting(), size_t{count - 1});
    // What cannot be done is said, and nothing is lost: side by side they are wider than any picture.
    EXPECT_FALSE(saver_.copyToClipboard(editor_->selectedCaptures()));
    EXPECT_EQ(messages_.messages.size(), 1U);
    EXPECT_EQ(session().size(), static_cast<size_t>(count));
}

TEST_F(MainEditorScale, ClosingEverythingGivesEverythingBack) {
    uint32_t red = 250;
    const auto round = [this, &red] {
        --red;  // so that thumbnails can be told from those of the round before
        for (int i = 0; i < 6; ++i) session().add(page(i, red)).markSaved();
        for (long i = 0; i < 6; ++i) clickOn(i);
        for (int i = 0; i < 6; ++i)
            EXPECT_TRUE(test::pumpUntil([&] { return redOfThumbnail(i) == static_cast<int>(red); }));
        session().discardAll();
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
