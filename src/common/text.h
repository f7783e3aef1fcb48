#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Text is UTF-8 in std::string throughout the core. UTF-16 comes and goes at the borders (host strings, forms,
// picture chunks). An unpaired surrogate is kept as its three-byte form, so that UTF-16 -> UTF-8 -> UTF-16 is exact
// for every input.

namespace glimmer {

std::string toUtf8(std::u16string_view text);
/// Bytes that are not UTF-8 become U+FFFD, one for each.
std::u16string toUtf16(std::string_view text);
/// Whether every byte belongs to a well-formed UTF-8 sequence (unpaired surrogates are not).
bool isUtf8(std::string_view text);

/// Upper case of the letters A to Z only; other bytes stay.
std::string upperAscii(std::string_view text);
std::string lowerAscii(std::string_view text);
bool equalsIgnoringCase(std::string_view a, std::string_view b);  ///< A to Z only

/// Every occurrence of `from` (not empty) replaced, left to right, without looking at what was put in.
std::string replaceAll(std::string_view text, std::string_view from, std::string_view to);
/// The same, `from` found in any case of the letters A to Z.
std::string replaceAllIgnoringCase(std::string_view text, std::string_view from, std::string_view to);
std::string trimmed(std::string_view text, std::string_view blanks = " \t\r\n");
/// At most `count` UTF-16 units, without cutting a pair in two.
std::string firstUnits(std::string_view text, size_t count);

/// Base64 (RFC 2045 alphabet, padded, no line breaks).
std::string base64Encode(std::span<const uint8_t> data);
/// Line breaks and blanks are skipped; nothing on any other foreign character or a wrong length.
std::optional<std::vector<uint8_t>> base64Decode(std::string_view text);

}  // namespace glimmer
