#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/bitmap.h"
#include "common/result.h"
#include "output/print/print_paper.h"

namespace glimmer {

/// One job on its way to one printer. After a step that failed only abort() may follow; a failure without a sentence
/// means that the user gave up in a window of the printer's.
class PrintTarget {
public:
    PrintTarget() = default;
    virtual ~PrintTarget() = default;
    PrintTarget(const PrintTarget&) = delete;
    PrintTarget& operator=(const PrintTarget&) = delete;
    PrintTarget(PrintTarget&&) = delete;
    PrintTarget& operator=(PrintTarget&&) = delete;

    /// The sheet that it prints on.
    [[nodiscard]] virtual PrintPaper paper() const = 0;
    virtual Status startDocument(const std::string& name) = 0;
    virtual Status startPage() = 0;
    /// A picture (24 or 32 bits, opaque) stretched to a place in the printer's dots; see dotsOf().
    virtual Status draw(const TBitmap& picture, const Rect& dots) = 0;
    virtual Status endPage() = 0;
    /// Fails as well when the printer has the document but cannot print it as it is: out of paper, gone.
    virtual Status endDocument() = 0;
    virtual void abort() = 0;
};

/// A printer with its settings, as the system's dialogs know them (a DEVMODE).
struct ChosenPrinter {
    std::string name;  ///< UTF-8; empty: none
    std::vector<uint8_t> settings;
};

/// Which sheets, and how often. Copies are never remembered.
struct PrintRange {
    int32_t copies = 1;
    bool collate = true;  ///< all sheets of a copy, then the next copy
    int32_t first = 1;    ///< sheets, counted from 1
    int32_t last = std::numeric_limits<int32_t>::max();
};

/// The printers of the system; the seam through which all printing goes.
class Printers {
public:
    virtual ~Printers() = default;
    /// The printer of that name with its settings as far as it still takes them; without such a printer the system's
    /// standard one, or its first. No name when there is none at all.
    virtual ChosenPrinter find(const ChosenPrinter& wanted) = 0;
    /// Its sheet. Fails when the printer is gone.
    virtual Result<PrintPaper> paper(const ChosenPrinter& printer) = 0;
    virtual Result<std::unique_ptr<PrintTarget>> open(const ChosenPrinter& printer) = 0;
    /// The system's dialog for the set-up of a printer; `window` is an HWND. Nothing when it was cancelled.
    virtual std::optional<ChosenPrinter> setUp(const ChosenPrinter& printer, void* window) = 0;
    /// The system's dialog for copies and the range of `sheets` sheets. Whether it was answered.
    virtual bool askRange(ChosenPrinter& printer, PrintRange& range, int32_t sheets, void* window) = 0;
};

}  // namespace glimmer
