// A host calls in while one of the library's dialogs is open, from a timer of its own: nothing hangs, nothing is
// destroyed below code that still waits.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "support/windows/host_fixture.h"

namespace glimmer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Modal : public HostTest {
protected:
    /// The ways on which a call of the host waits for a dialog.
    struct Opener {
        const char* what;
        std::function<void()> open;
    };
    [[nodiscard]] std::vector<Opener> openers() const {
        const auto command = [this](const wchar_t* name) { return [this, name] { (void)host_.execute(name); }; };
        return {
            {"a dialog of the toolkit", command(L"openSettings")},
            {"a dialog that is on its own", command(L"ieCaptureOptions")},
            {"the system's open dialog", command(L"openFile")},
            {"a message box", command(L"isUpdateAvailable")},
            {"a message about a command", command(L"no command")},
            {"a message about a picture", [this] { host_.hostCapture(L"", L"", L"", "no picture", 0, 0, 0); }},
            {"the system's save dialog", [this] { host_.capture(pngOf(patternPicture(9, 9)), GLIMMERPAD_SAVE); }},
        };
    }
    void openEditor() {
        host_.capture(pngOf(patternPicture(60, 40)), GLIMMERPAD_EDIT);
        const HWND window = mainWindow();
        ASSERT_TRUE(pumpUntil([window] { return GetForegroundWindow() == window; }, "the editor in front"));
    }
    /// Everything of the library is gone, and a new session works.
    void expectFreshStart(const char* what) {
        EXPECT_EQ(mainWindow(), nullptr) << what;
        EXPECT_THAT(windowsOfThread(), IsEmpty()) << what;
        EXPECT_FALSE(host_.resumeAvailable()) << what;
        const RgbPicture picture = patternPicture(12, 11);
        host_.capture(pngOf(picture), GLIMMERPAD_ENCODE_IMAGE);
        EXPECT_EQ(encodedPicture(), picture) << what;
        host_.hostShutdown();
        takeDialogs();
        EXPECT_EQ(host_.execute(L"isUpdateAvailable"), 0) << what;
        EXPECT_EQ(takeDialogs().size(), 1U) << what << ": messages come again";
    }
};

TEST_F(Modal, AShutdownInsideADialogCancelsItAndIsDoneWhenTheCallReturns) {
    for (const bool editorIsOpen : {false, true}) {
        for (const Opener& opener : openers()) {
            if (editorIsOpen) openEditor();
            int calls = 0;
            {
                const DialogRobot robot([&](HWND box) {
                    ++calls;
                    host_.hostShutdown();
                    EXPECT_NE(IsWindow(box), FALSE) << opener.what << ": the code below still needs it";
                    // Until it is done, nothing else is.
                    uint8_t available = 7;
                    EXPECT_EQ(host_.execute(L"getResumeAvailable", &available), 0);
                    host_.capture(pngOf(patternPicture(5, 5)), GLIMMERPAD_EDIT);
                    host_.hostShutdown();
                });
                opener.open();
            }
            EXPECT_EQ(calls, 1) << opener.what;
            expectFreshStart(opener.what);
        }
    }
}

TEST_F(Modal, ACaptureInsideADialogIsTaken) {
    const RgbPicture picture = patternPicture(31, 21);
    for (const Opener& opener : openers()) {
        bool encoded = false;
        {
            const DialogRobot robot([&](HWND box) {
                host_.capture(pngOf(picture), GLIMMERPAD_ENCODE_IMAGE);
                encoded = encodedPicture() == picture;
                EXPECT_TRUE(host_.resumeAvailable());
                refuse(box);
            });
            opener.open();
        }
        EXPECT_TRUE(encoded) << opener.what;
        host_.hostShutdown();
        EXPECT_THAT(windowsOfThread(), IsEmpty()) << opener.what;
    }
}

