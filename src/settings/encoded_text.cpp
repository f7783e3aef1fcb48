#include "settings/encoded_text.h"

#include <optional>

#include "common/text.h"

namespace glimmer {

namespace {

constexpr std::string_view digits = "0123456789abcdef";
constexpr std::string_view encodedMark = "hex:";

bool endsLine(char c) { return c == '\r' || c == '\n' || c == '\0'; }
bool isBlank(char c) { return c == ' ' || c == '\t'; }

std::optional<unsigned> digitValue(char c) {
    if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a' + 10);
    if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A' + 10);
    return std::nullopt;
}

/// The number that all characters of `text` form; nothing when one is no hexadecimal digit.
std::optional<unsigned> hexValue(std::string_view text) {
    unsigned value = 0;
    for (const char c : text) {
        const std::optional<unsigned> digit = digitValue(c);
        if (!digit) return std::nullopt;
        value = value << 4U | *digit;
    }
    return value;
}

void appendHex(std::string& out, unsigned value, unsigned places) {
    for (unsigned place = places; place-- > 0;) out.push_back(digits[value >> (4 * place) & 0xFU]);
}

bool breaksSyntax(std::string_view text, IniPlace place) {
    if (text.empty()) return false;
    if (!isUtf8(text) || isBlank(text.front()) || isBlank(text.back())) return true;
    if (place == IniPlace::Key && std::string_view("[;#").find(text[0]) != std::string_view::npos) return true;
    for (const char c : text) {
        if (endsLine(c) || (place == IniPlace::Section && c == ']') || (place == IniPlace::Key && c == '='))
            return true;
    }
    return false;
}

std::string encodedForm(std::string_view text) { return std::string(encodedMark).append(encodeText(text)); }

bool needsEncoding(std::string_view text, IniPlace place) {
    return breaksSyntax(text, place) || fromIniForm(text, place) != text;
}

}  // namespace

std::string encodeText(std::string_view text) {
    std::string out;
    for (const char16_t unit : toUtf16(text)) appendHex(out, unit, 4);
    return out;
}

std::string decodeText(std::string_view encoded) {
    std::u16string units;
    for (size_t at = 0; encoded.size() - at >= 4; at += 4) {
        if (const std::optional<unsigned> unit = hexValue(encoded.substr(at, 4)))
            units.push_back(static_cast<char16_t>(*unit));
    }
    return toUtf8(units);
}

std::string iniForm(std::string_view text, IniPlace place) {
    return needsEncoding(text, place) ? encodedForm(text) : std::string(text);
}

std::string fromIniForm(std::string_view stored, IniPlace place) {
    if (stored.substr(0, encodedMark.size()) == encodedMark) {
        // Only what iniForm() would have written is decoded; the question gets shorter each time it is asked.
        std::string text = decodeText(stored.substr(encodedMark.size()));
        if (encodedForm(text) == stored && needsEncoding(text, place)) return text;
    }
    return std::string(stored);
}

}  // namespace glimmer
