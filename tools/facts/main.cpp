// facts.exe [FILE] [--seconds-for-the-wheel N]: asks, prints the answers, and writes them to the file ("facts.txt" in
// the program's folder when none is named).

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "common/system_library.h"
#include "facts.h"

namespace {

using namespace glimmer::facts;

std::atomic<bool> done = false;

/// A system that does not answer shall not keep anybody waiting; what was answered stands on the screen.
void giveUpAfter(int seconds) {
    for (int waited = 0; waited < seconds * 10; ++waited) {
        if (done) return;
        Sleep(100);
    }
    std::printf("\nThe last question was not answered in time.\n");
    std::fflush(stdout);
    TerminateProcess(GetCurrentProcess(), 3);
}

std::filesystem::path programFolder() {
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).parent_path();
}

/// As the program's own manifest has it, which cannot be used here: without it the answers on common controls differ.
void becomeAwareOfScaling() {
    const auto set = glimmer::systemFunction<BOOL(WINAPI*)(HANDLE)>(L"user32.dll", "SetProcessDpiAwarenessContext");
    const HANDLE perMonitor = reinterpret_cast<HANDLE>(INT_PTR{-4});
    if (set == nullptr || set(perMonitor) == FALSE) SetProcessDPIAware();
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    std::filesystem::path file = programFolder() / "facts.txt";
    int seconds = 10;
    for (int at = 1; at < count; ++at) {
        if (std::wstring(arguments[at]) == L"--seconds-for-the-wheel" && at + 1 < count)
            seconds = _wtoi(arguments[++at]);
        else
            file = arguments[at];
    }
    becomeAwareOfScaling();
    constexpr int patience = 60;
    std::thread watch(giveUpAfter, patience + seconds);
    Report report;
    const struct {
        const char* heading;
        void (*ask)(Report&);
    } questions[] = {
        {"The system", askSystem},
        {"Common controls in a host without a manifest", askControlClasses},
        {"Files", askFiles},
        {"Times of files", askFileTimes},
        {"Text in a rich edit", askRichEdit},
        {"A list of icons", askIconView},
        {"Pictures of windows", askScreenCopies},
        {"Windows that fade", askFading},
        {"Hot keys", askHotKeys},
        {"The clipboard", askClipboard},
    };
    for (const auto& question : questions) {
        report.heading(question.heading);
        question.ask(report);
    }
    report.heading("The wheel, or two fingers on a touch pad");
    askWheel(report, seconds);
    done = true;
    watch.join();

    std::FILE* out = _wfopen(file.c_str(), L"wb");
    if (out == nullptr || std::fwrite(report.text().data(), 1, report.text().size(), out) != report.text().size()) {
        std::printf("\n%s cannot be written.\n", file.string().c_str());
        return 1;
    }
    std::fclose(out);
    // Started by a double click, the window of this text goes with the program.
    DWORD process = 0;
    if (GetConsoleProcessList(&process, 1) == 1 && seconds > 0) {
        std::printf("\nAlso in %s. Press Enter.\n", file.string().c_str());
        (void)std::getchar();
    }
    return 0;
}
