#pragma once

#include <windows.h>

#include "support/not_copied.h"

namespace glimmer::test {

/// Takes the place of a function that a loaded module imports from another, for this module's own calls only, as long
/// as the object lives: what a test must see (a sound) or must not have happen (a browser).
class ImportPatch : NotCopied {
public:
    /// `library` is the imported module's file name, in any case, `function` its name in the import table. A module
    /// that does not import it is a failed test.
    ImportPatch(HMODULE module, const char* library, const char* function, void* replacement);
    template <class Function>
    ImportPatch(HMODULE module, const char* library, const char* function, Function* replacement)
        : ImportPatch(module, library, function, reinterpret_cast<void*>(replacement)) {}
    ~ImportPatch();

private:
    static void put(void** slot, void* function);
    void** slot_ = nullptr;
    void* before_ = nullptr;
};

}  // namespace glimmer::test
