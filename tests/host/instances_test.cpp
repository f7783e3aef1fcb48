// The standalone program as real processes: one instance, more of them, what they hand over, how they end.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
// After windows.h, which it needs.
#include <aclapi.h>
#include <commctrl.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/child_process.h"
#include "support/not_copied.h"
#include "support/scratch_folder.h"
#include "support/windows/host_windows.h"
#include "support/windows/hosted_library.h"

namespace glimmer::test {
namespace {

namespace fs = std::filesystem;

constexpr unsigned longest = 20000;  // milliseconds; for a start or an end

class Instances : public testing::Test {
protected:
    Instances() {
        for (const char* file : {"glimmerpad.exe", "glimmerpad.dll"})
            fs::copy_file(programFolder() / file, folder() / file);
        for (const char* name : {"plain.bmp", "a picture.bmp", "second.bmp"}) writePicture(folder() / name);
    }
    ~Instances() override {
        // In the order of their starts; what a test left running is killed.
        for (const auto& process : started_) process->kill();
    }

    [[nodiscard]] const fs::path& folder() const { return scratch_.path(); }
    /// A bitmap file: a PNG file without annotations is opened with a notice.
    static void writePicture(const fs::path& path) {
        constexpr LONG side = 16;
        BITMAPINFOHEADER info{};
        info.biSize = sizeof info;
        info.biWidth = side;
        info.biHeight = side;
        info.biPlanes = 1;
        info.biBitCount = 32;
        const std::vector<uint32_t> pixels(side * side, 0x00336699);
        constexpr DWORD bytes = DWORD{side} * DWORD{side} * 4;
        BITMAPFILEHEADER header{};
        header.bfType = 0x4D42;
        header.bfOffBits = sizeof header + sizeof info;
        header.bfSize = header.bfOffBits + bytes;
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(&header), sizeof header)
            .write(reinterpret_cast<const char*>(&info), sizeof info)
            .write(reinterpret_cast<const char*>(pixels.data()), std::streamsize{bytes});
    }

