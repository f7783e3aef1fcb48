#pragma once

#include <wx/string.h>

#include <string_view>

namespace glimmer {

/// UTF-8 to the toolkit's text; empty where it is no UTF-8.
inline wxString wxText(std::string_view utf8) { return wxString::FromUTF8(utf8.data(), utf8.size()); }

}  // namespace glimmer
