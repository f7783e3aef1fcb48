#pragma once

#include <span>
#include <string>
#include <vector>

#include "common/progress.h"
#include "output/print/print_source.h"
#include "output/print/printer.h"

namespace glimmer {

/// One capture in a job, with its layout.
struct PrintDocument {
    const PrintSource* source;
    PrintLayout layout;
    bool grayscale = false;

    [[nodiscard]] std::vector<PrintSheet> sheets() const { return sheetsOf(layout, source->stripes()); }
};

enum class PrintEnd : uint8_t { Printed, Cancelled, Failed };
struct PrintOutcome {
    PrintEnd end = PrintEnd::Printed;
    std::string message;  ///< a sentence when it failed
};

/// Prints all sheets of all documents as one job: band by band, so that never more than a few megabytes are on their
/// way. Reductions are made here, whatever the printer would make of them. `progress` is asked between two bands. A job
/// that does not come to its end is taken back.
PrintOutcome printDocuments(PrintTarget& target, const std::string& jobName, std::span<const PrintDocument> documents,
                            const PrintRange& range, TextPainter& text, const Progress& progress);

}  // namespace glimmer
