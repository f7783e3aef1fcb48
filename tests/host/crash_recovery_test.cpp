// The program that ships is killed in the middle of work and started again.

#include <gtest/gtest.h>

#include <windows.h>

#include <functional>
#include <string>

#include "common/files.h"
#include "editor/recovery/recovery_manifest.h"
#include "support/child_process.h"
#include "support/windows/host_windows.h"
#include "support/windows/hosted_library.h"
#include "support/windows/test_account.h"

namespace glimmer::test {
namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<fs::path>;

constexpr unsigned longest = 60000;  // milliseconds

/// The window for which the function holds, once `all` lists it.
HWND awaited(const std::function<std::vector<HWND>()>& all, const std::function<bool(const std::wstring&)>& wanted,
             const char* what) {
    HWND found = nullptr;
    const auto look = [&] {
        for (const HWND window : all())
            if (IsWindowVisible(window) != FALSE && wanted(textOf(window))) found = window;
        return found != nullptr;
    };
    waitUntil(look, what, longest);
    return found;
}

class CrashRecovery : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(folder_.empty());
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }
    void TearDown() override {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }
    static fs::path program() { return programFolder() / "glimmerpad.exe"; }
    /// The main window, once it shows a capture of that name.
    static HWND mainWindow(const ChildProcess& process, const wchar_t* name) {
        return awaited([&] { return windowsOfProcess(process.id()); },
                       [name](const std::wstring& text) { return text.starts_with(name); }, "the main window");
    }
    static HWND child(HWND window, const std::wstring& text) {
        return awaited([window] { return childrenOf(window); }, [&](const std::wstring& is) { return is == text; },
                       "a control");
    }
    static HWND topWindow(const ChildProcess& process, const std::wstring& caption) {
        return awaited([&] { return windowsOfProcess(process.id()); },
                       [&](const std::wstring& text) { return text == caption; }, "a message");
    }
    static void mouse(HWND window, int x, int y, UINT message, WPARAM held) {
        PostMessageW(window, message, held, MAKELPARAM(x, y));
    }
    static void click(HWND window) {
        mouse(window, 8, 8, WM_LBUTTONDOWN, MK_LBUTTON);
        mouse(window, 8, 8, WM_LBUTTONUP, 0);
    }
    /// Selects an area from that corner on and makes it an annotation.
    static void annotate(HWND mainWindow, int x, int y) {
        const HWND canvas = child(mainWindow, L"Canvas");
        mouse(canvas, x, y, WM_LBUTTONDOWN, MK_LBUTTON);
        mouse(canvas, x + 100, y + 60, WM_MOUSEMOVE, MK_LBUTTON);
        mouse(canvas, x + 160, y + 100, WM_LBUTTONUP, 0);
        click(child(mainWindow, L" Annotate"));
    }
    /// What is kept, once it has so many annotations.
    std::vector<RecoveryManifest> kept() const {
        std::vector<RecoveryManifest> all;
        std::error_code ignored;
        for (const auto& entry : fs::recursive_directory_iterator(folder_, ignored)) {
            if (entry.path().filename() != "capture.manifest") continue;
            const Result<std::vector<uint8_t>> data = readFile(entry.path(), maxManifestBytes);
            const std::optional<RecoveryManifest> manifest = data ? decodeManifest(*data) : std::nullopt;
            if (manifest) all.push_back(*manifest);
        }
        return all;
    }
    bool waitUntilKept(size_t annotations) const {
        const auto safe = [&] {
            const std::vector<RecoveryManifest> all = kept();
            return all.size() == 1 && all[0].annotations.size() == annotations;
        };
        return waitUntil(safe, "the kept capture", longest);
    }
    bool nothingIsKept() const {
        return waitUntil([this] { return kept().empty(); }, "the end of what was kept", longest);
    }

    const fs::path folder_ = userFolders();
};

