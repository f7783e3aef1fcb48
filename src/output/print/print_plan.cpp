#include "output/print/print_plan.h"

#include <algorithm>

#include "common/assertion.h"

namespace glimmer {

PrintPlan::PrintPlan(std::vector<std::unique_ptr<PrintSource>> sources, const PrintPaper& paper,
                     const PrintWishes& wishes, bool grayscale, bool alike)
    : sources_(std::move(sources)), alike_(alike) {
    GLIMMER_ASSERT(!sources_.empty(), "pEditor!=NULL", "uPrintDialog");
    for (const auto& source : sources_)
        documents_.push_back({source.get(), PrintLayout(source->size(), paper, wishes), grayscale});
    cut();
}

void PrintPlan::change(const std::function<void(PrintLayout&)>& change) {
    change(documents_[current_].layout);
    if (alike_) {
        const PrintWishes wishes = layout().wishes();
        for (size_t i = 0; i < documents_.size(); ++i)
            if (i != current_)
                documents_[i].layout = PrintLayout(documents_[i].source->size(), layout().paper(), wishes);
    }
    cut();
}

void PrintPlan::setGrayscale(bool grayscale) {
    for (size_t i = 0; i < documents_.size(); ++i)
        if (alike_ || i == current_) documents_[i].grayscale = grayscale;
}

void PrintPlan::setPaper(const PrintPaper& paper) {
    for (PrintDocument& document : documents_) document.layout.setPaper(paper);
    cut();
}

int32_t PrintPlan::sheetCount() const {
    size_t count = 0;
    for (const auto& own : sheets_) count += own.size();
    return static_cast<int32_t>(count);
}

int32_t PrintPlan::sheetNumber() const {
    size_t number = sheetOfDocument_;
    for (size_t i = 0; i < current_; ++i) number += sheets_[i].size();
    return static_cast<int32_t>(number);
}

void PrintPlan::turnTo(int32_t sheet) {
    auto left = static_cast<size_t>(std::clamp(sheet, 0, sheetCount() - 1));
    for (current_ = 0; left >= sheets_[current_].size(); ++current_) left -= sheets_[current_].size();
    sheetOfDocument_ = left;
}

void PrintPlan::cut() {
    sheets_.clear();
    for (const PrintDocument& document : documents_) sheets_.push_back(document.sheets());
    sheetOfDocument_ = std::min(sheetOfDocument_, sheets_[current_].size() - 1);
}

}  // namespace glimmer
