// Every command of hostExecute(): its answer, what the user sees of it, what the host is asked for.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/windows/host_fixture.h"
#include "support/windows/kept_clipboard.h"

namespace glimmer::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class Commands : public HostTest {
protected:
    /// What a command did: its answer and what was seen of it.
    struct Outcome {
        int32_t answer;
        std::vector<std::wstring> dialogs;
        std::vector<std::wstring> notices;
    };
    Outcome run(const wchar_t* command, void* out = nullptr, const void* arg1 = nullptr, const void* arg2 = nullptr) {
        takeDialogs();
        HostedLibrary::takeNotices();
        const int32_t answer = host_.execute(command, out, arg1, arg2);
        return {answer, takeDialogs(), HostedLibrary::takeNotices()};
    }
    /// The controller's first breath, without a window.
    void startController() {
        uint8_t flag = 0;
        ASSERT_EQ(host_.execute(L"getCheckForIEUpdates", &flag), 1);
    }
    void openCapture(int32_t action = GLIMMERPAD_LOAD) { host_.capture(pngOf(patternPicture(60, 40)), action); }
};

TEST_F(Commands, AnswerWithoutAControllerAsWithOne) {
    struct Case {
        const wchar_t* command;
        int32_t answer;
        std::vector<std::wstring> dialogs;  ///< captions
        std::vector<std::wstring> notices;
        const wchar_t* argument = nullptr;
    };
    const std::vector<Case> cases = {
        {L"openSettings", 1, {L"Options"}, {L"setupMode true", L"setupMode false"}},
        {L"openFile", 1, {L"Open Project or File..."}, {}},
        {L"ieCaptureOptions", 1, {L"Capture Options"}, {}},
        {L"downloadUpdate", 0, {}, {}},
        {L"installUpdate", 0, {L"Warning"}, {}},
        {L"integrateIntoIE", 1, {}, {L"openURL https://www.glimmerpad.example/internet-explorer.htm"}},
        {L"isUpdateAvailable", 0, {}, {}, L"silent"},
        {L"isUpdateAvailable", 0, {L"Information"}, {}, L"Silent"},
        {L"isUpdateAvailable", 0, {L"Information"}, {}},
        {L"setAddonVersion", 1, {}, {}, L"1.2.3"},
        {L"setAddonVersion", 1, {}, {}},
        {L"activateApp", 1, {}, {}},
        {L"FGWindowPatch", 1, {}, {}},
        {L"getEncodedContent", 0, {}, {}},
        {L"storeEncodedContent", 0, {}, {}},
        {L"storeEncodedContent", 0, {}, {}, L"%%%"},
        {L"getBitmapDC", 0, {}, {}},
        {L"getResumeAvailable", 0, {}, {}},
        {L"getCheckForIEUpdates", 0, {}, {}},
        {L"grabTB", 0, {}, {}},
        {L"grabTB", 0, {}, {}, L"{\"url\":"},
        {L"captureBrowser", 0, {}, {}},
        {L"captureBrowser", 0, {}, {}, L"[]"},
        {L"JSONFunction", 0, {}, {}},
        {L"JSONFunction", 0, {}, {}, L"captureInit"},
        {L"JSONFunctionZ", 0, {}, {}},
        {L"JSONFunctionZ", 0, {}, {}, L"captureFX"},
    };
    for (const bool started : {false, true}) {
        for (const Case& c : cases) {
            // Some commands start the controller.
            if (!started) host_.hostShutdown();
            const Outcome outcome = run(c.command, nullptr, c.argument);
            const std::string command(c.command, c.command + wcslen(c.command));
            EXPECT_EQ(outcome.answer, c.answer) << command;
            ASSERT_EQ(outcome.dialogs.size(), c.dialogs.size()) << command;
            for (size_t i = 0; i < c.dialogs.size(); ++i) EXPECT_THAT(outcome.dialogs[i], StartsWith(c.dialogs[i]));
            EXPECT_EQ(outcome.notices, c.notices) << command;
        }
        startController();
    }
}

TEST_F(Commands, UnknownOnesAreNamedToTheUser) {
    for (const wchar_t* command : {L"", L"OPENFILE", L"openfile", L"openFile ", L"hostExecute", L"\x4F60\x597D"}) {
        const Outcome outcome = run(command);
        EXPECT_EQ(outcome.answer, 0);
        EXPECT_THAT(outcome.dialogs, ElementsAre(std::wstring(L"Error: Unknown function: ") + command));
    }
    const Outcome none = run(nullptr);
    EXPECT_EQ(none.answer, 0);
    EXPECT_THAT(none.dialogs, IsEmpty());
    // Longer than any text that is read.
    const std::wstring longest(3U << 20U, L'x');
    EXPECT_EQ(run(longest.c_str()).answer, 0);
}

