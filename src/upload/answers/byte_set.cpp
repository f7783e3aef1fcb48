#include "upload/answers/byte_set.h"

namespace glimmer {

namespace {

bool isLetter(uint8_t byte) { return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z'); }
bool isDigit(uint8_t byte) { return byte >= '0' && byte <= '9'; }
bool isSpace(uint8_t byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }
bool isControl(uint8_t byte) { return byte < 0x20 || byte == 0x7F; }
bool isPunctuation(uint8_t byte) { return byte > 0x20 && byte < 0x7F && !isWordByte(byte); }
bool isHexDigit(uint8_t byte) { return isDigit(byte) || (byte >= 'a' && byte <= 'f') || (byte >= 'A' && byte <= 'F'); }

// Not those of <cctype>, which follow the locale of the process, and that is the host's.
constexpr struct {
    char letter;
    bool (*contains)(uint8_t byte);
} classes[] = {
    {'a', isLetter},   {'w', isWordByte}, {'s', isSpace},       {'d', isDigit},
    {'x', isHexDigit}, {'c', isControl},  {'p', isPunctuation},
};

}  // namespace

bool isWordByte(uint8_t byte) { return isLetter(byte) || isDigit(byte); }

std::optional<ByteSet> classNamed(char letter) {
    const bool all = letter >= 'A' && letter <= 'Z';
    for (const auto& entry : classes) {
        if (entry.letter != (all ? letter - 'A' + 'a' : letter)) continue;
        ByteSet set;
        for (unsigned byte = 0; byte < set.size(); ++byte) set[byte] = entry.contains(static_cast<uint8_t>(byte));
        return all ? ~set : set;
    }
    return std::nullopt;
}

}  // namespace glimmer
