// The program that ships is killed in the middle of work and started again.

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>

#include "common/files.h"
#include "editor/recovery.h"
#include "support/child_process.h"
#include "support/windows/test_account.h"

namespace glimmer {
namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<fs::path>;

bool waitFor(const std::function<bool()>& condition, const char* what) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            ADD_FAILURE() << what << " did not come";
            return false;
        }
        Sleep(20);
    }
    return true;
}

std::wstring textOf(HWND window) {
    wchar_t text[512] = L"";
    GetWindowTextW(window, text, 512);
    return text;
}

struct Search {
    DWORD process;
    const std::function<bool(const std::wstring&)>& wanted;
    HWND found;
};

BOOL CALLBACK visit(HWND window, LPARAM data) {
    auto& search = *reinterpret_cast<Search*>(data);
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner != search.process || IsWindowVisible(window) == FALSE || !search.wanted(textOf(window))) return TRUE;
    search.found = window;
    return FALSE;
}

/// The visible window of the process (top-level, or below `parent`) whose text the function takes.
HWND findWindow(DWORD process, HWND parent, const std::function<bool(const std::wstring&)>& wanted) {
    Search search{process, wanted, nullptr};
    if (parent == nullptr)
        EnumWindows(visit, reinterpret_cast<LPARAM>(&search));
    else
        EnumChildWindows(parent, visit, reinterpret_cast<LPARAM>(&search));
    return search.found;
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
    static fs::path program() { return test::testProgram("x").parent_path().parent_path() / "bin" / "glimmerpad.exe"; }
    /// The main window, once it shows a capture of that name.
    static HWND mainWindow(const test::ChildProcess& process, const wchar_t* name) {
        HWND window = nullptr;
        waitFor(
            [&] {
                window =
                    findWindow(process.id(), nullptr, [&](const std::wstring& text) { return text.starts_with(name); });
                return window != nullptr;
            },
            "the main window");
        return window;
    }
    static HWND child(HWND window, const wchar_t* text) {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        HWND found = nullptr;
        waitFor(
            [&] {
                found = findWindow(process, window, [&](const std::wstring& is) { return is == text; });
                return found != nullptr;
            },
            "a control");
        return found;
    }
    static HWND topWindow(const test::ChildProcess& process, const wchar_t* caption) {
        HWND box = nullptr;
        waitFor(
            [&] {
                box = findWindow(process.id(), nullptr, [&](const std::wstring& text) { return text == caption; });
                return box != nullptr;
            },
            "a message");
        return box;
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
        return waitFor(
            [&] {
                const std::vector<RecoveryManifest> all = kept();
                return all.size() == 1 && all[0].annotations.size() == annotations;
            },
            "the kept capture");
    }

    const fs::path folder_ = test::userFolders();
};

TEST_F(CrashRecovery, WorkThatWasNotSavedComesBackAfterTheProgramWasKilled) {
    {
        test::ChildProcess first(program(), Arguments{fs::absolute("samples/article-1280x1024.png")});
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
        test::ChildProcess second(program(), Arguments());
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
        test::ChildProcess third(program(), Arguments());
        click(child(topWindow(third, L"Unsaved captures"), L"&Discard"));
        EXPECT_TRUE(waitFor([&] { return kept().empty(); }, "the end of what was kept"));
        third.kill();
    }
}

/// All top-level windows of the process, the hidden ones too: the system asks each of them.
std::vector<HWND> allWindows(DWORD process) {
    std::vector<HWND> all;
    for (HWND at = nullptr; (at = FindWindowExW(nullptr, at, nullptr, nullptr)) != nullptr;) {
        DWORD owner = 0;
        GetWindowThreadProcessId(at, &owner);
        if (owner == process) all.push_back(at);
    }
    return all;
}

/// As the system does; whether everybody answered in time and agreed.
bool askForTheEnd(DWORD process, LPARAM why) {
    for (const HWND window : allWindows(process)) {
        DWORD_PTR agreed = FALSE;
        if (SendMessageTimeoutW(window, WM_QUERYENDSESSION, 0, why, SMTO_NORMAL, 8000, &agreed) == 0 || agreed == FALSE)
            return false;
    }
    return true;
}

void tellOfTheEnd(DWORD process, bool ends, LPARAM why) {
    for (const HWND window : allWindows(process)) {
        DWORD_PTR ignored = 0;
        SendMessageTimeoutW(window, WM_ENDSESSION, ends ? TRUE : FALSE, why, SMTO_NORMAL, 8000, &ignored);
    }
}

TEST_F(CrashRecovery, TheEndOfTheSessionIsNotHeldUpAndLosesNothing) {
    constexpr unsigned longest = 20000;  // milliseconds
    constexpr LPARAM logoff = static_cast<LPARAM>(0x80000000);
    constexpr LPARAM forAnUpdate = 1;
    {
        test::ChildProcess first(program(), Arguments{fs::absolute("samples/article-1280x1024.png")});
        PostMessageW(topWindow(first, L"Error"), WM_CLOSE, 0, 0);
        const HWND window = mainWindow(first, L"article");
        ASSERT_NE(window, nullptr);
        annotate(window, 100, 120);
        ASSERT_TRUE(waitFor([&] { return textOf(window).find(L" * ") != std::wstring::npos; }, "the annotation"));
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
        ASSERT_TRUE(waitFor([window] { return IsIconic(window) != FALSE; }, "the minimised window"));
        test::ChildProcess second(program(), Arguments());
        EXPECT_EQ(second.wait(longest), 0);
        EXPECT_TRUE(waitFor([window] { return IsIconic(window) == FALSE; }, "the window again"));

        // An update wants its files: this time it ends, by itself.
        ASSERT_TRUE(askForTheEnd(first.id(), forAnUpdate));
        tellOfTheEnd(first.id(), true, forAnUpdate);
        EXPECT_EQ(first.wait(longest), 0);
    }
    EXPECT_TRUE(waitUntilKept(2));
    test::ChildProcess next(program(), Arguments());
    click(child(topWindow(next, L"Unsaved captures"), L"&Discard"));
    EXPECT_TRUE(waitFor([&] { return kept().empty(); }, "the end of what was kept"));
    // Without anything open there is nothing to do, and the program can be ended as ever.
    ASSERT_TRUE(askForTheEnd(next.id(), logoff));
    tellOfTheEnd(next.id(), false, logoff);
    test::ChildProcess terminator(program(), Arguments{L"-TERMINATE"});
    EXPECT_EQ(terminator.wait(longest), 0);
    EXPECT_EQ(next.wait(longest), 0);
}

}  // namespace
}  // namespace glimmer
