// A job with a printer that keeps what it gets, and fails where it is told to.

#include "output/print/print_job.h"

#include <gtest/gtest.h>

#include <map>

#include "editor/painting/cairo_text_painter.h"
#include "output/print/preview_view.h"
#include "output/print/print_plan.h"
#include "settings/options.h"
#include "support/pictures.h"

namespace glimmer {
namespace {

/// Draws at one dot a pixel, on sheets of its own.
class KeptPages : public PrintTarget {
public:
    explicit KeptPages(const PrintPaper& paper) : paper_(paper) {}
    [[nodiscard]] PrintPaper paper() const override { return paper_; }
    Status startDocument(const std::string& name) override { return step("startDocument " + name); }
    Status startPage() override {
        pages.push_back(test::plain(static_cast<int32_t>(paper_.width * paper_.dotsPerInchX),
                                    static_cast<int32_t>(paper_.height * paper_.dotsPerInchY), rgb(255, 255, 255)));
        return step("startPage");
    }
    Status draw(const TBitmap& picture, const Rect& dots) override {
        largest = std::max(largest, picture.byteCount());
        EXPECT_EQ(picture.size(), (Size{dots.width(), dots.height()})) << "at natural size";
        copyPixels(pages.back(), {dots.left, dots.top}, picture);
        return step("draw");
    }
    Status endPage() override { return step("endPage"); }
    Status endDocument() override { return step("endDocument"); }
    void abort() override { ++aborted; }

    std::string failing;   ///< the step that fails
    std::string sentence;  ///< with these words
    std::map<std::string, int> steps;
    std::vector<TBitmap> pages;
    size_t largest = 0;
    int aborted = 0;

private:
    Status step(const std::string& name) {
        ++steps[name];
        return !failing.empty() && name.starts_with(failing) ? Status(Failure{sentence}) : Status();
    }
    PrintPaper paper_;
};

class PrintJob : public testing::Test {
protected:
    static std::unique_ptr<CaptureDocument> noise(int32_t width, int32_t height) {
        return CaptureDocument::create(test::noise(width, height, PixelFormat::Bgr24, 3), {}).take();
    }
    PrintPlan planOf(std::vector<CaptureDocument*> documents, const PrintWishes& wishes, bool alike = true) {
        std::vector<std::unique_ptr<PrintSource>> sources;
        for (CaptureDocument* document : documents) {
            sources.push_back(std::make_unique<PrintSource>(*document, text_));
            EXPECT_TRUE(sources.back()->look(100000, {}).ok());
        }
        return {std::move(sources), paper_, wishes, false, alike};
    }
    PrintOutcome print(KeptPages& pages, const PrintPlan& plan, const PrintRange& range = {},
                       const Progress& progress = {}) {
        return printDocuments(pages, "Glimmerpad document", plan.documents(), range, text_, progress);
    }

