// main_editor_bench: the main window with forty long pages. Windows only: a program of its own, since it needs the
// toolkit and a screen.

#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/hyperlink.h>
#include <wx/init.h>
#include <wx/listctrl.h>
#include <wx/log.h>
#include <wx/msw/wrapwin.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <stdexcept>

#include "common/section_memory.h"
#include "editor/annotations/shapes_list.h"
#include "editor/commands/set_info.h"
#include "editor/document/document.h"
#include "editor/painting/cairo_text_painter.h"
#include "harness.h"
#include "main_window/capture_list.h"
#include "main_window/thumb_creator.h"
#include "main_window/uMainEditor.h"
#include "output/uSaver.h"
#include "settings/message_box.h"
#include "settings/options.h"

namespace glimmer::bench {

namespace {

constexpr Size longPage{1280, 10000};
constexpr int pages = 40;

std::unique_ptr<CaptureDocument> newCapture(int number) {
    CaptureInfo info;
    info.name = "page " + std::to_string(number);
    auto document = CaptureDocument::create(pagePicture("table-1280x10000.png", longPage, PixelFormat::Bgra32), info);
    (*document)->markSaved();
    return document.take();
}

/// Whatever the last action has left to do: messages, idle work, painting.
void settle(wxWindow& window) {
    wxEventLoopBase* loop = wxEventLoopBase::GetActive();
    while (loop->Pending()) loop->Dispatch();
    loop->ProcessIdle();
    wxTheApp->ProcessPendingEvents();
    window.Update();
}

/// As the user does it, who has chosen not to be asked.
void removeLast(TMainEditor& editor, CaptureList& list) {
    list.select([&editor](size_t place) { return place + 1 == editor.session().size(); });
    OptionsHolder().setNumber("cmbDeleteCaptures", 1);
    wxWindow* label = editor.FindWindow("lblDeleteSelected");
    wxHyperlinkEvent event(label, wxID_ANY, "");
    label->ProcessWindowEvent(event);
}

void clickOn(wxListCtrl& list, long item) {
    wxRect area;
    list.GetItemRect(item, area, wxLIST_RECT_ICON);
    const LPARAM at = MAKELPARAM(area.x + area.width / 2, area.y + area.height / 2);
    SendMessageW(list.GetHWND(), WM_LBUTTONDOWN, MK_LBUTTON, at);
    SendMessageW(list.GetHWND(), WM_LBUTTONUP, 0, at);
}

/// Empty; what the benchmarks leave is not offered to the user of the next program.
std::filesystem::path recoveryOfItsOwn() {
    std::filesystem::path folder = std::filesystem::absolute("build/bench-recovery");
    std::filesystem::remove_all(folder);
    return folder;
}

void measureWindow() {
    TSaver saver;
    auto* editor = new TMainEditor(saver, recoveryOfItsOwn());
    pMainEditor = editor;
    editor->showRoutine();
    for (int i = 0; i < pages; ++i) {
        editor->session().add(newCapture(i));
        settle(*editor);
    }
    auto* list = dynamic_cast<CaptureList*>(editor->FindWindow("lvAnnotations"));
    int at = 0;
    std::unique_ptr<CaptureDocument> next;
    const std::vector<double> times = compare({
        {"switch to another capture",
         [&] {
             clickOn(*list, at);
             settle(*editor);
             if (editor->session().current()->info().name != "page " + std::to_string(at))
                 throw std::runtime_error("the click showed no other capture");
         },
         [&] {
             at = (at + 17) % pages;
             list->EnsureVisible(at);
             settle(*editor);
         }},
        {"select all",
         [&] {
             list->select([](size_t) { return true; });
             settle(*editor);
         },
         [&] {
             list->select([](size_t place) { return place == 0; });
             settle(*editor);
         }},
        {"add a capture to forty",
         [&] {
             editor->session().add(std::move(next));
             settle(*editor);
         },
         [&] {
             while (editor->session().size() > pages) removeLast(*editor, *list);
             next = newCapture(pages);
             settle(*editor);
         }},
    });
    CairoTextPainter text;
    const TThumbCreator creator({132, 99}, rgb(255, 255, 255));
    const auto page = newCapture(0);
    const std::vector<double> thumbnail =
        compare({{"thumbnail", [&] { (void)creator.create(*page, text, {}, false); }}});
    printTable("Main window with forty captures of 1280 x 10000 (milliseconds until painted)",
               {"action", "time", "limit"},
               {{"switch to another capture", milliseconds(times[0]), "100"},
                {"select all", milliseconds(times[1]), "100"},
                {"add a capture", milliseconds(times[2]), "100"},
                {"thumbnail of a capture", milliseconds(thumbnail[0]), "10"}});
    editor->Close(true);
    wxEventLoopBase::GetActive()->ProcessIdle();  // destroys it
}

/// Forty captures come at once, one of them with two hundred annotations: how long the rounds of the thumbnails' timer
/// hold up the message loop.
void measureThumbnails() {
    using Clock = std::chrono::steady_clock;
    const auto since = [](Clock::time_point start) {
        return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    };
    TSaver saver;
    auto* editor = new TMainEditor(saver, recoveryOfItsOwn());
    pMainEditor = editor;
    editor->showRoutine();
    settle(*editor);
    for (int i = 0; i < pages; ++i) {
        CaptureInfo info;
        info.name = "page " + std::to_string(i);
        TBitmap page = pagePicture("table-1280x10000.png", longPage, PixelFormat::Bgra32);
        editor->session()
            .add(CaptureDocument::create(std::move(page), info, i == 20 ? pageAnnotations() : TShapesList{}).take())
            .markSaved();
    }
    // All timers of the window; that of the thumbnails is the one that works. It is done when it rests for a second,
    // which is longer than it lets a changed capture wait.
    std::vector<double> rounds;
    const Clock::time_point start = Clock::now();
    Clock::time_point worked = start;
    MSG message{};
    while (since(worked) < 1000 && GetMessageW(&message, nullptr, 0, 0) > 0) {
        const Clock::time_point before = Clock::now();
        DispatchMessageW(&message);
        if (message.message != WM_TIMER || since(before) < 1) continue;
        rounds.push_back(since(before));
        worked = Clock::now();
    }
    std::sort(rounds.begin(), rounds.end());
    printTable("Thumbnails of forty captures of 1280 x 10000, one of them with 200 annotations",
               {"", "reached", "limit"},
               {{"rounds of the timer that did something", std::to_string(rounds.size()), ""},
                {"median, ms", milliseconds(rounds.at(rounds.size() / 2)), ""},
                {"longest round, ms", milliseconds(rounds.back()), "30"},
                {"until all are made, s", milliseconds(since(start) / 1000 - 1), ""}});
    editor->Close(true);
    wxEventLoopBase::GetActive()->ProcessIdle();  // destroys it
}

/// A capture with annotations gets its first change: how long the rounds of the recovery folder's timer hold up the
/// message loop until it is kept, and how soon that is.
void measureKeeping() {
    namespace fs = std::filesystem;
    using Clock = std::chrono::steady_clock;
    const auto since = [](Clock::time_point start) {
        return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    };
    const fs::path folder = recoveryOfItsOwn();
    TSaver saver;
    auto* editor = new TMainEditor(saver, folder);
    pMainEditor = editor;
    editor->showRoutine();
    TBitmap page = pagePicture("table-1280x10000.png", longPage, PixelFormat::Bgra32);
    auto made = CaptureDocument::create(std::move(page), {}, pageAnnotations()).take();
    CaptureDocument& capture = *made;
    capture.markSaved();
    editor->session().add(std::move(made));
    // Its thumbnail, too, which lays out two hundred labels.
    for (const Clock::time_point opened = Clock::now(); since(opened) < 1000;) settle(*editor);
    static_cast<void>(capture.run(std::make_unique<SetInfo>(SetInfo::Field::Notes, "changed")));
    const auto kept = [&folder] {
        const auto inRun = fs::recursive_directory_iterator(folder);
        return std::any_of(begin(inRun), end(inRun), [](const fs::directory_entry& entry) {
            return entry.path().filename() == "capture.manifest";
        });
    };
    const Clock::time_point start = Clock::now();
    // By timer: the one whose round completes it is the one to measure.
    std::map<WPARAM, std::vector<double>> roundsOf;
    MSG message{};
    while (!kept() && GetMessageW(&message, nullptr, 0, 0) > 0) {
        const Clock::time_point before = Clock::now();
        DispatchMessageW(&message);
        if (message.message == WM_TIMER) roundsOf[message.wParam].push_back(since(before));
    }
    const double seconds = since(start) / 1000;
    std::vector<double>& rounds = roundsOf[message.wParam];
    std::sort(rounds.begin(), rounds.end());
    printTable("Keeping a changed capture of 1280 x 10000 with 200 annotations in the recovery folder",
               {"", "reached", "limit"},
               {{"round of the timer, median, ms", milliseconds(rounds[rounds.size() / 2]), ""},
                {"longest round, ms", milliseconds(rounds.back()), "30"},
                {"until the capture is kept, s", milliseconds(seconds), "5"}});
    capture.markSaved();
    editor->Close(true);
    wxEventLoopBase::GetActive()->ProcessIdle();  // destroys it
    fs::remove_all(folder);
}

}  // namespace

}  // namespace glimmer::bench

int main() {
    SetProcessDPIAware();
    wxApp::SetInstance(new wxApp);
    int none = 0;
    if (!wxEntryStart(none, static_cast<wxChar**>(nullptr)) || !wxTheApp->CallOnInit()) return 2;
    wxTheApp->SetExitOnFrameDelete(false);
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the toolkit deletes the program's object
    delete wxLog::SetActiveTarget(new wxLogStderr);
    wxGUIEventLoop loop;
    const wxEventLoopActivator activate(&loop);
    glimmer::setMessageBoxes(nullptr);
    glimmer::setPixelAllocator(glimmer::sectionPixelMemory);
    glimmer::bench::measureThumbnails();
    glimmer::bench::measureKeeping();
    glimmer::bench::measureWindow();
    wxTheApp->OnExit();
    wxEntryCleanup();
    return 0;
}
