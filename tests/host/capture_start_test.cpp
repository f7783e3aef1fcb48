// Captures that a command line asks for, and what the start answers.

#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <filesystem>
#include <fstream>

#include "support/child_process.h"
#include "support/scratch_folder.h"
#include "support/windows/host_windows.h"
#include "support/windows/hosted_library.h"

namespace glimmer::test {
namespace {

namespace fs = std::filesystem;

constexpr unsigned longest = 60000;  // milliseconds

/// Width and height that a PNG file names.
std::array<int, 2> sizeOfPng(const fs::path& file) {
    std::array<unsigned char, 24> head{};
    std::ifstream(file, std::ios::binary).read(reinterpret_cast<char*>(head.data()), head.size());
    return {head[18] * 256 + head[19], head[22] * 256 + head[23]};
}

/// Closes the overlay, of any process if that is 0, as soon as it is there; whose it was.
DWORD closeOverlay() {
    HWND overlay = nullptr;
    waitUntil([&overlay] { return (overlay = FindWindowW(L"GlimmerpadOverlay", nullptr)) != nullptr; }, "the overlay",
              longest);
    DWORD process = 0;
    GetWindowThreadProcessId(overlay, &process);
    PostMessageW(overlay, WM_CLOSE, 0, 0);
    return process;
}

TEST(CaptureStart, AnswersWithItsExitCodeAloneAndThroughTheInstanceThatRuns) {
    const ScratchFolder folder("capture-start");
    const fs::path program = folder.path() / "glimmerpad.exe";
    for (const char* file : {"glimmerpad.exe", "glimmerpad.dll"})
        fs::copy_file(programFolder() / file, folder.path() / file);
    const fs::path picture = folder.path() / "desktop.png";
    const std::array<int, 2> screen{GetSystemMetrics(SM_CXVIRTUALSCREEN), GetSystemMetrics(SM_CYVIRTUALSCREEN)};
    EXPECT_EQ(ChildProcess(program, {"-CAPTURE", "moon"}).wait(longest), 2);
    const auto takeDesktop = [&] {
        fs::remove(picture);
        EXPECT_EQ(ChildProcess(program, {"-capture", "desktop", "-file", picture}).wait(longest), 0);
        EXPECT_EQ(sizeOfPng(picture), screen);
    };
    takeDesktop();
    {
        ChildProcess alone(program, {"-CAPTURE", "region"});
        EXPECT_EQ(closeOverlay(), alone.id());
        EXPECT_EQ(alone.wait(longest), 3);
    }
    ChildProcess first(program, {"-TRAY"});
    takeDesktop();
    ChildProcess second(program, {"-CAPTURE", "region"});
    EXPECT_EQ(closeOverlay(), first.id());
    EXPECT_EQ(second.wait(longest), 3);
    EXPECT_TRUE(first.running());
    EXPECT_EQ(ChildProcess(program, {"-TERMINATE"}).wait(longest), 0);
    EXPECT_TRUE(first.wait(longest).has_value());
}

}  // namespace
}  // namespace glimmer::test
