#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include "support/not_copied.h"

namespace glimmer::test {

/// While it lives, the user's part of the registry is an empty one for this process.
class OwnRegistry : NotCopied {
public:
    OwnRegistry() {
        RegDeleteTreeW(HKEY_CURRENT_USER, name);
        EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, name, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_, nullptr),
                  ERROR_SUCCESS);
        EXPECT_EQ(RegOverridePredefKey(HKEY_CURRENT_USER, key_), ERROR_SUCCESS);
    }
    ~OwnRegistry() {
        RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        RegCloseKey(key_);
        RegDeleteTreeW(HKEY_CURRENT_USER, name);
    }

private:
    static constexpr const wchar_t* name = L"Software\\Glimmerpad tests";
    HKEY key_ = nullptr;
};

}  // namespace glimmer::test