TEST_F(Modal, DialogsInsideDialogsAreAnsweredInAnyOrder) {
    for (const bool outerFirst : {false, true}) {
        std::vector<HWND> boxes;
        std::vector<std::wstring> notices;
        {
            const DialogRobot robot([&](HWND box) {
                boxes.push_back(box);
                if (boxes.size() == 1) {
                    EXPECT_EQ(host_.execute(L"openSettings"), 1) << "it is open already";
                    EXPECT_EQ(host_.execute(L"ieCaptureOptions"), 1);
                    return;
                }
                refuse(outerFirst ? boxes[0] : boxes[1]);
                refuse(outerFirst ? boxes[1] : boxes[0]);
            });
            HostedLibrary::takeNotices();
            EXPECT_EQ(host_.execute(L"openSettings"), 1);
        }
        EXPECT_EQ(boxes.size(), 2U);
        EXPECT_THAT(HostedLibrary::takeNotices(), ElementsAre(L"setupMode true", L"setupMode false"));
    }
    expectFreshStart("after dialogs inside dialogs");
}

TEST_F(Modal, AShutdownEndsDialogsInsideDialogs) {
    openEditor();
    int boxes = 0;
    {
        const DialogRobot robot([&](HWND) {
            switch (++boxes) {
                case 1:
                    EXPECT_EQ(host_.execute(L"openFile"), 1);
                    break;
                case 2:
                    EXPECT_EQ(host_.execute(L"isUpdateAvailable"), 0);
                    break;
                default:
                    host_.hostShutdown();
            }
        });
        EXPECT_EQ(host_.execute(L"openSettings"), 1);
    }
    EXPECT_EQ(boxes, 3);
    expectFreshStart("three dialogs");
}

TEST_F(Modal, AShutdownFromTheCallbackWaitsForTheCallersEnd) {
    openEditor();
    int calls = 0;
    HostedLibrary::onNotice([&](const std::wstring& notice) {
        if (!notice.starts_with(L"openURL")) return;
        ++calls;
        host_.hostShutdown();
        EXPECT_NE(mainWindow(), nullptr);
    });
    EXPECT_EQ(host_.execute(L"integrateIntoIE"), 1);
    HostedLibrary::onNotice({});
    EXPECT_EQ(calls, 1);
    expectFreshStart("the callback");
}

TEST_F(Modal, AShutdownInsideTheUsersOwnCommandIsDoneByTheHostsLoop) {
    struct Command {
        const char* what;
        std::function<void(HWND)> start;
    };
    const Command commands[] = {
        {"open", [](HWND) { pressKey('O', {VK_CONTROL}); }},
        {"the question before leaving", [](HWND window) { PostMessageW(window, WM_CLOSE, 0, 0); }},
    };
    for (const Command& command : commands) {
        openEditor();
        bool called = false;
        {
            const DialogRobot robot([&](HWND box) {
                called = true;
                host_.hostShutdown();
                EXPECT_NE(IsWindow(box), FALSE);
                EXPECT_NE(mainWindow(), nullptr);
            });
            command.start(mainWindow());
            EXPECT_TRUE(pumpUntil([&] { return called && mainWindow() == nullptr; }, command.what));
        }
        expectFreshStart(command.what);
    }
}

/// A host's timer that closes the library down once a menu is open.
struct MenuTimer {
    static inline const HostedLibrary* library = nullptr;
    static inline bool called = false;

    static void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD) {
        GUITHREADINFO state{};
        state.cbSize = sizeof state;
        GetGUIThreadInfo(GetCurrentThreadId(), &state);
        if ((state.flags & GUI_INMENUMODE) == 0 || called) return;
        called = true;
        library->hostShutdown();
        EXPECT_NE(mainWindow(), nullptr);
    }
};

TEST_F(Modal, AShutdownWhileAMenuIsOpenWaitsForTheMenu) {
    openEditor();
    MenuTimer::library = &host_;
    MenuTimer::called = false;
    const UINT_PTR timer = SetTimer(nullptr, 0, 50, &MenuTimer::tick);
    // The window's own menu, as Alt + Space opens it.
    PostMessageW(mainWindow(), WM_SYSCOMMAND, SC_KEYMENU, ' ');
    EXPECT_TRUE(pumpUntil([] { return MenuTimer::called && mainWindow() == nullptr; }, "the end after the menu"));
    KillTimer(nullptr, timer);
    expectFreshStart("a menu");
}

/// A host's timer that closes the library down once the button of a drag is down, and then lets it go.
struct DragTimer {
    static inline const HostedLibrary* library = nullptr;
    static inline bool called = false;

