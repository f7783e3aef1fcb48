#include "settings/secrets.h"

// clang-format off
#include <windows.h>
#include <wincrypt.h>
// clang-format on

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "common/text.h"

namespace glimmer {

namespace {

/// Only the program that gives the same words can read what was protected with them.
DATA_BLOB purpose() {
    static char words[] = "Glimmerpad settings";
    return {sizeof(words), reinterpret_cast<BYTE*>(words)};
}

DATA_BLOB blobOf(std::span<uint8_t> bytes) { return {static_cast<DWORD>(bytes.size()), bytes.data()}; }

/// Takes the bytes out of a blob that the system allocated, and leaves none of them behind.
std::vector<uint8_t> taken(DATA_BLOB blob) {
    std::vector<uint8_t> bytes(blob.pbData, blob.pbData + blob.cbData);
    SecureZeroMemory(blob.pbData, blob.cbData);
    LocalFree(blob.pbData);
    return bytes;
}

}  // namespace

Status writeSecret(TCachedMemIniFile& store, std::string_view section, std::string_view key, std::string_view secret) {
    if (secret.empty()) {
        store.removeKey(section, key);
        return {};
    }
    std::vector<uint8_t> clear(secret.begin(), secret.end());
    DATA_BLOB in = blobOf(clear);
    DATA_BLOB entropy = purpose();
    DATA_BLOB out{};
    const bool done =
        CryptProtectData(&in, nullptr, &entropy, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN, &out) != FALSE;
    SecureZeroMemory(clear.data(), clear.size());
    if (!done) return Failure{"The password cannot be protected, so it is not stored."};
    store.writeString(section, key, base64Encode(taken(out)));
    return {};
}

std::string readSecret(const TCachedMemIniFile& store, std::string_view section, std::string_view key) {
    std::optional<std::vector<uint8_t>> blob = base64Decode(store.readString(section, key));
    if (!blob || blob->empty()) return {};
    DATA_BLOB in = blobOf(*blob);
    DATA_BLOB entropy = purpose();
    DATA_BLOB out{};
    if (CryptUnprotectData(&in, nullptr, &entropy, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN, &out) == FALSE)
        return {};
    std::vector<uint8_t> clear = taken(out);
    std::string secret(clear.begin(), clear.end());
    SecureZeroMemory(clear.data(), clear.size());
    return secret;
}

}  // namespace glimmer
