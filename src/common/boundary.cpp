#include "common/boundary.h"

#include <windows.h>

#include <exception>
#include <new>

#include "common/wide_text.h"

namespace glimmer {

void reportCurrentException() noexcept {
    // The system's own box: nothing of ours can be relied on here.
    constexpr UINT style = MB_OK | MB_ICONERROR | MB_TOPMOST | MB_SETFOREGROUND;
    try {
        throw;  // cppcheck-suppress rethrowNoCurrentException ; called while one is handled
    } catch (const std::bad_alloc&) {
        MessageBoxW(nullptr, L"There is not enough memory for this.", L"Error", style);
    } catch (const std::exception& error) {
        std::wstring text = L"An internal error occurred.";
        try {
            text = toWide(error.what());
        } catch (...) {
            // The general text serves.
        }
        MessageBoxW(nullptr, text.c_str(), L"Error", style);
    } catch (...) {
        MessageBoxW(nullptr, L"An internal error occurred.", L"Error", style);
    }
}

}  // namespace glimmer