    CairoTextPainter text_;
    PrintPaper paper_ = paperOf({100, 100, 827, 1169, 0, 0, 827, 1169});
};

TEST_F(PrintJob, JoinedSheetsAreThePictureAndBandsAreSmall) {
    const auto document = noise(600, 4000);
    PrintWishes wishes;
    wishes.split = true;
    wishes.fit = false;
    const PrintPlan plan = planOf({document.get()}, wishes);
    KeptPages pages(paper_);
    ASSERT_EQ(print(pages, plan).end, PrintEnd::Printed);
    ASSERT_EQ(static_cast<int32_t>(pages.pages.size()), plan.sheetCount());
    ASSERT_GT(plan.sheetCount(), 1);
    TBitmap joined = test::plain(600, 4000, 0);
    const std::vector<PrintSheet> sheets = plan.documents().front().sheets();
    for (size_t i = 0; i < sheets.size(); ++i) {
        const Rect dots = dotsOf(paper_, sheets[i].place);
        copyPixels(joined, {0, sheets[i].source.top}, pages.pages[i], dots);
    }
    EXPECT_TRUE(samePixels(joined, document->background()));
    EXPECT_LE(pages.largest, static_cast<size_t>(PrintSource::bandBytes));
    EXPECT_EQ(pages.steps["startDocument Glimmerpad document"], 1);
}

TEST_F(PrintJob, WhateverStepFailsTakesTheJobBackAndSaysWhy) {
    const auto document = noise(60, 40);
    PrintWishes wishes;
    wishes.fit = false;
    const PrintPlan plan = planOf({document.get()}, wishes);
    for (const char* step : {"startDocument", "startPage", "draw", "endPage", "endDocument"}) {
        KeptPages pages(paper_);
        pages.failing = step;
        pages.sentence = "Out of paper.";
        const PrintOutcome outcome = print(pages, plan);
        EXPECT_EQ(outcome.end, PrintEnd::Failed) << step;
        EXPECT_EQ(outcome.message, "Out of paper.") << step;
        EXPECT_EQ(pages.aborted, std::string(step) == "endDocument" ? 0 : 1) << step;
        KeptPages givenUp(paper_);
        givenUp.failing = step;
        EXPECT_EQ(print(givenUp, plan).end, PrintEnd::Cancelled) << step;
    }
    KeptPages pages(paper_);
    EXPECT_EQ(print(pages, plan, {}, [](double) { return false; }).end, PrintEnd::Cancelled);
    EXPECT_EQ(pages.aborted, 1);
    EXPECT_EQ(print(pages, plan, {.first = 2, .last = 3}).end, PrintEnd::Failed) << "no such sheet";
}

TEST_F(PrintJob, CopiesAndRangesCountTheSheetsOfAllCaptures) {
    const auto first = noise(60, 40);
    const auto second = noise(80, 40);
    PrintWishes wishes;
    wishes.fit = false;
    PrintPlan plan = planOf({first.get(), second.get()}, wishes, false);
    plan.turnTo(1);
    plan.change([](PrintLayout& layout) { layout.setPlace(0, 0); });
    EXPECT_TRUE(plan.documents().front().layout.wishes().centre) << "each has its own";
    for (const bool collate : {true, false}) {
        KeptPages pages(paper_);
        ASSERT_EQ(print(pages, plan, {.copies = 2, .collate = collate}).end, PrintEnd::Printed);
        ASSERT_EQ(pages.pages.size(), 4U);
        EXPECT_EQ(samePixels(pages.pages[0], pages.pages[1]), !collate);
        EXPECT_EQ(samePixels(pages.pages[0], pages.pages[2]), collate);
    }
    KeptPages pages(paper_);
    ASSERT_EQ(print(pages, plan, {.first = 2, .last = 9}).end, PrintEnd::Printed);
    ASSERT_EQ(pages.pages.size(), 1U);
    EXPECT_EQ(pages.pages[0].pixel(79, 39), second->background().pixel(79, 39));
}

TEST(PreviewDrag, MovesSizesAndSnaps) {
    const PrintPaper paper = paperOf({100, 100, 850, 1100, 0, 0, 850, 1100});
    PrintWishes wishes;
    wishes.fit = false;
    wishes.scale = 100;
    PrintLayout layout({200, 100}, paper, wishes);
    const PreviewView view = PreviewView::fitted({425, 550}, paper, 0);
    const Rect box = view.pixels(layout.place());
    EXPECT_EQ(gripAt(gripPoint(PreviewGrip::BottomRight, box), box, 4), PreviewGrip::BottomRight);
    EXPECT_EQ(gripAt({middle(box.left, box.right) + 9, middle(box.top, box.bottom)}, box, 4), PreviewGrip::Picture);

    const InchRect start = layout.place();
    PreviewDrag(layout, PreviewGrip::Picture, start, 0, 0).moveTo(layout, 1.02 - start.left, 1, false, 0.1);
    EXPECT_NEAR(layout.place().left, 1, 1e-9) << "at the margin";
    EXPECT_FALSE(layout.wishes().centre);
    const InchRect moved = layout.place();
    PreviewDrag(layout, PreviewGrip::TopLeft, moved, 0, 0).moveTo(layout, 1, 0, false, 0);
    EXPECT_NEAR(layout.place().width(), 1, 1e-9);
    EXPECT_NEAR(layout.place().height(), 0.5, 1e-9) << "proportions stay";
    EXPECT_NEAR(layout.place().right, moved.right, 1e-9);
    EXPECT_NEAR(layout.place().bottom, moved.bottom, 1e-9);
    PreviewDrag(layout, PreviewGrip::Right, layout.place(), 0, 0).moveTo(layout, 1, 0, true, 0);
    EXPECT_NEAR(layout.place().height(), 0.5, 1e-9) << "Shift frees them";
    EXPECT_NEAR(layout.place().width(), 2, 1e-9);
}

}  // namespace
}  // namespace glimmer
