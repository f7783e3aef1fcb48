#pragma once

#include "output/print/print_layout.h"
#include "output/print/printer.h"
#include "settings/cached_mem_ini_file.h"

namespace glimmer {

/// What printing keeps from one time to the next, in the section "Printer": each value under the name of its control,
/// lengths in inches, the printer as "Printer" and its settings as "PrinterSettings" (base64).
struct PrintStore {
    PrintWishes wishes;
    bool boundingBox = true;
    bool grayscale = false;
    ChosenPrinter printer;

    /// What is missing or makes no sense is as at first.
    static PrintStore read(const TCachedMemIniFile& store);
    void write(TCachedMemIniFile& store) const;
};

}  // namespace glimmer
