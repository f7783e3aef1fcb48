// The thread belongs to the host: the library works in its own activation context and DPI awareness, and leaves the
// thread as it was. Built twice, with and without a manifest for the common controls in the host.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <string>
#include <thread>
#include <vector>

#include "support/windows/host_fixture.h"

namespace glimmer::test {
namespace {

using testing::Each;
using testing::IsEmpty;
using testing::Not;

template <class Function>
Function userFunction(const char* name) {
    return exportOf<Function>(GetModuleHandleW(L"user32.dll"), name);
}

/// What code that runs now on this thread finds: the file whose manifest decides, and the kind of DPI awareness, here
/// of the thread or of a window.
std::wstring surroundings(HWND window = nullptr) {
    std::array<std::byte, 8192> room{};
    std::wstring text = L"nothing";
    if (QueryActCtxW(QUERY_ACTCTX_FLAG_USE_ACTIVE_ACTCTX, nullptr, nullptr, ActivationContextDetailedInformation,
                     room.data(), room.size(), nullptr) != FALSE) {
        const auto* details = reinterpret_cast<const ACTIVATION_CONTEXT_DETAILED_INFORMATION*>(room.data());
        const std::wstring path = details->lpRootManifestPath != nullptr ? details->lpRootManifestPath : L"";
        if (!path.empty()) text = path.substr(path.find_last_of(L'\\') + 1);
    }
    const HANDLE awareness = window == nullptr
                                 ? userFunction<HANDLE(WINAPI*)()>("GetThreadDpiAwarenessContext")()
                                 : userFunction<HANDLE(WINAPI*)(HWND)>("GetWindowDpiAwarenessContext")(window);
    const auto kind = userFunction<int(WINAPI*)(HANDLE)>("GetAwarenessFromDpiAwarenessContext");
    return text + L", " + std::to_wstring(kind(awareness));
}

const std::wstring own = L"glimmerpad.dll, 2";  // per monitor

/// Notes in what surroundings the library makes windows, and how the host's thread is while it does not.
class Surroundings : public HostTest {
protected:
    Surroundings() {
        userFunction<HANDLE(WINAPI*)(HANDLE)>("SetThreadDpiAwarenessContext")(
            reinterpret_cast<HANDLE>(static_cast<INT_PTR>(-1)));  // unaware
        before_ = surroundings();
        const GlimmerpadHostRecord host = {&Surroundings::notified};
        host_.hostInit(GLIMMERPAD_INTERNET_EXPLORER, &host);
        made_.clear();
        inCallback_.clear();
        hook_ = SetWindowsHookExW(WH_CBT, &Surroundings::made, nullptr, GetCurrentThreadId());
    }
    ~Surroundings() override { UnhookWindowsHookEx(hook_); }

    static void GLIMMERPAD_NOTIFY notified(const char*, const wchar_t*) { inCallback_.push_back(surroundings()); }
    static LRESULT CALLBACK made(int code, WPARAM window, LPARAM details) {
        if (code == HCBT_CREATEWND) made_.push_back(surroundings(reinterpret_cast<HWND>(window)));
        return CallNextHookEx(nullptr, code, window, details);
    }

    std::wstring before_;
    HHOOK hook_;
    static inline std::vector<std::wstring> made_;
    static inline std::vector<std::wstring> inCallback_;
};

TEST_F(Surroundings, AreTheLibrarysOwnInsideAndTheHostsOutside) {
    ASSERT_NE(before_, own);
    host_.capture(pngOf(patternPicture(60, 40)), GLIMMERPAD_EDIT);
    EXPECT_EQ(surroundings(), before_);
    EXPECT_THAT(made_, Not(IsEmpty()));
    EXPECT_THAT(made_, Each(own));
    EXPECT_THAT(inCallback_, Not(IsEmpty()));
    EXPECT_THAT(inCallback_, Each(before_));

    // What the host's own loop dispatches: the rest of the window is made in a quiet moment, a dialog by a key.
    made_.clear();
    pump();
    const HWND editor = mainWindow();
    ASSERT_TRUE(bringForward(editor));
    const DialogRobot robot([](HWND box) { EXPECT_TRUE(pressButton(box, L"Cancel")); });
    PostMessageW(editor, WM_CLOSE, 0, 0);
    EXPECT_TRUE(pumpUntil([&] { return !robot.seen().empty() && IsWindowEnabled(editor) != FALSE; }, "the question"));
    EXPECT_THAT(made_, Not(IsEmpty()));
    EXPECT_THAT(made_, Each(own));
    EXPECT_EQ(surroundings(), before_);

    host_.hostShutdown();
    EXPECT_EQ(surroundings(), before_);
}

TEST_F(Surroundings, AnotherThreadIsRefused) {
    host_.capture(pngOf(patternPicture(60, 40)), GLIMMERPAD_LOAD);
    uint8_t available = 7;
    int32_t answers = -1;
    std::thread([&] {
        GlimmerpadInterface record = {};
        record.version = GLIMMERPAD_INTERFACE_VERSION;
        answers = host_.execute(L"getResumeAvailable", &available) +
                  exportOf<GlimmerpadInitLibrary>(host_.module, "initLibrary")(&record, sizeof record);
        const GlimmerpadHostRecord nobody = {nullptr};
        host_.hostInit(GLIMMERPAD_CHROME, &nobody);
        host_.hostShutdown();
    }).join();
    EXPECT_EQ(answers, 0);
    EXPECT_EQ(available, 7);
    EXPECT_TRUE(host_.resumeAvailable());
}

}  // namespace
}  // namespace glimmer::test
