#pragma once

#include <windows.h>
// After windows.h, which it needs.
#include <wincrypt.h>

#include <cstdint>
#include <string>
#include <vector>

// The system's own base64, to check ours.

namespace glimmer::test {

inline std::string base64Of(const std::vector<uint8_t>& bytes) {
    constexpr DWORD form = CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF;
    DWORD length = 0;
    CryptBinaryToStringA(bytes.data(), static_cast<DWORD>(bytes.size()), form, nullptr, &length);
    std::string text(length, '\0');
    CryptBinaryToStringA(bytes.data(), static_cast<DWORD>(bytes.size()), form, text.data(), &length);
    text.resize(length);
    return text;
}

inline std::vector<uint8_t> fromBase64(const std::string& text) {
    DWORD length = 0;
    const auto count = static_cast<DWORD>(text.size());
    if (CryptStringToBinaryA(text.data(), count, CRYPT_STRING_BASE64, nullptr, &length, nullptr, nullptr) == FALSE)
        return {};
    std::vector<uint8_t> bytes(length);
    CryptStringToBinaryA(text.data(), count, CRYPT_STRING_BASE64, bytes.data(), &length, nullptr, nullptr);
    bytes.resize(length);
    return bytes;
}

}  // namespace glimmer::test
