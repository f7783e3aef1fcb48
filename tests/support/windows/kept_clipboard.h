#pragma once

#include <windows.h>

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "support/not_copied.h"

namespace glimmer::test {

/// The bytes that the open clipboard has in a format whose data is plain memory.
inline std::vector<uint8_t> bytesOfClipboard(UINT format) {
    const HANDLE data = GetClipboardData(format);
    const void* bytes = data != nullptr ? GlobalLock(data) : nullptr;
    if (bytes == nullptr) return {};
    std::vector<uint8_t> copy(GlobalSize(data));
    std::memcpy(copy.data(), bytes, copy.size());
    GlobalUnlock(data);
    return copy;
}

inline void emptyClipboard() {
    if (OpenClipboard(nullptr) == FALSE) return;
    EmptyClipboard();
    CloseClipboard();
}

/// Puts back at its end what the clipboard held before: texts, pictures, files, everything that is plain memory.
class KeptClipboard : NotCopied {
public:
    KeptClipboard() {
        if (OpenClipboard(nullptr) == FALSE) return;
        for (UINT format = EnumClipboardFormats(0); format != 0; format = EnumClipboardFormats(format)) {
            // Handles of drawing objects; the system makes them of what is kept.
            if (format == CF_BITMAP || format == CF_METAFILEPICT || format == CF_PALETTE || format == CF_ENHMETAFILE ||
                (format >= CF_OWNERDISPLAY && format <= CF_GDIOBJLAST))
                continue;
            if (std::vector<uint8_t> bytes = bytesOfClipboard(format); !bytes.empty())
                kept_.emplace_back(format, std::move(bytes));
        }
        CloseClipboard();
    }
    ~KeptClipboard() {
        // Data is taken only from a window.
        const HWND owner = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        if (OpenClipboard(owner) != FALSE) {
            EmptyClipboard();
            putBack();
            CloseClipboard();
        }
        DestroyWindow(owner);
    }

private:
    void putBack() const {
        for (const auto& [format, bytes] : kept_) {
            const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
            if (memory == nullptr) continue;
            std::memcpy(GlobalLock(memory), bytes.data(), bytes.size());
            GlobalUnlock(memory);
            if (SetClipboardData(format, memory) == nullptr) GlobalFree(memory);
        }
    }

    std::vector<std::pair<UINT, std::vector<uint8_t>>> kept_;
};

}  // namespace glimmer::test
