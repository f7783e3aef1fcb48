#include "imaging/png_text.h"

#include <algorithm>

#include "common/text.h"

namespace glimmer {

namespace {

/// Whether the bytes are our text: UTF-8, or what stands for an unpaired surrogate in it.
bool isText(std::string_view bytes) { return isUtf8(bytes) || toUtf8(toUtf16(bytes)) == bytes; }

}  // namespace

std::string toPngText(std::string_view utf8) {
    utf8 = utf8.substr(0, utf8.find('\0'));
    const std::u16string units = toUtf16(utf8);
    if (std::any_of(units.begin(), units.end(), [](char16_t unit) { return unit > 0xFF; })) return std::string(utf8);
    std::string latin;
    latin.reserve(units.size());
    for (const char16_t unit : units) latin += static_cast<char>(unit);
    return isText(latin) ? std::string(utf8) : latin;
}

std::string fromPngText(std::string_view bytes) {
    if (isText(bytes)) return std::string(bytes);
    std::u16string units;
    units.reserve(bytes.size());
    for (const char byte : bytes) units += static_cast<char16_t>(static_cast<unsigned char>(byte));
    return toUtf8(units);
}

}  // namespace glimmer
