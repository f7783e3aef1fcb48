#pragma once

#include <optional>
#include <string>
#include <string_view>

// Readers of XML differ in what they make of encodings, and some cut a character in two, or the whole process short,
// where their input ends. So they get ASCII, which ends in something that is wrong everywhere.

namespace glimmer {

/// An XML text for a reader: without byte order mark, declaration ("<?xml ...?>") and blanks at its start, every byte
/// of a character outside of ASCII, and every byte 7F, as 7F and two hexadecimal digits. Behind it stands what no state
/// of a reader accepts, so that a text that ends too early fails; who has seen the end of the outermost element stops
/// there.
///
/// UTF-16 is known by its mark; UTF-8 is taken for whatever is well-formed UTF-8; other texts have to declare
/// ISO-8859-1. Nothing for all else, and where the declaration does not end.
std::optional<std::string> asciiXml(std::string_view bytes);

/// The UTF-8 text of what a reader found in asciiXml(); nothing when it is none.
std::optional<std::string> fromAsciiXml(std::string_view text);

}  // namespace glimmer
