// Paper, margins, size and place of what is printed, and its sheets.

#include "output/print/print_layout.h"

#include <gtest/gtest.h>

#include <cmath>

#include "output/print/print_sheets.h"
#include "output/print/print_units.h"

namespace glimmer {
namespace {

constexpr double tiny = 1e-9;
const PrinterMetrics a4At300{300, 300, 2480, 3508, 50, 60, 2380, 3388};

TEST(PrintUnits, ALengthStaysItselfInEveryUnitAndTextsAreReadAsPeopleWriteThem) {
    EXPECT_EQ(lengthText(1, PrintUnit::Centimetre), "2.54");
    EXPECT_EQ(lengthText(-0.5, PrintUnit::Millimetre), "-12.7");
    EXPECT_EQ(lengthText(1.0 / 3, PrintUnit::Pica), "2");
    const double length = 6.2716535;
    for (const auto unit : {PrintUnit::Inch, PrintUnit::Centimetre, PrintUnit::Millimetre, PrintUnit::Point})
        EXPECT_EQ(lengthFrom(lengthText(length, unit), unit, length), length);
    EXPECT_NEAR(*lengthFrom(" 2,54 cm", PrintUnit::Centimetre, 0), 1, tiny);
    for (const char* text : {"", "in", "1..2", "1e3", "0x10", "nan", "1001", "1 2"})
        EXPECT_FALSE(lengthFrom(text, PrintUnit::Inch, 1)) << text;
    EXPECT_EQ(scaleText(86.6), "87%");
    EXPECT_EQ(scaleFrom("87%", 86.6), 86.6);
    EXPECT_EQ(scaleFrom("50", 86.6), 50);
    EXPECT_FALSE(scaleFrom("0", 86.6));
}

TEST(PrintPaper, WhatADriverDoesNotSayIsTakenAsUsual) {
    const PrintPaper plain = paperOf(a4At300);
    EXPECT_NEAR(plain.width, 2480 / 300.0, tiny);
    EXPECT_NEAR(plain.printable.bottom, 3448 / 300.0, tiny);
    EXPECT_EQ(dotsOf(plain, {0.5, 0.5, 1.5, 1.5}), (Rect{100, 90, 400, 390}));

    const PrintPaper silent = paperOf({});
    EXPECT_EQ(silent.dotsPerInchX, 600);
    EXPECT_NEAR(silent.height, 297 / 25.4, tiny);
    EXPECT_NEAR(silent.printable.right, silent.width, tiny);
    PrinterMetrics halfSilent = a4At300;
    halfSilent.logPixelsY = 0;
    EXPECT_NEAR(paperOf(halfSilent).height, 3508 / 600.0, tiny);
}

TEST(PrintLayout, FitsCentresAndKeepsSizeScaleAndPlaceInStep) {
    PrintLayout layout({1280, 720}, paperOf(a4At300), {});
    const double inner = 2480 / 300.0 - 2;
    EXPECT_NEAR(layout.place().width(), inner, tiny);
    EXPECT_NEAR(layout.place().left, 1, tiny);
    EXPECT_NEAR(layout.place().top + layout.place().bottom, layout.paper().height, tiny);
    EXPECT_NEAR(layout.scale(), inner / (1280 / 300.0) * 100, tiny);
    layout.setMargins({1, 1, 2, 2});
    EXPECT_NEAR(layout.place().width(), inner - 2, tiny) << "a margin resizes what is fitted";

    layout.setScale(50);
    EXPECT_FALSE(layout.wishes().fit);
    EXPECT_NEAR(layout.place().height(), 720 / 300.0 / 2, tiny);
    layout.setHeight(2.4);
    EXPECT_NEAR(layout.scale(), 100, tiny);
    EXPECT_NEAR(layout.place().left, (layout.paper().width - layout.place().width()) / 2, tiny) << "still centred";
    layout.setPlace(3, -100);
    EXPECT_FALSE(layout.wishes().centre);
    EXPECT_NEAR(layout.place().bottom, 0.25, tiny) << "it can still be grasped";
    layout.setSize(4, 1);
    layout.setWidth(2);
    EXPECT_NEAR(layout.place().height(), 0.5, tiny) << "freed proportions stay";

    PrintLayout again({1280, 720}, paperOf(a4At300), layout.wishes());
    EXPECT_NEAR(again.place().width(), 2, tiny);
    EXPECT_NEAR(again.place().left, 3, tiny);
    again.setPaper(paperOf({600, 600, 4960, 7016, 0, 0, 4960, 7016}));
    EXPECT_NEAR(again.place().width(), 2, tiny);
    EXPECT_NEAR(again.scale(), 2 / (1280 / 600.0) * 100, tiny);
}

TEST(PrintLayout, NothingGoesWhereThePrinterDoesNotReach) {
    // Half an inch on the left, an inch at the foot.
    const PrintPaper wide = paperOf({300, 300, 2480, 3508, 150, 30, 2180, 3178});
    PrintLayout layout({100, 1000}, wide, {});
    layout.setMargins({0, 0, 0, 0});
    EXPECT_NEAR(layout.area().left, 0.5, tiny);
    EXPECT_NEAR(layout.place().bottom, 3208 / 300.0, tiny);
    layout.setFootLine(true);
    EXPECT_LT(layout.place().bottom, layout.footPlace().top);
    EXPECT_LE(layout.footPlace().bottom, 3208 / 300.0 + tiny);
    layout.setMargins({100, 100, 100, 100});
    EXPECT_GT(layout.place().width(), 0);
    EXPECT_GE(layout.place().left, 0.5);
}

TEST(PrintSheets, AreCutWhereNothingIsCutThroughAndRepeatTheOverlap) {
    TBitmap page = TBitmap::create(200, 2000, PixelFormat::Bgra32).take();
    for (int32_t y = 0; y < 2000; ++y) {
        const bool gap = y % 40 >= 32;  // lines of 32 rows, gaps of 8
        for (int32_t x = 0; x < 200; ++x) page.setPixel(x, y, gap || (x + y) % 3 != 0 ? 0xFFFFFF : 0);
    }
    EmptyStripes stripes;
    for (int32_t y = 0; y < 2000; y += 333) stripes.add(page.cropped({0, y, 200, std::min(y + 333, 2000)}).take());
    PrintWishes wishes;
    wishes.split = true;
    const PrintLayout layout({200, 2000}, paperOf(a4At300), wishes);
    const std::vector<PrintSheet> sheets = sheetsOf(layout, stripes);
    const double rowHeight = layout.place().height() / 2000;
    ASSERT_GE(static_cast<double>(sheets.size()), 2000 * rowHeight / layout.area().height());
    EXPECT_EQ(sheets.front().source.top, 0);
    EXPECT_EQ(sheets.back().source.bottom, 2000);
    for (size_t i = 0; i + 1 < sheets.size(); ++i) {
        EXPECT_EQ(sheets[i].source.bottom % 40, 36) << "in the middle of a gap";
        EXPECT_EQ(sheets[i + 1].source.top, sheets[i].source.bottom - std::lround(0.25 / rowHeight));
        EXPECT_NEAR(sheets[i].place.height(), sheets[i].source.height() * rowHeight, tiny);
        EXPECT_LE(sheets[i].place.bottom, layout.area().bottom + tiny);
    }
    EXPECT_EQ(EmptyStripes().cut(10, 30), 30);
    wishes.split = false;
    EXPECT_EQ(sheetsOf(PrintLayout({200, 2000}, paperOf(a4At300), wishes), stripes).size(), 1U);
}

}  // namespace
}  // namespace glimmer