    static void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD) {
        if (GetKeyState(VK_LBUTTON) >= 0 || called) return;
        called = true;
        library->hostShutdown();
        EXPECT_NE(mainWindow(), nullptr) << "the canvas outlives its drag";
        mouse(MOUSEEVENTF_LEFTUP);
        key(VK_MENU, KEYEVENTF_KEYUP);
    }
    static void mouse(DWORD what) {
        INPUT input{};
        input.type = INPUT_MOUSE;
        input.mi.dwFlags = what;
        SendInput(1, &input, sizeof input);
    }
    static void key(WORD code, DWORD what) {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = code;
        input.ki.dwFlags = what;
        SendInput(1, &input, sizeof input);
    }
};

TEST_F(Modal, AShutdownWhileAnAnnotationIsDraggedOutWaitsForTheDrag) {
    openEditor();
    pressKey(VK_INSERT, {});
    pressKey(VK_ESCAPE, {});
    pump();
    const HWND canvas = GetFocus();
    RECT area{};
    GetWindowRect(canvas, &area);
    DragTimer::library = &host_;
    DragTimer::called = false;
    SetCursorPos((area.left + area.right) / 2, (area.top + area.bottom) / 2);  // there a small picture lies
    pump();
    const UINT_PTR timer = SetTimer(nullptr, 0, 50, &DragTimer::tick);
    DragTimer::key(VK_MENU, 0);
    DragTimer::mouse(MOUSEEVENTF_LEFTDOWN);
    EXPECT_TRUE(pumpUntil([] { return DragTimer::called && mainWindow() == nullptr; }, "the end after the drag"));
    KillTimer(nullptr, timer);
    expectFreshStart("a drag");
}

TEST_F(Modal, TheHostsOwnDialogsAreLeftAlone) {
    openEditor();
    int boxes = 0;
    bool answered = false;
    {
        const DialogRobot robot([&](HWND box) {
            if (++boxes == 1) {
                // In the middle of the options dialog the host asks something itself, and from there it closes down.
                answered = MessageBoxW(nullptr, L"of the host", L"host", MB_YESNO) == IDYES;
                EXPECT_EQ(boxes, 2);
                return;
            }
            host_.hostShutdown();
            for (int i = 0; i < 20; ++i) {
                pump();
                Sleep(5);
            }
            EXPECT_NE(IsWindow(box), FALSE);
            EXPECT_TRUE(pressButton(box, L"Yes"));
        });
        EXPECT_EQ(host_.execute(L"openSettings"), 1);
    }
    EXPECT_TRUE(answered);
    expectFreshStart("a dialog of the host");
}

/// A host's timer that takes longer than its period, so that the queue is never empty.
struct BusyTimer {
    static inline int ticks = 0;
    static void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD) {
        ++ticks;
        Sleep(25);
    }
};

TEST_F(Modal, AHostThatIsNeverIdleGetsItsCallBack) {
    const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, &BusyTimer::tick);
    for (const wchar_t* command : {L"openSettings", L"ieCaptureOptions", L"openFile"})
        EXPECT_EQ(host_.execute(command), 1) << testing::PrintToString(command);
    KillTimer(nullptr, timer);
    EXPECT_GT(BusyTimer::ticks, 0);
    EXPECT_EQ(takeDialogs().size(), 3U);
}

TEST_F(Modal, AHostThatEndsInsideADialogIsNotHeldBack) {
    constexpr int exitCode = 7;
    for (const wchar_t* command : {L"openSettings", L"openFile", L"isUpdateAvailable"}) {
        {
            const DialogRobot robot([](HWND box) {
                PostQuitMessage(exitCode);
                refuse(box);  // what is no loop of the toolkit's may want an answer
            });
            (void)host_.execute(command);
        }
        MSG message{};
        bool quit = false;
        for (int i = 0; i < 200 && !quit; ++i) {
            while (!quit && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
                quit = message.message == WM_QUIT;
                if (!quit) DispatchMessageW(&message);
            }
            Sleep(5);
        }
        EXPECT_TRUE(quit) << "the host's own loop never hears of it: " << testing::PrintToString(command);
        EXPECT_EQ(static_cast<int>(message.wParam), exitCode);
    }
}

}  // namespace
}  // namespace glimmer::test
