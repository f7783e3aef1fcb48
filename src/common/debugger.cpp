#include "common/debugger.h"

#include <windows.h>

#include "common/debug_channel.h"
#include "common/wide_text.h"

namespace glimmer {

void connectDebugger() {
    setDebugChannel([](std::string_view text) { OutputDebugStringW(toWide(text).c_str()); });
}

}  // namespace glimmer
