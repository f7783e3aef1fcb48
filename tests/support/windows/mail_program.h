#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>

#include "support/child_process.h"
#include "support/not_copied.h"
#include "support/windows/test_account.h"

#define NEEDS_MAIL_PROGRAM() \
    if (!glimmer::test::isTestMachine()) GTEST_SKIP() << "a mail program would be registered for all users"

namespace glimmer::test {

/// A mail program registered for this user's system while the object lives: one of the recorders built of
/// mail_recorder.cpp, or with an empty name none at all. That is written for all users, so it does nothing but on a
/// test machine; a test that needs it begins with NEEDS_MAIL_PROGRAM().
class MailProgram : NotCopied {
public:
    /// It writes what it is handed into the folder and answers that number.
    MailProgram(const std::wstring& library, const std::filesystem::path& folder, int answer = 0) {
        if (!isTestMachine()) return;
        SetEnvironmentVariableW(L"GLIMMER_MAIL_RECORD", folder.c_str());
        SetEnvironmentVariableW(L"GLIMMER_MAIL_ANSWER", std::to_wstring(answer).c_str());
        DWORD size = sizeof before_;
        hadOne_ =
            RegGetValueW(HKEY_LOCAL_MACHINE, clients, nullptr, RRF_RT_REG_SZ, nullptr, before_, &size) == ERROR_SUCCESS;
        const std::wstring path = testProgram("").parent_path().wstring() + L"\\" + library + L".dll";
        if (!library.empty()) set(own, L"DLLPath", path);
        set(clients, L"", library.empty() ? L"" : L"Glimmerpad test");
    }
    ~MailProgram() {
        if (!isTestMachine()) return;
        set(clients, L"", hadOne_ ? before_ : L"");
        // The program keeps it, and it keeps the mail program that it found first.
        while (const HMODULE module = GetModuleHandleW(L"mapi32.dll"))
            if (FreeLibrary(module) == FALSE) break;
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, own);
    }

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

}  // namespace glimmer::test
