// run_tests.exe [--yes] [--quiet] [NAME...]: runs the programs of tests\order.txt, or those named, and packs what they
// left into results.zip beside run-tests.cmd. --yes: without asking. --quiet: shows no folder at the end.

#include <wx/app.h>
#include <wx/image.h>
#include <wx/init.h>

#include <algorithm>
#include <cstdio>
#include <fstream>

#include "runner.h"
#include "support/windows/kept_clipboard.h"
#include "support/windows/test_account.h"
// After the toolkit's headers, which do not stand its names.
#include <shellapi.h>

namespace {

namespace fs = std::filesystem;
using namespace glimmer::runner;

/// Windows' sandbox has one user, who is thrown away with it.
bool isSandbox() {
    wchar_t name[64] = L"";
    return GetEnvironmentVariableW(L"USERNAME", name, 64) != 0 && std::wstring(name) == L"WDAGUtilityAccount";
}

bool mayBegin() {
    std::printf(
        "The tests open and close windows, use the mouse, the keyboard and the clipboard for about ten minutes, and\n"
        "must not be disturbed. They write to this folder only. Please end Glimmerpad and save your work first.\n"
        "Begin? (y/n) ");
    std::fflush(stdout);
    const int answer = std::getchar();
    return answer == 'y' || answer == 'Y';
}

/// Folders of this package instead of the user's, for every program that is started from here.
void useOwnFolders(const fs::path& results) {
    for (const char* name : {"temp", "shots"}) fs::create_directories(results / name);
    for (const wchar_t* name : {L"TEMP", L"TMP"}) SetEnvironmentVariableW(name, (results / "temp").c_str());
    if (isSandbox()) SetEnvironmentVariableW(L"GLIMMERPAD_TEST_MACHINE", L"1");
}

int runAll(const fs::path& folder, const std::vector<std::wstring>& names) {
    const fs::path results = folder / "results";
    const glimmer::test::KeptClipboard clipboard;
    std::vector<Result> all;
    for (const Program& program : readOrder(folder / "tests" / "order.txt", names)) {
        std::printf("%ls ...\n", program.name.c_str());
        std::fflush(stdout);
        all.push_back(run(program, folder));
    }
    const std::string text = table(all);
    std::printf("\n%s", text.c_str());
    std::ofstream(results / "summary.txt", std::ios::binary) << text;
    const bool good = !all.empty() && std::all_of(all.begin(), all.end(), [](const Result& result) {
        return result.outcome == Outcome::Pass || result.outcome == Outcome::Skip;
    });
    return good ? 0 : 1;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    bool mayAsk = !isSandbox();
    bool quiet = false;
    std::vector<std::wstring> names;
    for (int at = 1; at < count; ++at) {
        const std::wstring argument = arguments[at];
        if (argument == L"--yes")
            mayAsk = false;
        else if (argument == L"--quiet")
            quiet = true;
        else
            names.push_back(argument);
    }
    const wxInitializer toolkit;
    if (!toolkit.IsOk()) return 2;
    wxImage::AddHandler(new wxPNGHandler);  // owned by the toolkit
    if (mayAsk && !mayBegin()) return 2;

    const fs::path folder = glimmer::test::buildFolder();
    unblock(folder);
    std::error_code ignored;
    fs::remove_all(folder / "results", ignored);
    useOwnFolders(folder / "results");
    const int code = runAll(folder, names);
    const fs::path archive = folder / "results.zip";
    if (!zipFolder(folder / "results", archive)) {
        std::printf("%ls cannot be written.\n", archive.c_str());
        return 2;
    }
    std::printf("\nEverything is in %ls\n", archive.c_str());
    if (!quiet)
        ShellExecuteW(nullptr, L"open", L"explorer.exe", (L"/select,\"" + archive.wstring() + L"\"").c_str(), nullptr,
                      SW_SHOWNORMAL);
    return code;
}
