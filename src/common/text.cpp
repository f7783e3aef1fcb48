#include "common/text.h"

#include <algorithm>
#include <array>

namespace glimmer {

namespace {

constexpr uint32_t replacement = 0xFFFD;

bool isHigh(uint32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLow(uint32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

void appendUtf8(std::string& out, uint32_t code) {
    auto put = [&out](uint32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0U | code >> 6U);
        put(0x80U | (code & 0x3FU));
    } else if (code < 0x10000) {
        put(0xE0U | code >> 12U);
        put(0x80U | (code >> 6U & 0x3FU));
        put(0x80U | (code & 0x3FU));
    } else {
        put(0xF0U | code >> 18U);
        put(0x80U | (code >> 12U & 0x3FU));
        put(0x80U | (code >> 6U & 0x3FU));
        put(0x80U | (code & 0x3FU));
    }
}

/// The code point at `at`, which is moved behind it; nothing, and one byte further, when the bytes are not UTF-8.
std::optional<uint32_t> nextCode(std::string_view text, size_t& at) {
    const auto byte = [&text](size_t i) { return static_cast<uint32_t>(static_cast<unsigned char>(text[i])); };
    const uint32_t first = byte(at);
    if (first < 0x80) {
        ++at;
        return first;
    }
    size_t more = 0;
    uint32_t code = 0;
    uint32_t least = 0;
    if ((first & 0xE0U) == 0xC0U) {
        more = 1;
        code = first & 0x1FU;
        least = 0x80;
    } else if ((first & 0xF0U) == 0xE0U) {
        more = 2;
        code = first & 0x0FU;
        least = 0x800;
    } else if ((first & 0xF8U) == 0xF0U) {
        more = 3;
        code = first & 0x07U;
        least = 0x10000;
    }
    bool good = more > 0 && text.size() - at > more;
    for (size_t i = 1; good && i <= more; ++i) {
        good = (byte(at + i) & 0xC0U) == 0x80U;
        code = code << 6U | (byte(at + i) & 0x3FU);
    }
    if (!good || code < least || code > 0x10FFFF) {
        ++at;
        return std::nullopt;
    }
    at += more + 1;
    return code;
}

char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

template <class Change>
std::string mapped(std::string_view text, Change change) {
    std::string out(text);
    for (char& c : out) c = change(c);
    return out;
}

/// `where` is `text` in the form in which `from` is looked for.
std::string replaced(std::string_view text, std::string_view where, std::string_view from, std::string_view to) {
    std::string out;
    size_t at = 0;
    while (!from.empty()) {
        const size_t found = where.find(from, at);
        if (found == std::string_view::npos) break;
        out.append(text.substr(at, found - at)).append(to);
        at = found + from.size();
    }
    out.append(text.substr(at));
    return out;
}

constexpr std::string_view base64Alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string toUtf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        uint32_t code = text[i];
        if (isHigh(code) && i + 1 < text.size() && isLow(text[i + 1])) {
            code = 0x10000 + ((code - 0xD800) << 10U) + (static_cast<uint32_t>(text[i + 1]) - 0xDC00);
            ++i;
        }
        appendUtf8(out, code);
    }
    return out;
}

std::u16string toUtf16(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    for (size_t at = 0; at < text.size();) {
        uint32_t code = nextCode(text, at).value_or(replacement);
        if (code >= 0x10000) {
            code -= 0x10000;
            out.push_back(static_cast<char16_t>(0xD800 + (code >> 10U)));
            out.push_back(static_cast<char16_t>(0xDC00 + (code & 0x3FFU)));
        } else {
            out.push_back(static_cast<char16_t>(code));
        }
    }
    return out;
}

bool isUtf8(std::string_view text) {
    for (size_t at = 0; at < text.size();) {
        const std::optional<uint32_t> code = nextCode(text, at);
        if (!code || isHigh(*code) || isLow(*code)) return false;
    }
    return true;
}

std::string upperAscii(std::string_view text) { return mapped(text, upper); }
std::string lowerAscii(std::string_view text) { return mapped(text, lower); }

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && upperAscii(a) == upperAscii(b);
}

std::string replaceAll(std::string_view text, std::string_view from, std::string_view to) {
    return replaced(text, text, from, to);
}

std::string replaceAllIgnoringCase(std::string_view text, std::string_view from, std::string_view to) {
    return replaced(text, upperAscii(text), upperAscii(from), to);
}

std::string trimmed(std::string_view text, std::string_view blanks) {
    const size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return std::string(text.substr(first, text.find_last_not_of(blanks) - first + 1));
}

std::string firstUnits(std::string_view text, size_t count) {
    std::u16string units = toUtf16(text);
    if (units.size() <= count) return std::string(text);
    if (count > 0 && isHigh(units[count - 1]) && isLow(units[count])) --count;
    units.resize(count);
    return toUtf8(units);
}

std::string base64Encode(std::span<const uint8_t> data) {
    std::string out;
    out.reserve((data.size() + 2) / 3 * 4);
    for (size_t i = 0; i < data.size(); i += 3) {
        const size_t have = std::min<size_t>(3, data.size() - i);
        uint32_t bits = static_cast<uint32_t>(data[i]) << 16U;
        if (have > 1) bits |= static_cast<uint32_t>(data[i + 1]) << 8U;
        if (have > 2) bits |= data[i + 2];
        for (size_t k = 0; k < 4; ++k) out.push_back(k <= have ? base64Alphabet[bits >> (18U - 6U * k) & 0x3FU] : '=');
    }
    return out;
}

std::optional<std::vector<uint8_t>> base64Decode(std::string_view text) {
    static constexpr std::array<int8_t, 256> values = [] {
        std::array<int8_t, 256> table{};
        table.fill(-1);
        for (size_t i = 0; i < base64Alphabet.size(); ++i)
            table[static_cast<unsigned char>(base64Alphabet[i])] = static_cast<int8_t>(i);
        return table;
    }();
    std::vector<uint8_t> out;
    out.reserve(text.size() / 4 * 3);
    uint32_t bits = 0;
    size_t digits = 0;
    size_t padding = 0;
    for (const char c : text) {
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n') continue;
        if (c == '=') {
            ++padding;
            continue;
        }
        const int8_t value = values[static_cast<unsigned char>(c)];
        if (value < 0 || padding > 0) return std::nullopt;
        bits = bits << 6U | static_cast<uint32_t>(value);
        if (++digits % 4 != 0) continue;
        out.push_back(static_cast<uint8_t>(bits >> 16U));
        out.push_back(static_cast<uint8_t>(bits >> 8U));
        out.push_back(static_cast<uint8_t>(bits));
        bits = 0;
    }
    const size_t rest = digits % 4;
    if (rest == 1 || (padding > 0 && (rest == 0 || rest + padding != 4))) return std::nullopt;
    if (rest == 2) out.push_back(static_cast<uint8_t>(bits >> 4U));
    if (rest == 3) {
        out.push_back(static_cast<uint8_t>(bits >> 10U));
        out.push_back(static_cast<uint8_t>(bits >> 2U));
    }
    return out;
}

}  // namespace glimmer
