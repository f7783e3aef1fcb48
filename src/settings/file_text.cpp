#include "settings/file_text.h"

#include <algorithm>
#include <array>

#include "common/text.h"

namespace glimmer {

namespace {

/// Bytes 0x80 to 0x9F of Windows-1252; the five unassigned ones stay what they are.
constexpr std::array<char16_t, 32> windows1252 = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                  0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                                  0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                  0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

std::string fromWindows1252(std::string_view bytes) {
    std::u16string units;
    units.reserve(bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        units.push_back(byte >= 0x80 && byte <= 0x9F ? windows1252[byte - 0x80U] : byte);
    }
    return toUtf8(units);
}

AnsiDecoder ansiDecoder = fromWindows1252;

/// Length of the well-formed multi-byte sequence at `at`; 0 when there is none.
size_t sequenceLength(std::string_view text, size_t at) {
    for (const size_t length : {size_t{2}, size_t{3}, size_t{4}})
        if (text.size() - at >= length && isUtf8(text.substr(at, length))) return length;
    return 0;
}

bool mostlyUtf8(std::string_view text) {
    size_t sequences = 0;
    size_t strayRuns = 0;
    bool inRun = false;
    for (size_t at = 0; at < text.size();) {
        const bool ascii = static_cast<unsigned char>(text[at]) < 0x80;
        const size_t length = ascii ? 1 : sequenceLength(text, at);
        const bool stray = length == 0;
        if (!ascii && !stray) ++sequences;
        if (stray && !inRun) ++strayRuns;
        inRun = stray;
        at += stray ? 1 : length;
    }
    return sequences > 0 && sequences >= strayRuns;
}

/// What is no character becomes U+FFFD, so that the text can be written as UTF-8 again.
std::string wellFormed(std::string_view text) {
    std::u16string units = toUtf16(text);
    for (size_t i = 0; i < units.size(); ++i) {
        const bool high = (units[i] & 0xFC00U) == 0xD800U;
        if (high && i + 1 < units.size() && (units[i + 1] & 0xFC00U) == 0xDC00U) {
            ++i;
        } else if ((units[i] & 0xF800U) == 0xD800U) {
            units[i] = 0xFFFD;
        }
    }
    return toUtf8(units);
}

std::string fromUtf16(std::string_view bytes, bool bigEndian) {
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto first = static_cast<unsigned char>(bytes[i]);
        const auto second = static_cast<unsigned char>(bytes[i + 1]);
        units.push_back(static_cast<char16_t>(bigEndian ? first << 8U | second : second << 8U | first));
    }
    return toUtf8(units);
}

}  // namespace

void setAnsiDecoder(AnsiDecoder decoder) { ansiDecoder = decoder != nullptr ? decoder : fromWindows1252; }

std::string textFromFileBytes(std::span<const uint8_t> bytes) {
    const std::string_view all(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    std::string text;
    if (all.substr(0, 2) == "\xFF\xFE") {
        text = fromUtf16(all.substr(2), false);
    } else if (all.substr(0, 2) == "\xFE\xFF") {
        text = fromUtf16(all.substr(2), true);
    } else if (all.substr(0, 3) == "\xEF\xBB\xBF") {
        text = all.substr(3);
    } else if (isUtf8(all) || mostlyUtf8(all)) {
        text = all;
    } else {
        text = ansiDecoder(all);
    }
    std::replace(text.begin(), text.end(), '\0', '\n');
    return isUtf8(text) ? text : wellFormed(text);
}

}  // namespace glimmer
