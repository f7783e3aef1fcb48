// The launcher where it does not lie well: among other people's libraries, and without its own.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <filesystem>
#include <string>

#include "support/child_process.h"
#include "support/scratch_folder.h"
#include "support/windows/host_windows.h"
#include "support/windows/hosted_library.h"
#include "support/windows/planted_libraries.h"

namespace glimmer::test {
namespace {

namespace fs = std::filesystem;

constexpr unsigned longest = 20000;  // milliseconds

// Not version.dll, which Wine's user32.dll needs before the launcher has its say.
TEST(Launcher, TakesNoLibraryOfTheSystemFromItsOwnFolder) {
    const PlantedLibraries plants(programFolder() / "glimmerpad.exe",
                                  {L"uxtheme.dll", L"winspool.drv", L"oleacc.dll", L"winmm.dll"});
    fs::copy_file(programFolder() / "glimmerpad.dll", plants.folder() / "glimmerpad.dll");
    ChildProcess program(plants.program(), {"-TERMINATE"});
    EXPECT_EQ(program.wait(longest), 0);
    EXPECT_THAT(plants.loaded(), testing::IsEmpty());
}

/// What the launcher says in its box, which is closed.
std::wstring complaintOf(ChildProcess& program) {
    const auto box = [&program]() -> HWND {
        for (const HWND window : windowsOfProcess(program.id()))
            if (GetDlgItem(window, IDOK) != nullptr || GetDlgItem(window, IDCANCEL) != nullptr) return window;
        return nullptr;
    };
    waitUntil([&box] { return box() != nullptr; }, "the box", longest);
    std::wstring text;
    for (HWND part = GetWindow(box(), GW_CHILD); part != nullptr; part = GetWindow(part, GW_HWNDNEXT))
        text += textOf(part);
    PostMessageW(box(), WM_COMMAND, IDOK, 0);
    EXPECT_EQ(program.wait(longest), 1);
    return text;
}

TEST(Launcher, SaysWhyTheLibraryCannotBeLoaded) {
    const ScratchFolder folder("launcher");
    const fs::path program = folder.path() / "glimmerpad.exe";
    fs::copy_file(programFolder() / "glimmerpad.exe", program);
    {
        // The folder lies in that for temporary files.
        ChildProcess alone(program, {});
        EXPECT_THAT(complaintOf(alone), testing::HasSubstr(L"Extract all files of the zip file"));
    }
    fs::copy_file(program, folder.path() / "glimmerpad.dll");
    fs::resize_file(folder.path() / "glimmerpad.dll", 100);
    ChildProcess broken(program, {});
    std::array<wchar_t, 1000> reason{};
    FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, ERROR_BAD_EXE_FORMAT, 0,
                   reason.data(), static_cast<DWORD>(reason.size()), nullptr);
    const std::wstring told = complaintOf(broken);
    EXPECT_THAT(told, testing::HasSubstr(L"cannot be loaded"));
    EXPECT_THAT(told, testing::HasSubstr(std::wstring(reason.data()).substr(0, 20)));
}

}  // namespace
}  // namespace glimmer::test
