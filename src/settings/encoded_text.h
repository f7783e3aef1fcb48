#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace glimmer {

/// Text as four lower-case hexadecimal digits for each UTF-16 unit, nothing between them: safe inside any INI value
/// and section name. Empty text gives empty text.
std::string encodeText(std::string_view text);
/// What encodeText made, digits of either case. A group of four that is not hexadecimal and an incomplete last group
/// are left out, so a damaged text gives what can be read of it.
std::string decodeText(std::string_view encoded);

/// The forms in which any text survives the INI syntax. Ordinary texts stay as they are; one that would break the
/// syntax (line ends, outer blanks, broken UTF-8, "]" in a section's name, "=" or a leading "[", ";" or "#" in
/// a key) becomes "hex:" and its encoded text, and so does one that could be mistaken for that.
enum class IniPlace : uint8_t { Section, Key, Value };
std::string iniForm(std::string_view text, IniPlace place);
/// The text whose form `stored` is. Every well-formed text that a file can hold at that place is the form of exactly
/// one text, so a name that was read finds its entry again.
std::string fromIniForm(std::string_view stored, IniPlace place);

}  // namespace glimmer
