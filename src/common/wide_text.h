#pragma once

#include <string>
#include <string_view>

#include "common/text.h"

// Windows only: wchar_t holds one UTF-16 unit there.

namespace glimmer {

/// UTF-8 to what the system takes, and back; exact both ways as in text.h.
std::wstring toWide(std::string_view text);
std::string fromWide(std::wstring_view text);

/// A zero-terminated text of somebody else's, cut at `limit` units; empty for a null pointer.
std::string fromWide(const wchar_t* text, size_t limit);

}  // namespace glimmer
