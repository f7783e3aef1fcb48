#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "capture/memory_guard.h"
#include "capture/new_document.h"
#include "capture/stamps.h"
#include "editor/annotations/shapes_list.h"
#include "editor/painting/cairo_text_painter.h"
#include "support/pictures.h"

namespace glimmer {
namespace {

TEST(MemoryGuard, TheLimitIsExact) {
    EXPECT_EQ(lowMemoryWarning(20000ULL * 1024), std::nullopt);
    EXPECT_NE(lowMemoryWarning(20000ULL * 1024 - 1), std::nullopt);
    EXPECT_EQ(lowMemoryWarning(8ULL << 30U), std::nullopt);  // more than 32 bits
    EXPECT_THAT(lowMemoryWarning(0).value_or(""), testing::HasSubstr("you have only 0 MB"));
}

TEST(MemoryGuard, TheProbeIsAsLargeAsPictureAndScreen) {
    EXPECT_EQ(probeSize({100, 5000}, {1920, 1080}), (Size{1920, 5000}));
}

TEST(Stamps, StandBelowOneAnotherAndNeedAnAddress) {
    CairoTextPainter painter;
    struct Row {
        const char* url;
        bool withUrl, withTitle;
        std::vector<std::string> texts;
    };
    const Row rows[] = {
        {"http://a/b", true, true, {"http://a/b", "Title"}},
        {"http://a/b", false, true, {"Title"}},
        {"http://a/b", true, false, {"http://a/b"}},
        {"http://a/b", false, false, {}},
        {"", true, true, {}},
    };
    for (const Row& row : rows) {
        const TShapesList stamps = captureStamps(row.url, "Title", {row.withUrl, row.withTitle, "Arial"}, painter);
        ASSERT_EQ(stamps.size(), row.texts.size());
        int32_t top = 5;
        for (size_t i = 0; i < stamps.size(); ++i) {
            EXPECT_EQ(stamps[i].text.text, row.texts[i]);
            EXPECT_EQ(stamps[i].text.rectangle.left, 5);
            EXPECT_EQ(stamps[i].text.rectangle.top, top);
            EXPECT_GT(stamps[i].text.rectangle.height(), 8);
            EXPECT_FALSE(stamps[i].shape.isVisible() || stamps[i].line.isVisible() || stamps[i].number.isVisible());
            top += stamps[i].text.rectangle.height() + 5;
        }
    }
}

TEST(NewDocument, IsNamedCutAndMarkedAsItsPageAndPointerSay) {
    CairoTextPainter painter;
    const auto make = [&painter](const std::string& url, const std::string& title, std::optional<Point> pointer) {
        std::optional<MouseCursor> cursor;
        if (pointer) cursor = MouseCursor{test::plain(8, 8, rgb(0, 0, 0)), *pointer};
        return newDocument(test::plain(40, 30, rgb(1, 2, 3)), url, title, 7, std::move(cursor), {true, false, "Arial"},
                           painter)
            .take();
    };
    const auto page = make("http://a/", "", Point{36, 26});
    EXPECT_EQ(page->info().name, "Untitled");
    EXPECT_EQ(page->info().captured, 7);
    ASSERT_EQ(page->annotations().size(), 2U) << "the address, and the pointer that is partly in the picture";
    EXPECT_EQ(page->annotations()[1].shape.rectangle.left, 36);
    EXPECT_EQ(make("", "Page", Point{-8, 40})->annotations().size(), 0U) << "a pointer beside it";
    // A project of many must stay small enough.
    const auto longest = make(std::string(1U << 20U, 'a'), std::string(9000, 't'), {});
    EXPECT_EQ(longest->info().url.size(), 8192U);
    EXPECT_EQ(longest->info().title.size(), 8192U);
}

}  // namespace
}  // namespace glimmer
