#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "output/print/print_job.h"

namespace glimmer {

/// Captures that are to be printed as one job: the layout of each, alike for all or each its own, and the sheets that
/// come of them. One sheet is the current one; what is changed is the layout of its capture, or of all.
class PrintPlan {
public:
    /// At least one capture.
    PrintPlan(std::vector<std::unique_ptr<PrintSource>> sources, const PrintPaper& paper, const PrintWishes& wishes,
              bool grayscale, bool alike);

    [[nodiscard]] const PrintDocument& document() const { return documents_[current_]; }
    [[nodiscard]] const PrintLayout& layout() const { return document().layout; }
    [[nodiscard]] const PrintSource& source() const { return *document().source; }
    [[nodiscard]] const std::vector<PrintDocument>& documents() const { return documents_; }

    void change(const std::function<void(PrintLayout&)>& change);
    void setGrayscale(bool grayscale);
    void setPaper(const PrintPaper& paper);  ///< of all captures

    /// Of all captures together; sheetNumber() from 0.
    [[nodiscard]] int32_t sheetCount() const;
    [[nodiscard]] int32_t sheetNumber() const;
    void turnTo(int32_t sheet);  ///< the nearest there is
    [[nodiscard]] const PrintSheet& sheet() const { return sheets_[current_][sheetOfDocument_]; }
    /// Of the current capture alone.
    [[nodiscard]] int32_t ownSheet() const { return static_cast<int32_t>(sheetOfDocument_); }
    [[nodiscard]] int32_t ownSheets() const { return static_cast<int32_t>(sheets_[current_].size()); }

private:
    void cut();

    std::vector<std::unique_ptr<PrintSource>> sources_;
    std::vector<PrintDocument> documents_;
    std::vector<std::vector<PrintSheet>> sheets_;
    size_t current_ = 0;
    size_t sheetOfDocument_ = 0;
    bool alike_;
};

}  // namespace glimmer