    /// Starts the program with this after its name on the command line.
    ChildProcess& start(const std::wstring& arguments = {}, const fs::path& currentFolder = {}) {
        const std::wstring line = L"\"" + (folder() / "glimmerpad.exe").wstring() + L"\" " + arguments;
        started_.push_back(std::make_unique<ChildProcess>(line, currentFolder.empty() ? folder() : currentFolder));
        return *started_.back();
    }
    /// Its main window; null when it has none on the screen.
    static HWND windowOf(const ChildProcess& process) {
        for (const HWND window : windowsOfProcess(process.id())) {
            const std::wstring title = textOf(window);
            if (title == L"Glimmerpad" || title.ends_with(L" - Glimmerpad")) return window;
        }
        return nullptr;
    }
    static std::wstring titleOf(const ChildProcess& process) {
        const HWND window = windowOf(process);
        return window != nullptr ? textOf(window) : L"";
    }
    static bool showsWindow(const ChildProcess& process) {
        return waitUntil([&process] { return windowOf(process) != nullptr; }, "the main window", longest);
    }
    static bool shows(const ChildProcess& process, const std::wstring& name) {
        const bool shown = waitUntil([&] { return titleOf(process).starts_with(name); }, "the opened picture", longest);
        if (!shown)
            for (const HWND window : windowsOfProcess(process.id()))
                ADD_FAILURE() << testing::PrintToString(textOf(window));
        return shown;
    }
    /// Its message box, once it is up.
    static HWND awaitedBox(const ChildProcess& process) {
        HWND box = nullptr;
        const auto shown = [&] {
            for (const HWND window : windowsOfProcess(process.id()))
                if (classOf(window) == L"#32770") box = window;
            return box != nullptr;
        };
        waitUntil(shown, "the message", longest);
        return box;
    }
    /// Starts it again and expects it to end by itself at once.
    void startAndEnd(const std::wstring& arguments = {}, const fs::path& currentFolder = {}) {
        EXPECT_EQ(start(arguments, currentFolder).wait(longest), 0) << testing::PrintToString(arguments);
    }
    /// Five at once, as Explorer opens five selected files.
    std::vector<ChildProcess*> startFive() {
        std::vector<ChildProcess*> five;
        for (int i = 0; i < 5; ++i) {
            const fs::path picture = folder() / ("five" + std::to_string(i) + ".bmp");
            writePicture(picture);
            five.push_back(&start(L"\"" + picture.wstring() + L"\""));
        }
        return five;
    }
    /// Captures in the list of its main window.
    static LRESULT capturesOf(const ChildProcess& process) {
        const HWND window = windowOf(process);
        if (window == nullptr) return 0;
        for (const HWND child : childrenOf(window))
            if (classOf(child) == L"SysListView32") return SendMessageW(child, LVM_GETITEMCOUNT, 0, 0);
        return 0;
    }
    /// One of them has all five captures, and the others have ended.
    static bool oneHasFive(const std::vector<ChildProcess*>& processes) {
        size_t running = 0;
        LRESULT captures = 0;
        for (const ChildProcess* process : processes) {
            running += process->running() ? 1 : 0;
            captures += process->running() ? capturesOf(*process) : 0;
        }
        return running == 1 && captures == 5;
    }
    void expectEnd(ChildProcess& process, const char* what) { EXPECT_EQ(process.wait(longest), 0) << what; }

private:
    ScratchFolder scratch_{"instances"};  // first made, last gone
    std::vector<std::unique_ptr<ChildProcess>> started_;
};

TEST_F(Instances, ASecondStartBringsTheFirstBack) {
    ChildProcess& first = start();
    ASSERT_TRUE(showsWindow(first));
    const HWND window = windowOf(first);
    // The last step of its start may still bring it up.
    const auto minimised = [window] {
        return ShowWindowAsync(window, SW_MINIMIZE) != FALSE && IsIconic(window) != FALSE;
    };
    ASSERT_TRUE(waitUntil(minimised, "the minimised window"));
    startAndEnd();
    EXPECT_TRUE(waitUntil([window] { return IsIconic(window) == FALSE; }, "the restored window"));
    EXPECT_TRUE(first.running());
    EXPECT_EQ(titleOf(first), L"Glimmerpad") << "nothing was handed over";
    startAndEnd(L"-terminate");
    expectEnd(first, "the first instance");
    // The next one is a first one again.
    ChildProcess& next = start();
    EXPECT_TRUE(showsWindow(next));
    startAndEnd(L"-TERMINATE");
    expectEnd(next, "the next instance");
}

TEST_F(Instances, AFileIsHandedOver) {
    ChildProcess& first = start();
    ASSERT_TRUE(showsWindow(first));
    startAndEnd(L"\"" + (folder() / "a picture.bmp").wstring() + L"\"");
    EXPECT_TRUE(shows(first, L"a picture"));

    // A name alone is one of the program's folder, whatever folder is the current one.
    const ScratchFolder elsewhere("elsewhere");
    startAndEnd(L"plain.bmp", elsewhere.path());
    EXPECT_TRUE(shows(first, L"plain"));
    startAndEnd(L"\"second.bmp\" \"and more\" -x", elsewhere.path());
    EXPECT_TRUE(shows(first, L"second"));

    // Without a file the one before is not opened again.
    startAndEnd();
    EXPECT_TRUE(shows(first, L"second"));

    // What cannot be opened is said by the first, which stays as it is.
    startAndEnd(L"missing.bmp", elsewhere.path());
    EXPECT_NE(awaitedBox(first), nullptr);
    startAndEnd(L"-TERMINATE");
    expectEnd(first, "an instance with a message on the screen");
}

TEST_F(Instances, FiveFilesAtOnceComeIntoOneWindow) {
    // With none running.
    std::vector<ChildProcess*> five = startFive();
    ASSERT_TRUE(waitUntil([&] { return oneHasFive(five); }, "five captures in one of five processes", 3 * longest));
    startAndEnd(L"-TERMINATE");
    for (ChildProcess* process : five) expectEnd(*process, "one of five");

    // With one running.
    ChildProcess& first = start();
    ASSERT_TRUE(showsWindow(first));
    five = startFive();
    five.push_back(&first);
    ASSERT_TRUE(waitUntil([&] { return oneHasFive(five); }, "five captures in the first", 3 * longest));
    EXPECT_EQ(capturesOf(first), 5);
    startAndEnd(L"-TERMINATE");
    expectEnd(first, "the first");
}

/// Owns the mutex of an instance that hears nothing, until it is told to let go.
class DeafInstance : NotCopied {
public:
    explicit DeafInstance(SECURITY_ATTRIBUTES* rights = nullptr)
        : mutex_(CreateMutexW(rights, TRUE, L"ZK2_APPLICATION_STARTED")) {}
    ~DeafInstance() { end(); }
    void end() {
        if (mutex_ == nullptr) return;
        ReleaseMutex(mutex_);
        CloseHandle(std::exchange(mutex_, nullptr));
    }

private:
    HANDLE mutex_;
};

/// Counts the wishes of other starts that arrive at this process.
class Wishes : NotCopied {
public:
    Wishes() { SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(received)); }
    ~Wishes() { DestroyWindow(window_); }
    static inline int count = 0;

private:
    static LRESULT CALLBACK received(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        static const UINT restore = RegisterWindowMessageW(L"ZK2_APPLICATION_RESTORE");
        if (message == restore) ++count;
        return DefWindowProcW(window, message, wParam, lParam);
    }
    HWND window_ = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
};

