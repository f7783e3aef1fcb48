// Requests on a thread of their own, with the wait window, inside somebody else's message loop.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wx/dialog.h>
#include <wx/msw/wrapwin.h>

#include <atomic>
#include <chrono>

#include "common/assertion.h"
#include "common/debug_channel.h"
#include "common/files.h"
#include "common/inside_modal.h"
#include "network_servers.h"
#include "settings/options.h"
#include "settings/settings.h"
#include "support/recorded_messages.h"
#include "support/windows/dialog_driver.h"
#include "support/windows/forms.h"
#include "support/windows/native_tool.h"
#include "support/windows/system_objects.h"
#include "upload/http/call_thread.h"
#include "upload/http/request_runner.h"

using namespace glimmer;
using namespace glimmer::test;
using namespace std::chrono_literals;
using std::chrono::steady_clock;

namespace {

/// Presses Cancel as soon as it is there and the text below it has come so far.
DialogDriver::Step cancelWhen(const wchar_t* says, std::atomic<steady_clock::time_point>& pressed) {
    return {L"Please wait", [says, &pressed](HWND window) {
                for (const HWND label : childrenOf(window, L"Static"))
                    if (textOf(label).find(says) != std::wstring::npos) {
                        pressed = steady_clock::now();
                        return clickButton(window, L"Cancel");
                    }
                return false;
            }};
}

/// A host's window on this thread: counts its timer and its paintings, and has something done by the timer.
class HostWindow : NotCopied {
public:
    explicit HostWindow(std::function<void()> onTimer) : onTimer_(std::move(onTimer)) {
        WNDCLASSW kind{};
        kind.lpfnWndProc = &HostWindow::procedure;
        kind.hInstance = GetModuleHandleW(nullptr);
        kind.lpszClassName = L"HostWindow";
        RegisterClassW(&kind);
        window_ = CreateWindowExW(0, kind.lpszClassName, L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20, 20, 300, 200,
                                  nullptr, nullptr, kind.hInstance, nullptr);
        SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetTimer(window_, 1, 20, nullptr);
    }
    ~HostWindow() { DestroyWindow(window_); }

    std::atomic<int> ticks = 0;
    int paintings = 0;

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
        auto* const self = reinterpret_cast<HostWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (self != nullptr && message == WM_TIMER) {
            ++self->ticks;
            self->onTimer_();
            InvalidateRect(window, nullptr, TRUE);
        }
        if (self != nullptr && message == WM_PAINT) ++self->paintings;
        return DefWindowProcW(window, message, first, second);
    }

    std::function<void()> onTimer_;
    HWND window_ = nullptr;
};

class Runner : public testing::Test {
protected:
    void SetUp() override {
        if (!toolsAreHere()) GTEST_SKIP() << "the servers run on the system below Wine";
        picture_ = utf8FromPath(servers().folder() / "large.png");
        ASSERT_TRUE(std::filesystem::exists(pathFromUtf8(picture_)) ||
                    writeFile(pathFromUtf8(picture_), std::vector<uint8_t>(6U << 20U)).ok());
    }
    static NetworkServers& servers() { return NetworkServers::get(); }

    std::string picture_;
};

constexpr InternetPatience patient{.connect = 3000ms, .call = 2000ms, .answer = 3000ms};

}  // namespace

TEST_F(Runner, CancelsWhateverTheServerDoes) {
    const int left = CallThread::left();
    const auto begun = steady_clock::now();
    runRequests("Nothing to do...", [](RequestWorker&) {});
    const auto busy = steady_clock::now() - begun;  // this much the machine is with other things
    struct Case {
        const char* what;
        std::string uri;
        const wchar_t* says;
        RequestKind kind;
    };
    for (const Case& c : std::initializer_list<Case>{
             {"sending", servers().address("http", "deaf", ""), L"Sending, ", RequestKind::FormData},
             {"waiting", servers().http("silent"), L"Waiting for the answer", RequestKind::FormData},
             {"reading", servers().http("slowly"), L"Looking at", RequestKind::Get},
             {"connecting", servers().address("http", "unreachable", ""), L"Looking at", RequestKind::Get}}) {
        // A connection that is coming about ends when the system gives it up, which takes minutes; all others soon.
        if (c.what == std::string_view("connecting")) {
            EXPECT_TRUE(pumpUntil([&] { return CallThread::left() == left; }, "the end of the system's calls"));
        }
        std::atomic<steady_clock::time_point> pressed{};
        ClientFailure failure;
        const RecordedMessages messages;
        bool done = true;
        {
            const DialogDriver driver({cancelWhen(c.says, pressed)});
            done = runRequests(
                "Looking at a picture...",
                [&](RequestWorker& worker) {
                    const auto client = worker.newClient();
                    client->AddPostArgument("file", picture_, true);
                    client->Request(c.uri, c.kind);
                    failure = client->failure();
                },
                patient);
        }
        const auto took = steady_clock::now() - pressed.load();
        EXPECT_FALSE(done) << c.what;
        EXPECT_LT(took, 1s + 5 * busy) << c.what;
        EXPECT_TRUE(failure.cancelled) << c.what << ": " << failure.text;
        showFailure(failure);
        EXPECT_TRUE(messages.messages.empty()) << "the user knows";
        EXPECT_TRUE(std::filesystem::exists(pathFromUtf8(picture_)));
    }
}

