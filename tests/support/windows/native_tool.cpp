// Wine starts a program of the system below when it is named as a file of drive Z. It gives no handle to wait for, so
// the script leaves a file when it is done.

#include "support/windows/native_tool.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>
#include <cstdlib>

#include "common/files.h"
#include "common/wide_text.h"
#include "support/scratch_folder.h"

namespace glimmer::test {

namespace {

constexpr std::chrono::seconds patience{120};

std::string unixPath(const std::filesystem::path& path) {
    using UnixName = char*(CDECL*)(const wchar_t*);
    const auto name = reinterpret_cast<UnixName>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    char* text = name != nullptr ? name(std::filesystem::absolute(path).c_str()) : nullptr;
    if (text == nullptr) {
        ADD_FAILURE() << "no tool can read " << utf8FromPath(path);
        return {};
    }
    std::string result = text;
    HeapFree(GetProcessHeap(), 0, text);
    return result;
}

std::string readAll(const std::filesystem::path& path) {
    const auto bytes = readFile(path, 1U << 24U);
    return bytes ? std::string(bytes->begin(), bytes->end()) : std::string();
}

}  // namespace

std::string quotedForTool(const std::filesystem::path& path) {
    std::string text = "'";
    return text.append(unixPath(path)).append("'");
}

ToolResult runTool(const std::string& command) {
    const ScratchFolder folder("tool");
    const std::filesystem::path script = folder.path() / "script";
    const std::filesystem::path output = folder.path() / "output";
    const std::filesystem::path code = folder.path() / "code";
    const std::string text = "{ " + command + "\n} > " + quotedForTool(output) + " 2>&1\necho $? > " +
                             quotedForTool(code) + ".part\nmv " + quotedForTool(code) + ".part " + quotedForTool(code) +
                             "\n";
    if (!writeFile(script, {reinterpret_cast<const uint8_t*>(text.data()), text.size()})) return {};

    std::wstring line = L"sh \"";
    line.append(toWide(unixPath(script))).append(L"\"");
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION made = {};
    if (CreateProcessW(L"Z:\\bin\\sh", line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &made) ==
        FALSE) {
        ADD_FAILURE() << "the shell does not start: " << GetLastError();
        return {};
    }
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!std::filesystem::exists(code)) {
        if (std::chrono::steady_clock::now() > end) {
            ADD_FAILURE() << command << " did not end";
            return {};
        }
        Sleep(10);
    }
    return {std::stoi(readAll(code)), readAll(output)};
}

}  // namespace glimmer::test
