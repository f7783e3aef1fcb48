#include "common/wide_text.h"

#include <cwchar>

namespace glimmer {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

std::wstring toWide(std::string_view text) {
    const std::u16string units = toUtf16(text);
    return {units.begin(), units.end()};
}

std::string fromWide(std::wstring_view text) { return toUtf8(std::u16string(text.begin(), text.end())); }

std::string fromWide(const wchar_t* text, size_t limit) {
    if (text == nullptr) return {};
    return fromWide(std::wstring_view(text, wcsnlen(text, limit)));
}

}  // namespace glimmer
