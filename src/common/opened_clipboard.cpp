#include "common/opened_clipboard.h"

#include <windows.h>

namespace glimmer {

OpenedClipboard::OpenedClipboard() {
    constexpr int attempts = 20;
    constexpr DWORD pause = 25;  // milliseconds
    for (int attempt = 0; attempt < attempts && !open_; ++attempt) {
        if (attempt > 0) Sleep(pause);
        open_ = OpenClipboard(nullptr) != FALSE;
    }
}

OpenedClipboard::~OpenedClipboard() {
    if (open_) CloseClipboard();
}

}  // namespace glimmer
