#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "capture/memory_guard.h"
#include "capture/stamps.h"
#include "editor/annotations/shapes_list.h"
#include "editor/painting/cairo_text_painter.h"

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

}  // namespace
}  // namespace glimmer
