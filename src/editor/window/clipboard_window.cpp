#include "editor/window/clipboard_window.h"

#include <windows.h>

#include <cstring>

#include "common/opened_clipboard.h"

namespace glimmer {

bool setClipboardBlock(const char* format, std::span<const uint8_t> data) {
    const UINT number = RegisterClipboardFormatA(format);
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, data.size());
    if (number == 0 || memory == nullptr) return false;
    std::memcpy(GlobalLock(memory), data.data(), data.size());
    GlobalUnlock(memory);
    const OpenedClipboard clipboard;
    // Once taken, the memory is the clipboard's.
    if (clipboard && EmptyClipboard() != FALSE && SetClipboardData(number, memory) != nullptr) return true;
    GlobalFree(memory);
    return false;
}

std::optional<std::vector<uint8_t>> clipboardBlock(const char* format, size_t limit) {
    const UINT number = RegisterClipboardFormatA(format);
    const OpenedClipboard clipboard;
    if (number == 0 || !clipboard) return std::nullopt;
    HANDLE memory = GetClipboardData(number);
    if (memory == nullptr) return std::nullopt;
    const size_t size = GlobalSize(memory);
    const auto* bytes = static_cast<const uint8_t*>(GlobalLock(memory));
    if (bytes == nullptr || size > limit) {
        if (bytes != nullptr) GlobalUnlock(memory);
        return std::nullopt;
    }
    std::vector<uint8_t> data(bytes, bytes + size);
    GlobalUnlock(memory);
    return data;
}

bool clipboardHasBlock(const char* format) {
    return IsClipboardFormatAvailable(RegisterClipboardFormatA(format)) != FALSE;
}

}  // namespace glimmer