TEST_F(Runner, LetsTheHostLiveAndEndsWithIt) {
    watchModalDialogs();
    std::atomic<bool> close = false;
    bool inside = false;
    HostWindow host([&] {
        inside = inside || insideModal();
        if (!close) return;
        for (wxWindow* window : wxTopLevelWindows)  // as a shut-down does
            if (auto* dialog = dynamic_cast<wxDialog*>(window); dialog != nullptr && dialog->IsModal())
                dialog->EndModal(wxID_CANCEL);
    });
    const auto start = steady_clock::now();
    const bool done = runRequests(
        "Looking at a picture...",
        [&](RequestWorker& worker) {
            const auto client = worker.newClient();
            EXPECT_TRUE(client->Request(servers().http("echo"), RequestKind::Get)) << client->failure().text;
            while (!worker.cancelled()) {
                if (host.ticks > 20) close = true;
                EXPECT_LT(steady_clock::now() - start, 20s);
                if (steady_clock::now() - start > 20s) return;
                Sleep(5);
            }
        },
        patient);
    EXPECT_FALSE(done);
    EXPECT_TRUE(inside) << "counts as an open dialog";
    EXPECT_FALSE(insideModal());
    EXPECT_GT(host.ticks, 20);
    EXPECT_GT(host.paintings, 10) << "the host's window is painted meanwhile";
}

TEST_F(Runner, KeepsWorkersAwayFromWhatBelongsToTheWindows) {
    std::vector<std::pair<std::string, DWORD>> lines;
    const DebugChannel before =
        setDebugChannel([&](std::string_view line) { lines.emplace_back(line, GetCurrentThreadId()); });
    setDebugDetailsWanted([] { return true; });
    for (const auto& touch :
         std::initializer_list<void (*)()>{[] { OptionsHolder(); }, [] { settings(); }, [] { showError("x"); },
                                           [] { runRequests("x", [](RequestWorker&) {}); }})
        EXPECT_THROW(runRequests("Working...", [&](RequestWorker&) { touch(); }), AssertionFailure);
    W3Client ours(systemInternet());
    EXPECT_TRUE(runRequests("Working...", [&](RequestWorker& worker) {
        EXPECT_THROW(ours.Request(servers().http("echo"), RequestKind::Get), AssertionFailure);
        EXPECT_TRUE(worker.newClient()->Request(servers().http("echo?token=1"), RequestKind::Get));
    }));
    setDebugChannel(before);
    setDebugDetailsWanted({});
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back().first, "Request complete");
    for (const auto& [line, thread] : lines) EXPECT_EQ(thread, GetCurrentThreadId()) << line;
}

TEST_F(Runner, LeavesNoHandleBehind) {
    const auto once = [&] {
        EXPECT_TRUE(runRequests("Working...", [&](RequestWorker& worker) {
            const auto client = worker.newClient();
            client->AddPostArgument("file", utf8FromPath(servers().folder() / "ports"), true);
            EXPECT_TRUE(client->Request(servers().http("quiet"), RequestKind::FormData)) << client->failure().text;
            EXPECT_FALSE(client->Request(servers().http("half"), RequestKind::Get));
        }));
    };
    once();
    once();
    const SystemObjects first = countObjects();
    for (int i = 0; i < 3; ++i) once();
    pumpUntil([&] { return countObjects().handles <= first.handles; }, "as many handles as before");
}