TEST_F(Instances, WhatComesWhileOneEndsGoesToTheNext) {
    const Wishes wishes;
    DeafInstance ending;
    const std::vector<ChildProcess*> five = startFive();
    ASSERT_TRUE(pumpUntil([] { return Wishes::count > 0; }, "a start that hands over", longest));
    ending.end();
    ASSERT_TRUE(waitUntil([&] { return oneHasFive(five); }, "five captures in one of five processes", 3 * longest));
    startAndEnd(L"-TERMINATE");
    for (ChildProcess* process : five) expectEnd(*process, "one of five");
}

TEST_F(Instances, OneThatIsOutOfReachIsToldOf) {
    // An empty list of rights: as that of a program that runs as administrator for one that does not.
    ACL nobody{};
    ASSERT_TRUE(InitializeAcl(&nobody, sizeof nobody, ACL_REVISION));
    SECURITY_DESCRIPTOR descriptor{};
    InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
    SetSecurityDescriptorDacl(&descriptor, TRUE, &nobody, FALSE);
    SECURITY_ATTRIBUTES rights{sizeof rights, &descriptor, FALSE};
    const DeafInstance administrators(&rights);
    ChildProcess& process = start();
    const HWND box = awaitedBox(process);
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(windowOf(process), nullptr) << "no second icon, no second set of hot keys";
    PostMessageW(box, WM_CLOSE, 0, 0);
    expectEnd(process, "the second");
}

TEST_F(Instances, TerminateDoesNotWaitForProgramsThatHang) {
    // This thread looks for no message from here on.
    const Wishes hangs;
    startAndEnd(L"-TERMINATE");
}

TEST_F(Instances, InTheNotificationAreaItHasNoWindowUntilItIsWanted) {
    ChildProcess& first = start(L"-tray");
    HWND receiver = nullptr;
    const auto up = [&] {
        receiver = FindWindowW(nullptr, L"Glimmerpad");
        return receiver != nullptr && GetPropW(receiver, L"ZK2_APPLICATION_RECEIVER") != nullptr;
    };
    ASSERT_TRUE(waitUntil(up, "the first", longest));
    startAndEnd(L"-TRAY");  // the second sign-in wants nothing
    EXPECT_EQ(windowOf(first), nullptr);
    // A relative name with a folder is one of the folder in which it was typed.
    const ScratchFolder elsewhere("elsewhere");
    fs::create_directories(elsewhere.path() / "sub");
    writePicture(elsewhere.path() / "sub" / "typed.bmp");
    startAndEnd(L"sub\\typed.bmp", elsewhere.path());
    EXPECT_TRUE(shows(first, L"typed"));
    startAndEnd(L"-TERMINATE");
    expectEnd(first, "the first");
}

