// A host with a plain message loop and accelerators of its own: keys reach whom they belong to.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <set>
#include <string>
#include <vector>

#include "support/not_copied.h"
#include "support/windows/host_fixture.h"
#include "support/windows/kept_clipboard.h"

namespace glimmer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr WORD hostCopy = 101;  // Ctrl + F3, which the editor has too
constexpr WORD hostFind = 102;  // Ctrl + K

/// A window of the host with an edit box and a button, served as the textbooks say: accelerators first, then the
/// dialog keys.
class HostWindow : NotCopied {
public:
    HostWindow() {
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = &HostWindow::procedure;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = L"GlimmerTestHost";
        RegisterClassW(&windowClass);
        window_ = CreateWindowExW(0, L"GlimmerTestHost", L"host", WS_OVERLAPPEDWINDOW, 20, 20, 300, 200, nullptr,
                                  nullptr, nullptr, nullptr);
        edit_ = child(L"Edit", 10);
        button_ = child(L"Button", 60);
        ACCEL keys[] = {{FCONTROL | FVIRTKEY, VK_F3, hostCopy}, {FCONTROL | FVIRTKEY, 'K', hostFind}};
        accelerators_ = CreateAcceleratorTableW(keys, 2);
        commands.clear();
        // Without a look at whose window the key was pressed in, as many programs do.
        setMessageFilter([this](MSG& message) {
            return TranslateAcceleratorW(window_, accelerators_, &message) != 0 ||
                   IsDialogMessageW(window_, &message) != FALSE;
        });
    }
    ~HostWindow() {
        setMessageFilter({});
        DestroyAcceleratorTable(accelerators_);
        DestroyWindow(window_);
    }

    bool enter() const {
        if (!bringForward(window_)) return false;
        SetFocus(edit_);
        return pumpUntil([this] { return GetFocus() == edit_; }, "the host's edit box");
    }
    [[nodiscard]] HWND edit() const { return edit_; }
    [[nodiscard]] HWND button() const { return button_; }
    static inline std::vector<WORD> commands;  ///< accelerators that were pressed

private:
    HWND child(const wchar_t* name, int y) const {
        return CreateWindowExW(0, name, L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 10, y, 200, 30, window_, nullptr,
                               nullptr, nullptr);
    }
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == WM_COMMAND && HIWORD(wParam) == 1) commands.push_back(LOWORD(wParam));
        return DefWindowProcW(window, message, wParam, lParam);
    }

    HWND window_ = nullptr;
    HWND edit_ = nullptr;
    HWND button_ = nullptr;
    HACCEL accelerators_ = nullptr;
};

class MessageLoop : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        host_.capture(pngOf(patternPicture(60, 40)), GLIMMERPAD_EDIT);
        editor_ = mainWindow();
        ASSERT_NE(editor_, nullptr);
        ASSERT_TRUE(enterEditor());
        emptyClipboard();
    }
    bool enterEditor() const {
        return bringForward(editor_) &&
               pumpUntil([this] { return IsChild(editor_, GetFocus()) != FALSE; }, "the keyboard in the editor");
    }
    [[nodiscard]] HWND captureList() const {
        for (const HWND window : childrenOf(editor_))
            if (classOf(window) == L"SysListView32") return window;
        return nullptr;
    }
    static bool pictureCopied() { return IsClipboardFormatAvailable(CF_DIB) != FALSE; }

    HWND editor_ = nullptr;
    HostWindow own_;
};

TEST_F(MessageLoop, ShortcutsBelongToTheWindowWithTheKeyboard) {
    pressKey(VK_F3, {VK_CONTROL});
    EXPECT_TRUE(pumpUntil(pictureCopied, "the copied picture"));
    EXPECT_THAT(HostWindow::commands, IsEmpty()) << "the editor's key, in the editor's window";
    EXPECT_TRUE(pumpUntil([this] { return robot_.seen().size() >= 2; }, "what is said after copying"));
    takeDialogs();
    emptyClipboard();

    ASSERT_TRUE(own_.enter());
    pressKey(VK_F3, {VK_CONTROL});
    pressKey('K', {VK_CONTROL});
    EXPECT_TRUE(pumpUntil([] { return HostWindow::commands.size() >= 2; }, "the host's commands"));
    EXPECT_THAT(HostWindow::commands, ElementsAre(hostCopy, hostFind));
    EXPECT_FALSE(pictureCopied());
    EXPECT_THAT(takeDialogs(), IsEmpty());
}