TEST_F(CrashRecovery, WorkThatWasNotSavedComesBackAfterTheProgramWasKilled) {
    {
        ChildProcess first(program(), Arguments{fs::absolute("samples/article-1280x1024.png")});
        // A plain picture is said to carry nothing to edit.
        PostMessageW(topWindow(first, L"Error"), WM_CLOSE, 0, 0);
        const HWND window = mainWindow(first, L"article");
        ASSERT_NE(window, nullptr);
        EXPECT_TRUE(kept().empty()) << "nothing has changed yet";
        annotate(window, 100, 120);
        ASSERT_TRUE(waitUntilKept(1));
        first.kill();
    }
    ASSERT_EQ(kept().size(), 1U);
    {
        ChildProcess second(program(), Arguments());
        click(child(topWindow(second, L"Unsaved captures"), L"&Open"));
        const HWND window = mainWindow(second, L"article");
        ASSERT_NE(window, nullptr);
        EXPECT_NE(textOf(window).find(L" * "), std::wstring::npos) << "it is not saved";
        // The run that died owns it no more; the one that lives does, and changes go on being kept.
        ASSERT_TRUE(waitUntilKept(1));
        annotate(window, 400, 320);
        ASSERT_TRUE(waitUntilKept(2));
        second.kill();
    }
    {
        ChildProcess third(program(), Arguments());
        click(child(topWindow(third, L"Unsaved captures"), L"&Discard"));
        EXPECT_TRUE(nothingIsKept());
        third.kill();
    }
}

/// As the system does; whether everybody answered in time and agreed.
bool askForTheEnd(DWORD process, LPARAM why) {
    for (const HWND window : allWindowsOfProcess(process)) {
        DWORD_PTR agreed = FALSE;
        if (SendMessageTimeoutW(window, WM_QUERYENDSESSION, 0, why, SMTO_NORMAL, 8000, &agreed) == 0 || agreed == FALSE)
            return false;
    }
    return true;
}

void tellOfTheEnd(DWORD process, bool ends, LPARAM why) {
    for (const HWND window : allWindowsOfProcess(process)) {
        DWORD_PTR ignored = 0;
        SendMessageTimeoutW(window, WM_ENDSESSION, ends ? TRUE : FALSE, why, SMTO_NORMAL, 8000, &ignored);
    }
}

TEST_F(CrashRecovery, TheEndOfTheSessionIsNotHeldUpAndLosesNothing) {
    constexpr LPARAM logoff = static_cast<LPARAM>(0x80000000);
    constexpr LPARAM forAnUpdate = 1;
    {
        ChildProcess first(program(), Arguments{fs::absolute("samples/article-1280x1024.png")});
        PostMessageW(topWindow(first, L"Error"), WM_CLOSE, 0, 0);
        const HWND window = mainWindow(first, L"article");
        ASSERT_NE(window, nullptr);
        annotate(window, 100, 120);
        ASSERT_TRUE(waitUntil([&] { return textOf(window).find(L" * ") != std::wstring::npos; }, "the annotation"));
        ASSERT_TRUE(askForTheEnd(first.id(), logoff));
        ASSERT_EQ(kept().size(), 1U) << "kept by the time of the answer";
        EXPECT_EQ(kept()[0].annotations.size(), 1U);

        // Called off: nothing has changed, and the program still hears of other starts.
        tellOfTheEnd(first.id(), false, logoff);
        EXPECT_NE(IsWindowVisible(window), FALSE);
        EXPECT_NE(IsWindowEnabled(window), FALSE);
        annotate(window, 400, 320);
        EXPECT_TRUE(waitUntilKept(2));
        ShowWindowAsync(window, SW_MINIMIZE);
        ASSERT_TRUE(waitUntil([window] { return IsIconic(window) != FALSE; }, "the minimised window"));
        ChildProcess second(program(), Arguments());
        EXPECT_EQ(second.wait(longest), 0);
        EXPECT_TRUE(waitUntil([window] { return IsIconic(window) == FALSE; }, "the window again"));

        // An update wants its files: this time it ends, by itself.
        ASSERT_TRUE(askForTheEnd(first.id(), forAnUpdate));
        tellOfTheEnd(first.id(), true, forAnUpdate);
        EXPECT_EQ(first.wait(longest), 0);
    }
    EXPECT_TRUE(waitUntilKept(2));
    ChildProcess next(program(), Arguments());
    click(child(topWindow(next, L"Unsaved captures"), L"&Discard"));
    EXPECT_TRUE(nothingIsKept());
    // Without anything open there is nothing to do, and the program can be ended as ever.
    ASSERT_TRUE(askForTheEnd(next.id(), logoff));
    tellOfTheEnd(next.id(), false, logoff);
    ChildProcess terminator(program(), Arguments{L"-TERMINATE"});
    EXPECT_EQ(terminator.wait(longest), 0);
    EXPECT_EQ(next.wait(longest), 0);
}

}  // namespace
}  // namespace glimmer::test
