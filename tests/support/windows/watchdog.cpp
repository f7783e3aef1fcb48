#include "support/windows/watchdog.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <cstdio>
#include <string>
#include <thread>

#include "support/windows/host_windows.h"

namespace glimmer::test {

namespace {

constexpr UINT hungExitCode = 3;

/// Prints an address as file name + offset, if it lies in code. Answers whether it did.
bool printPlace(uintptr_t address) {
    MEMORY_BASIC_INFORMATION region = {};
    if (VirtualQuery(reinterpret_cast<const void*>(address), &region, sizeof region) == 0) return false;
    constexpr DWORD code = PAGE_EXECUTE | PAGE_EXECUTE_READ | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
    if (region.Type != MEM_IMAGE || (region.Protect & code) == 0) return false;
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(static_cast<HMODULE>(region.AllocationBase), path, MAX_PATH);
    const wchar_t* name = wcsrchr(path, L'\\');
    std::fprintf(stderr, "  %ls + %#lx\n", name != nullptr ? name + 1 : path,
                 static_cast<unsigned long>(address - reinterpret_cast<uintptr_t>(region.AllocationBase)));
    return true;
}

/// Whatever on the thread's stack looks like a return address. Some of it is left over from calls that are done, but
/// the calls that are not are among them, in their order.
void printStack(HANDLE thread) {
    SuspendThread(thread);
    CONTEXT context = {};
    context.ContextFlags = CONTEXT_CONTROL;
    GetThreadContext(thread, &context);
#ifdef _WIN64
    const uintptr_t at = context.Rip;
    const uintptr_t stack = context.Rsp;
#else
    const uintptr_t at = context.Eip;
    const uintptr_t stack = context.Esp;
#endif
    printPlace(at);
    const auto* words = reinterpret_cast<const uintptr_t*>(stack);
    constexpr int mostWords = 4000;
    constexpr int mostPlaces = 150;
    MEMORY_BASIC_INFORMATION region = {};
    VirtualQuery(words, &region, sizeof region);
    const auto end = reinterpret_cast<uintptr_t>(region.BaseAddress) + region.RegionSize;
    int places = 0;
    for (int i = 0; i < mostWords && places < mostPlaces && reinterpret_cast<uintptr_t>(words + i + 1) <= end; ++i)
        places += printPlace(words[i]) ? 1 : 0;
}

class Watchdog : public testing::EmptyTestEventListener {
public:
    explicit Watchdog(unsigned seconds) : limit_(ULONGLONG{seconds} * 1000) {
        DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &thread_, 0, FALSE,
                        DUPLICATE_SAME_ACCESS);
        std::thread([this, thread = GetCurrentThreadId()] { watch(thread); }).detach();
    }

    void OnTestStart(const testing::TestInfo& test) override {
        name_ = test.name();
        end_ = GetTickCount64() + limit_;
    }
    void OnTestEnd(const testing::TestInfo&) override { end_ = 0; }

private:
    void watch(DWORD thread) {
        constexpr DWORD step = 100;  // milliseconds
        for (;;) {
            Sleep(step);
            const ULONGLONG end = end_;
            if (end == 0 || GetTickCount64() < end) continue;
            std::fprintf(stderr, "%s hangs. Its windows:\n%s\nIts stack:\n", name_, describeWindows(thread).c_str());
            printStack(thread_);
            std::fflush(stderr);
            TerminateProcess(GetCurrentProcess(), hungExitCode);
        }
    }

    ULONGLONG limit_;
    HANDLE thread_ = nullptr;
    std::atomic<ULONGLONG> end_ = 0;
    const char* name_ = "";
};

}  // namespace

void startWatchdog(unsigned seconds) {
    testing::UnitTest::GetInstance()->listeners().Append(new Watchdog(seconds));  // owned by the list
}

}  // namespace glimmer::test