TEST_F(Commands, ServerInformationNeedsAController) {
    EXPECT_THAT(run(L"processInfo", nullptr, L"a").dialogs, ElementsAre(L"Error: Unknown function: processInfo"));
    startController();
    const Outcome told = run(L"processInfo", nullptr, L"news \x20AC");
    EXPECT_EQ(told.answer, 1);
    EXPECT_THAT(told.notices, ElementsAre(L"getInfo news \x20AC"));
    EXPECT_THAT(run(L"processInfo").notices, ElementsAre(L"getInfo "));
    host_.hostShutdown();
    EXPECT_EQ(run(L"processInfo", nullptr, L"a").answer, 0);
}

TEST_F(Commands, AByteIsAllThatIsWrittenForAFlag) {
    host_.hostShutdown();
    for (const wchar_t* command : {L"getResumeAvailable", L"getCheckForIEUpdates"}) {
        uint8_t bytes[3] = {7, 7, 7};
        EXPECT_EQ(host_.execute(command, &bytes[1]), 1);
        EXPECT_THAT(bytes, ElementsAre(7, 0, 7));
    }
    {
        const DialogRobot robot([](HWND form) {
            EXPECT_TRUE(pressButton(form, L"Check for updates"));
            EXPECT_TRUE(pressButton(form, L"OK"));
        });
        EXPECT_EQ(host_.execute(L"ieCaptureOptions"), 1);
    }
    host_.hostShutdown();
    uint8_t flag = 0;
    EXPECT_EQ(host_.execute(L"getCheckForIEUpdates", &flag), 1);
    EXPECT_EQ(flag, 1);
}

