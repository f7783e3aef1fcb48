#include "capture/scroll/scroll_join.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

#include "support/pictures.h"

namespace glimmer {
namespace {

/// A page as a seed makes it, and a window in which it scrolls.
struct Page {
    enum class Kind { Text, Table, Photo, Counted };

    explicit Page(unsigned seed) : random(seed), kind(static_cast<Kind>(seed % 4)) {
        const int32_t height = number(view.height + 60, 330);
        content = test::plain(view.width, height, rgb(255, 255, 255));
        const int32_t line = number(7, 16);
        for (int32_t y = 2; y + 6 < height; y += line)
            for (int32_t x = 6; x + 5 < view.width && number(0, 12) > 0; x += 6) letter(x, y, number(0, 1 << 15));
        if (kind == Kind::Photo) content = test::noise(view.width, height, PixelFormat::Bgra32, seed);
        if (kind != Kind::Table && kind != Kind::Counted) return;
        // Rows that are all alike; in one kind a small number tells them apart.
        content.fill(content.bounds(), rgb(250, 250, 250));
        for (int32_t y = 0, row = 0; y + 7 < height; y += line, ++row) {
            for (int32_t x = 40; x + 5 < view.width; x += 6) letter(x, y, x * 977);
            if (kind == Kind::Counted) letter(6, y, row * 7919 + 1);
        }
    }

    int32_t number(int32_t least, int32_t most) { return std::uniform_int_distribution<int32_t>(least, most)(random); }
    void letter(int32_t x, int32_t y, int32_t bits) {
        for (int32_t i = 0; i < 15; ++i)
            if ((bits >> i & 1) != 0) content.setPixel(x + i % 3, y + i / 3, rgb(0, 0, 0));
    }
    /// The window scrolled down to `top`, with what stays and what flickers.
    TBitmap frame(int32_t top) {
        TBitmap shown = test::plain(view.width, view.height, rgb(200, 210, 230));
        copyPixels(shown, {0, header}, content, {0, top, view.width, top + view.height - header - footer});
        shown.fill({0, view.height - footer, view.width, view.height}, rgb(60, 70, 80));
        for (int32_t x = 4; x < 90; x += 3) {
            if (header > 0) shown.setPixel(x, header / 2, rgb(90, 0, 0));
            if (footer > 0) shown.setPixel(x, view.height - footer / 2 - 1, rgb(255, 255, 255));
        }
        return shown;
    }
    void disturb(TBitmap& shown) {
        for (int32_t i = 0; i < 8; ++i)
            shown.setPixel(number(0, view.width - 1), number(0, view.height - 1), rgb(255, 0, 0));
    }

    std::mt19937 random;
    Kind kind;
    Size view{160, 120};
    TBitmap content;
    int32_t header = 0;
    int32_t footer = 0;
};

/// Pixels of the picture that are not the page's, with what stays around it.
int64_t wrongPixels(Page& page, const TBitmap& picture) {
    const int32_t inside = page.view.height - page.header - page.footer;
    int64_t wrong = 0;
    for (int32_t y = page.header; y < picture.height() - page.footer; ++y)
        for (int32_t x = 0; x < picture.width(); ++x)
            wrong += picture.pixel(x, y) != page.content.pixel(x, y - page.header) ? 1 : 0;
    const TBitmap last = page.frame(page.content.height() - inside);
    for (int32_t y = 1; y <= page.footer; ++y)
        for (int32_t x = 0; x < picture.width(); ++x)
            wrong += picture.pixel(x, picture.height() - y) != last.pixel(x, last.height() - y) ? 1 : 0;
    return wrong;
}

TEST(ScrollJoin, JoinsAThousandPagesOrSaysWhereItIsNotSure) {
    std::map<Page::Kind, int> doubted;
    for (unsigned seed = 0; seed < 1000; ++seed) {
        Page page(seed);
        page.header = page.number(0, 1) * page.number(5, 20);
        page.footer = page.number(0, 1) * page.number(5, 20);
        const bool noisy = page.number(0, 2) == 0;
        const int32_t inside = page.view.height - page.header - page.footer;
        const int32_t bottom = page.content.height() - inside;
        ScrollJoin join(page.frame(0), 10000);
        bool doubtful = false;
        for (int32_t top = 0; top < bottom;) {
            top = std::min(bottom, top + page.number(9, inside - 25));
            TBitmap shown = page.frame(top);
            if (noisy) page.disturb(shown);
            const ScrollJoin::Step step = join.add(std::move(shown));
            doubtful = doubtful || step != ScrollJoin::Step::Moved || join.lastMatch().doubtful();
        }
        if (doubtful) {
            ++doubted[page.kind];
            continue;
        }
        const TBitmap picture = join.take().take();
        EXPECT_EQ(picture.height(), page.content.height() + page.header + page.footer) << "seed " << seed;
        if (picture.height() != page.content.height() + page.header + page.footer) continue;
        EXPECT_LE(wrongPixels(page, picture), noisy ? 8 * static_cast<int64_t>(join.seams().size()) : 0)
            << "seed " << seed;
    }
    // Rows that are all alike leave it unsure, others seldom.
    EXPECT_EQ(doubted[Page::Kind::Table], 250);
    EXPECT_LE(doubted[Page::Kind::Text], 12);
    EXPECT_LE(doubted[Page::Kind::Counted], 12);
    EXPECT_EQ(doubted[Page::Kind::Photo], 0);
}

TEST(ScrollJoin, StandsWhatGoesSidewaysStopsOrIsSomethingElse) {
    Page page(8);
    const TBitmap wide = test::noise(200, 400, PixelFormat::Bgra32, 3);
    const auto shown = [&wide](int32_t left, int32_t top) {
        return wide.cropped({left, top, left + 160, top + 120}).take();
    };
    ScrollJoin join(shown(10, 0), 1000);
    EXPECT_EQ(join.add(shown(10, 0)), ScrollJoin::Step::Still);
    EXPECT_EQ(join.add(shown(17, 40)), ScrollJoin::Step::Moved);
    EXPECT_EQ(join.lastMatch().shift, -7);
    EXPECT_EQ(join.add(test::noise(160, 120, PixelFormat::Bgra32, 77)), ScrollJoin::Step::Unknown);
    EXPECT_EQ(join.rows(), 160);
    EXPECT_TRUE(seamNote(join.seams()).empty());
    EXPECT_EQ(join.add(test::noise(160, 120, PixelFormat::Bgra32, 78), 50), ScrollJoin::Step::Moved);
    EXPECT_NE(seamNote(join.seams()).find("row 160:"), std::string::npos) << seamNote(join.seams());
    const TBitmap picture = join.take().take();
    ASSERT_EQ(picture.height(), 210);
    EXPECT_TRUE(samePixels(picture.cropped({7, 0, 160, 160}).take(), wide.cropped({17, 0, 170, 160}).take()));
}

}  // namespace
}  // namespace glimmer
