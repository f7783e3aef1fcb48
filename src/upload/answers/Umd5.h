#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace glimmer {

/// MD5 (RFC 1321) of bytes that come in pieces. It is what services of its time sign with; it protects nothing.
class Md5 {
public:
    void add(std::string_view bytes);
    /// Of all that was added. Ends the sum: nothing is added afterwards.
    std::array<uint8_t, 16> digest();

private:
    std::array<uint32_t, 4> state_{0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};
    std::array<char, 64> block_{};  ///< the first `length_ % 64` bytes of it are filled
    uint64_t length_ = 0;           ///< bytes
};

/// The digest as 32 lower-case hexadecimal digits.
std::string md5Hex(std::string_view bytes);

}  // namespace glimmer
