#pragma once

#include <vector>

namespace glimmer {

/// Stands around every call that shows a dialog of the system and comes back when it is answered. A wish to close down
/// may arrive while it is open; whoever receives it finds the dialog here, and waits for the code below it. (The
/// toolkit tells of its own dialogs by itself.) Afterwards the window that was active before is so again: the dialogs
/// for files of some systems leave that to chance.
class ModalScope {
public:
    ModalScope();
    ~ModalScope();
    ModalScope(const ModalScope&) = delete;
    ModalScope& operator=(const ModalScope&) = delete;
    ModalScope(ModalScope&&) = delete;
    ModalScope& operator=(ModalScope&&) = delete;

    /// Whether any stands now.
    static bool any() { return innermost_ != nullptr; }
    /// The dialogs (HWND) that are open in them, innermost first.
    static std::vector<void*> windows();

private:
    struct Watch;
    static inline ModalScope* innermost_ = nullptr;
    ModalScope* outer_;
    void* hook_;              // HHOOK
    void* active_;            // HWND
    void* window_ = nullptr;  // HWND of the first dialog that was made
};

}  // namespace glimmer