TEST_F(Commands, TheWindowPatchStandsOutsideUntilTheShutdown) {
    const auto patches = [] {
        std::vector<HWND> all = windowsOfThread();
        std::erase_if(all, [](HWND window) { return classOf(window) != L"TChromeFGWndPatch"; });
        return all;
    };
    const auto hiddenPatch = [] { return FindWindowW(L"TChromeFGWndPatch", nullptr); };
    EXPECT_EQ(run(L"FGWindowPatch").answer, 1);
    const HWND window = hiddenPatch();
    ASSERT_NE(window, nullptr);
    RECT area{};
    GetWindowRect(window, &area);
    EXPECT_EQ(area.left, -10000);
    EXPECT_EQ(area.top, -10000);
    SetWindowPos(window, nullptr, 5, 6, 30, 20, SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_EQ(run(L"FGWindowPatch").answer, 1);
    EXPECT_EQ(hiddenPatch(), window);
    EXPECT_LE(patches().size(), 1U);
    GetWindowRect(window, &area);
    EXPECT_EQ(area.left, -10000);
    EXPECT_EQ(area.right - area.left, 30);
    host_.hostShutdown();
    EXPECT_EQ(IsWindow(window), FALSE);
    host_.hostShutdown();  // nothing is left to close
}

TEST_F(Commands, EditingIsResumedWhereACaptureIsOpen) {
    startController();
    EXPECT_THAT(run(L"resumeEditing").notices, ElementsAre(L"enableResumeMenu disable"));
    EXPECT_EQ(windowsOfThread().size(), 0U);
    EXPECT_FALSE(host_.resumeAvailable());

    openCapture(GLIMMERPAD_EDIT);
    EXPECT_THAT(HostedLibrary::takeNotices(), Contains(L"enableResumeMenu enable"));
    EXPECT_TRUE(host_.resumeAvailable());
    const HWND window = mainWindow();
    ASSERT_NE(window, nullptr);
    ASSERT_TRUE(pumpUntil([window] { return GetForegroundWindow() == window; }, "the editor in front"));

    // Minimised, and behind a window of the host.
    ShowWindow(window, SW_MINIMIZE);
    const HWND own = CreateWindowExW(0, L"Static", L"host", WS_OVERLAPPEDWINDOW, 10, 10, 200, 100, nullptr, nullptr,
                                     nullptr, nullptr);
    ASSERT_TRUE(bringForward(own));
    ASSERT_NE(IsIconic(window), FALSE);
    EXPECT_THAT(run(L"resumeEditing").notices, ElementsAre(L"enableResumeMenu enable"));
    EXPECT_TRUE(pumpUntil([window] { return GetForegroundWindow() == window && IsIconic(window) == FALSE; },
                          "the editor back in front"));
    EXPECT_TRUE(pumpUntil([window] { return IsChild(window, GetFocus()) != FALSE; }, "the keyboard in the editor"));

    ASSERT_TRUE(bringForward(own));
    EXPECT_EQ(run(L"activateApp").answer, 1);
    EXPECT_TRUE(pumpUntil([window] { return GetForegroundWindow() == window; }, "the activated editor"));
    DestroyWindow(own);
}

void putOnClipboard(const BITMAPINFOHEADER& header, const std::vector<uint32_t>& pixels) {
    ASSERT_NE(OpenClipboard(nullptr), FALSE);
    EmptyClipboard();
    const size_t size = sizeof header + pixels.size() * sizeof(uint32_t);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
    auto* bytes = static_cast<uint8_t*>(GlobalLock(memory));
    std::memcpy(bytes, &header, sizeof header);
    std::memcpy(bytes + sizeof header, pixels.data(), pixels.size() * sizeof(uint32_t));
    GlobalUnlock(memory);
    SetClipboardData(CF_DIB, memory);
    CloseClipboard();
}

// Also into a window that nobody has seen yet.
TEST_F(Commands, AFileThatIsOpenedIsSeen) {
    const DialogRobot robot([](HWND box) {
        if (textOf(box) != L"Open Project or File...") return refuse(box);
        const std::wstring path = std::filesystem::absolute("samples/article-1280x1024.png").wstring();
        for (const HWND child : childrenOf(box)) {
            if (classOf(child) != L"Edit") continue;
            SendMessageW(child, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
            break;
        }
        EXPECT_TRUE(pressButton(box, L"Open"));
    });
    EXPECT_EQ(host_.execute(L"openFile"), 1);
    EXPECT_TRUE(host_.resumeAvailable());
    ASSERT_NE(mainWindow(), nullptr);
    EXPECT_NE(IsWindowVisible(mainWindow()), FALSE);
}

/// A system that keeps the foreground for the program that is there; a thread that is attached to it may take it.
struct ForegroundLock {
    static BOOL WINAPI set(HWND) {
        taken = taken || attached;
        return taken;
    }
    static HWND WINAPI get() { return taken ? mainWindow() : GetDesktopWindow(); }
    static BOOL WINAPI attach(DWORD, DWORD, BOOL on) {
        if (!mayAttach) return FALSE;
        attached = on != FALSE;
        return TRUE;
    }
    static BOOL WINAPI flash(PFLASHWINFO) {
        ++flashes;
        return FALSE;
    }
    static inline bool mayAttach, attached, taken;
    static inline int flashes;
};

TEST_F(Commands, AWindowThatMayNotComeInFrontCallsForAttention) {
    host_.capture(pngOf(patternPicture(30, 20)), GLIMMERPAD_EDIT);
    const ImportPatch patches[] = {{host_.module, "user32.dll", "SetForegroundWindow", &ForegroundLock::set},
                                   {host_.module, "user32.dll", "GetForegroundWindow", &ForegroundLock::get},
                                   {host_.module, "user32.dll", "AttachThreadInput", &ForegroundLock::attach},
                                   {host_.module, "user32.dll", "FlashWindowEx", &ForegroundLock::flash}};
    for (const bool mayAttach : {true, false}) {
        ForegroundLock::mayAttach = mayAttach;
        ForegroundLock::attached = ForegroundLock::taken = false;
        ForegroundLock::flashes = 0;
        EXPECT_EQ(host_.execute(L"activateApp"), 1);
        EXPECT_EQ(ForegroundLock::taken, mayAttach);
        EXPECT_FALSE(ForegroundLock::attached);
        EXPECT_EQ(ForegroundLock::flashes, mayAttach ? 0 : 1);
        EXPECT_EQ(GetWindowLongW(mainWindow(), GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
    }
}

TEST_F(Commands, TheClipboardsPictureIsOpened) {
    emptyClipboard();
    const Outcome none = run(L"openFromClipboard");
    EXPECT_EQ(none.answer, 1);
    EXPECT_THAT(none.dialogs, ElementsAre(L"Error: There is no image in the clipboard."));
    EXPECT_FALSE(host_.resumeAvailable());

    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = 3;
    header.biHeight = 2;
    header.biPlanes = 1;
    header.biBitCount = 32;
    putOnClipboard(header, std::vector<uint32_t>(6, 0x00102030));
    const Outcome opened = run(L"openFromClipboard");
    EXPECT_EQ(opened.answer, 1);
    EXPECT_THAT(opened.dialogs, IsEmpty());
    EXPECT_TRUE(host_.resumeAvailable());
    emptyClipboard();
}

TEST_F(Commands, AHostsShutdownIsAFreshStart) {
    for (int round = 0; round < 3; ++round) {
        const RgbPicture picture = patternPicture(30 + static_cast<uint32_t>(round), 20);
        host_.capture(pngOf(picture), GLIMMERPAD_ENCODE_IMAGE);
        EXPECT_EQ(encodedPicture(), picture);
        openCapture(GLIMMERPAD_EDIT);
        EXPECT_TRUE(host_.resumeAvailable());
        host_.hostShutdown();
        EXPECT_FALSE(host_.resumeAvailable());
        EXPECT_EQ(mainWindow(), nullptr) << testing::PrintToString(classOf(mainWindow()));
        EXPECT_THAT(host_.encodedContent(), IsEmpty());
        EXPECT_EQ(windowsOfThread().size(), 0U);
        pump();
        EXPECT_EQ(mainWindow(), nullptr) << testing::PrintToString(classOf(mainWindow()));
    }
    EXPECT_THAT(takeDialogs(), IsEmpty());
}

}  // namespace
}  // namespace glimmer::test