TEST_F(Instances, PutAwayForTheFirstTimeItTellsWhereItIs) {
    ChildProcess& first = start();
    ASSERT_TRUE(showsWindow(first));
    PostMessageW(windowOf(first), WM_CLOSE, 0, 0);
    const auto told = [&] {
        std::ifstream file(folder() / "zk_settings.ini");
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        return windowOf(first) == nullptr && text.find("chkTellOfTrayIcon=") != std::string::npos;
    };
    EXPECT_TRUE(waitUntil(told, "the balloon's note", longest));
    startAndEnd(L"-TERMINATE");
    expectEnd(first, "the first");
}

TEST_F(Instances, MultiCountsInTheFirstTwoPlaces) {
    ChildProcess& first = start();
    ASSERT_TRUE(showsWindow(first));
    ChildProcess& second = start(L"-multi");
    EXPECT_TRUE(showsWindow(second));
    const std::wstring file = L"\"" + (folder() / "plain.bmp").wstring() + L"\"";
    ChildProcess& third = start(file + L" -MULTI");
    EXPECT_TRUE(shows(third, L"plain"));
    ChildProcess& fourth = start(L"-Multi " + file);
    EXPECT_TRUE(shows(fourth, L"plain"));
    EXPECT_EQ(titleOf(first), L"Glimmerpad");

    // In the third place it is nothing, and any of the four takes the file.
    startAndEnd(L"\"second.bmp\" x -MULTI");
    const auto anyShows = [&](const wchar_t* name) {
        for (const ChildProcess* process : {&first, &second, &third, &fourth})
            if (titleOf(*process).starts_with(name)) return true;
        return false;
    };
    EXPECT_TRUE(waitUntil([&] { return anyShows(L"second"); }, "the picture of a start that was none", longest));
    startAndEnd(L"-Terminate");
    for (ChildProcess* process : {&first, &second, &third, &fourth}) expectEnd(*process, "one of four instances");
}

TEST_F(Instances, TerminateIsTheFirstArgumentOrNone) {
    startAndEnd(L"-TERMINATE");  // nobody there
    ChildProcess& first = start();
    ASSERT_TRUE(showsWindow(first));
    startAndEnd(L"\"" + (folder() / "plain.bmp").wstring() + L"\" -TERMINATE");
    EXPECT_TRUE(shows(first, L"plain"));
    startAndEnd(L"\"-tErMiNaTe\" x");
    expectEnd(first, "an instance");
}

TEST_F(Instances, TerminateCancelsWhatIsOpen) {
    struct Dialog {
        const char* what;
        void (*open)(HWND window);
    };
    const Dialog dialogs[] = {
        {"the open dialog", [](HWND) { pressKey('O', {VK_CONTROL}); }},
        {"the save dialog", [](HWND) { pressKey(VK_F2, {VK_CONTROL}); }},
        {"the question before leaving", [](HWND window) { PostMessageW(window, WM_CLOSE, 0, 0); }},
        {"the window's menu", [](HWND window) { PostMessageW(window, WM_SYSCOMMAND, SC_KEYMENU, ' '); }},
    };
    for (const Dialog& dialog : dialogs) {
        ChildProcess& process = start(L"\"" + (folder() / "plain.bmp").wstring() + L"\"");
        ASSERT_TRUE(shows(process, L"plain"));
        const HWND window = windowOf(process);
        ASSERT_TRUE(bringForward(window));
        const size_t before = windowsOfProcess(process.id()).size();
        dialog.open(window);
        EXPECT_TRUE(waitUntil([&] { return windowsOfProcess(process.id()).size() > before; }, dialog.what, longest));
        startAndEnd(L"-TERMINATE");
        expectEnd(process, dialog.what);
    }
}

}  // namespace
}  // namespace glimmer::test
