#pragma once

#include <gtest/gtest.h>
#include <wx/msw/wrapwin.h>

#include <string>

#include "support/child_process.h"

namespace glimmer {

/// A mail program registered for this user's system while the object lives.
class MailProgram {
public:
    explicit MailProgram(const std::wstring& library) {
        DWORD size = sizeof before_;
        hadOne_ =
            RegGetValueW(HKEY_LOCAL_MACHINE, clients, nullptr, RRF_RT_REG_SZ, nullptr, before_, &size) == ERROR_SUCCESS;
        const std::wstring path = test::testProgram("").parent_path().wstring() + L"\\" + library + L".dll";
        if (!library.empty()) set(own, L"DLLPath", path);
        set(clients, L"", library.empty() ? L"" : L"Glimmerpad test");
    }
    ~MailProgram() {
        set(clients, L"", hadOne_ ? before_ : L"");
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, own);
    }
    MailProgram(const MailProgram&) = delete;
    MailProgram& operator=(const MailProgram&) = delete;
    MailProgram(MailProgram&&) = delete;
    MailProgram& operator=(MailProgram&&) = delete;

private:
    static constexpr const wchar_t* clients = L"Software\\Clients\\Mail";
    static constexpr const wchar_t* own = L"Software\\Clients\\Mail\\Glimmerpad test";
    static void set(const wchar_t* key, const wchar_t* name, const std::wstring& value) {
        EXPECT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, key, name, REG_SZ, value.c_str(),
                                  static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))),
                  ERROR_SUCCESS);
    }
    wchar_t before_[256] = {};
    bool hadOne_ = false;
};

}  // namespace glimmer