TEST_F(MessageLoop, TheHostsOwnControlsKeepTheirKeys) {
    ASSERT_TRUE(own_.enter());
    for (const WORD key : {WORD{'A'}, WORD{'B'}}) pressKey(key);
    EXPECT_TRUE(pumpUntil([this] { return textOf(own_.edit()) == L"ab"; }, "the typed text"));
    pressKey(VK_TAB);
    EXPECT_TRUE(pumpUntil([this] { return GetFocus() == own_.button(); }, "the next control"));
    pressKey(VK_TAB, {VK_SHIFT});
    EXPECT_TRUE(pumpUntil([this] { return GetFocus() == own_.edit(); }, "the control before"));
    pressKey(VK_END);
    // Ctrl + O is the editor's, not the host's.
    pressKey('O', {VK_CONTROL});
    pressKey('C');
    EXPECT_TRUE(pumpUntil([this] { return textOf(own_.edit()) == L"abc"; }, "the typed text"));
    EXPECT_THAT(takeDialogs(), IsEmpty());
}

TEST_F(MessageLoop, TheTabKeyWalksThroughTheEditor) {
    // From the list of captures on, round the window.
    const HWND list = captureList();
    ASSERT_NE(list, nullptr);
    SetFocus(list);
    ASSERT_EQ(GetFocus(), list);
    std::set<HWND> visited;
    for (int i = 0; i < 3; ++i) {
        const HWND before = GetFocus();
        pressKey(VK_TAB);
        ASSERT_TRUE(pumpUntil([before] { return GetFocus() != before; }, "the next control"));
        EXPECT_NE(IsChild(editor_, GetFocus()), FALSE);
        visited.insert(GetFocus());
    }
    EXPECT_GE(visited.size(), 2U);
    const HWND before = GetFocus();
    pressKey(VK_TAB, {VK_SHIFT});
    ASSERT_TRUE(pumpUntil([before] { return GetFocus() != before; }, "the control before"));
    EXPECT_TRUE(visited.count(GetFocus()) == 1 || GetFocus() == list);
}

// What follows a change is shown in a quiet moment: without one the window would go on showing what was.
TEST_F(MessageLoop, TheHostsLoopDoesTheIdleWork) {
    const HWND list = captureList();
    ASSERT_NE(list, nullptr);
    SetFocus(list);
    const DialogRobot robot([](HWND box) { EXPECT_TRUE(pressButton(box, L"Yes")); });
    pressKey(VK_DELETE);
    EXPECT_TRUE(pumpUntil([this] { return textOf(editor_) == L"Vistrane"; }, "the title without a capture"));
    EXPECT_EQ(robot.seen().size(), 1U);
    EXPECT_FALSE(host_.resumeAvailable());
}

TEST_F(MessageLoop, TheUserClosesTheEditor) {
    takeDialogs();
    HostedLibrary::takeNotices();
    int questions = 0;
    {
        const DialogRobot robot([&](HWND box) {
            ++questions;
            EXPECT_TRUE(pressButton(box, L"Discard") || pressButton(box, L"Yes"));
        });
        PostMessageW(editor_, WM_CLOSE, 0, 0);
        EXPECT_TRUE(pumpUntil([this] { return IsWindowVisible(editor_) == FALSE; }, "the closed editor"));
    }
    EXPECT_EQ(questions, 1);
    EXPECT_FALSE(host_.resumeAvailable());
    EXPECT_THAT(HostedLibrary::takeNotices(), testing::Contains(L"enableResumeMenu disable"));
    // And captures go on.
    host_.capture(pngOf(patternPicture(60, 40)), GLIMMERPAD_EDIT);
    EXPECT_TRUE(pumpUntil([] { return IsWindowVisible(mainWindow()) != FALSE; }, "the editor again"));
}

// The process is the host's: the end of the session neither waits for the editor nor is carried out by it.
TEST_F(MessageLoop, TheEndOfTheSessionIsLeftToTheHost) {
    takeDialogs();
    for (const bool hidden : {false, true}) {
        if (hidden) ShowWindow(editor_, SW_HIDE);
        for (const HWND window : allWindowsOfThread()) EXPECT_NE(SendMessageW(window, WM_QUERYENDSESSION, 0, 0), 0);
        for (const WPARAM ends : {FALSE, TRUE})
            for (const HWND window : allWindowsOfThread()) SendMessageW(window, WM_ENDSESSION, ends, 0);
        pump();
        EXPECT_THAT(takeDialogs(), IsEmpty());
        EXPECT_EQ(mainWindow(), editor_);
        EXPECT_TRUE(host_.resumeAvailable());
    }
    host_.hostShutdown();
    EXPECT_EQ(mainWindow(), nullptr);
}

}  // namespace
}  // namespace glimmer::test
