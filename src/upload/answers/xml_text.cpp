#include "upload/answers/xml_text.h"

#include <algorithm>
#include <charconv>

#include "common/text.h"

namespace glimmer {

namespace {

constexpr char mark = 0x7F;

/// Ends an attribute's value, a comment, a CDATA section and an instruction; then there is a tag without a name. The
/// blanks are read ahead.
constexpr std::string_view ending = "\n'\"-->]]>?>< <                                ";

std::string fromUtf16(std::string_view bytes, bool bigEndian) {
    std::u16string text;
    text.reserve(bytes.size() / 2);
    for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto first = static_cast<uint8_t>(bytes[i]);
        const auto second = static_cast<uint8_t>(bytes[i + 1]);
        text.push_back(static_cast<char16_t>(bigEndian ? first << 8U | second : second << 8U | first));
    }
    return toUtf8(text);
}

std::string fromLatin1(std::string_view bytes) {
    std::u16string text;
    for (const char byte : bytes) text.push_back(static_cast<uint8_t>(byte));
    return toUtf8(text);
}

/// The declaration with which the text begins; empty when there is none, the whole text when it has no end.
std::string_view declarationOf(std::string_view text) {
    constexpr std::string_view opening = "<?xml";
    // "<?xml-stylesheet ...?>" is none.
    if (!text.starts_with(opening) || text.size() == opening.size() || text[opening.size()] > ' ') return {};
    const size_t end = text.find("?>");
    return end == std::string_view::npos ? text : text.substr(0, end + 2);
}

bool declaresLatin1(std::string_view text) {
    const std::string declaration = lowerAscii(declarationOf(text));
    return declaration.find("\"iso-8859-1\"") != std::string::npos ||
           declaration.find("'iso-8859-1'") != std::string::npos;
}

}  // namespace

std::optional<std::string> asciiXml(std::string_view bytes) {
    std::string text;
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
        text = fromUtf16(bytes.substr(2), bytes[0] == '\xFE');
    } else if (isUtf8(bytes)) {
        text = bytes.substr(bytes.starts_with("\xEF\xBB\xBF") ? 3 : 0);
    } else if (declaresLatin1(bytes)) {
        text = fromLatin1(bytes);
    } else {
        return std::nullopt;
    }
    const std::string_view declaration = declarationOf(text);
    if (!declaration.empty() && !declaration.ends_with("?>")) return std::nullopt;
    std::string_view rest = std::string_view(text).substr(declaration.size());
    rest.remove_prefix(std::min(rest.find_first_not_of(" \t\r\n"), rest.size()));
    std::string ascii;
    ascii.reserve(rest.size() + ending.size());
    for (const char c : rest) {
        const auto byte = static_cast<uint8_t>(c);
        if (byte < 0x7F) {
            ascii.push_back(c);
        } else {
            constexpr char digits[] = "0123456789ABCDEF";
            ascii += {mark, digits[byte >> 4U], digits[byte & 15U]};
        }
    }
    return ascii.append(ending);
}

std::optional<std::string> fromAsciiXml(std::string_view text) {
    std::string original;
    while (!text.empty()) {
        const size_t plain = std::min(text.find(mark), text.size());
        original.append(text.substr(0, plain));
        text.remove_prefix(plain);
        if (text.empty()) break;
        unsigned byte = 0;
        const char* end = text.data() + std::min<size_t>(3, text.size());
        if (text.size() < 3 || std::from_chars(text.data() + 1, end, byte, 16).ptr != end) return std::nullopt;
        original.push_back(static_cast<char>(byte));
        text.remove_prefix(3);
    }
    if (!isUtf8(original)) return std::nullopt;
    return original;
}

}  // namespace glimmer
