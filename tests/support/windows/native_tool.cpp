// Wine starts a program of the system below when it is named as a file of drive Z. It gives no handle to wait for, so
// the script leaves a file when it is done.

#include "support/windows/native_tool.h"

#include <gmock/gmock.h>
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>

#include "common/files.h"
#include "common/wide_text.h"
#include "support/scratch_folder.h"
#include "support/windows/test_account.h"

namespace glimmer::test {

namespace {

constexpr std::chrono::seconds patience{120};

using UnixName = char*(CDECL*)(const wchar_t*);

UnixName unixName() {
    return reinterpret_cast<UnixName>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
}

std::string unixPath(const std::filesystem::path& path) {
    const UnixName name = unixName();
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

/// Of the running test: what is to be judged elsewhere.
std::filesystem::path exchangeFolder() {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string(test.test_suite_name()) + "." + test.name();
    std::replace(name.begin(), name.end(), '/', '-');  // of a test with parameters
    std::filesystem::path folder = resultsFolder() / "exchange" / name;
    std::filesystem::create_directories(folder);
    return folder;
}

/// For `./dev exchange`: the shell's command line, and the texts that its output must have, one a line.
void keepForLater(const std::string& command, const std::vector<std::string>& says) {
    const std::filesystem::path folder = exchangeFolder();
    int number = 1;
    while (std::filesystem::exists(folder / (std::to_string(number) + ".command"))) ++number;
    std::string all;
    for (const std::string& text : says) all += text + "\n";
    for (const auto& [kind, text] : {std::pair(".command", command + "\n"), std::pair(".says", all)})
        EXPECT_TRUE(writeFile(folder / (std::to_string(number) + kind),
                              {reinterpret_cast<const uint8_t*>(text.data()), text.size()})
                        .ok());
}

}  // namespace

bool toolsAreHere() {
    // The variable lets the other way be tried here.
    return unixName() != nullptr && GetEnvironmentVariableW(L"GLIMMERPAD_EXCHANGE", nullptr, 0) == 0;
}

std::string quotedForTool(const std::filesystem::path& path) {
    std::string text = "'";
    if (toolsAreHere()) return text.append(unixPath(path)).append("'");
    // The command will run in the folder that it is copied to.
    using std::filesystem::copy_options;
    std::filesystem::copy(path, exchangeFolder() / path.filename(),
                          copy_options::recursive | copy_options::overwrite_existing);
    return text.append(utf8FromPath(path.filename())).append("'");
}

void expectTool(const std::string& command, const std::vector<std::string>& says) {
    if (!toolsAreHere()) {
        keepForLater(command, says);
        return;
    }
    const ToolResult tool = runTool(command);
    EXPECT_EQ(tool.code, 0) << command << ": " << tool.output;
    for (const std::string& text : says) EXPECT_THAT(tool.output, testing::HasSubstr(text)) << command;
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
