// The five functions that a host calls, each with a boundary that no exception crosses.

#include "host/entry/entry_points.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstring>

#include "common/boundary.h"
#include "common/debug_channel.h"
#include "common/host_kind.h"
#include "common/library_module.h"
#include "common/wide_text.h"
#include "host/commands/host_commands.h"
#include "host/program/delivery.h"
#include "host/program/host_state.h"
#include "host/program/miscutils.h"
#include "host/program/readable_memory.h"
#include "host/program/screen_commands.h"
#include "host/program/start_rules.h"
#include "host/program/toolkit.h"
#include "host/program/uProgram.h"
#include "imaging/png_codec.h"

namespace glimmer {

namespace {

GlimmerpadHostNotify HostNotify = nullptr;

std::atomic<DWORD> ownThread = 0;

/// Whether this is the thread that the library lives on: the one that introduced the host, for good as soon as there is
/// something that belongs to a thread.
bool onOurThread() {
    const DWORD current = GetCurrentThreadId();
    DWORD none = 0;
    if (ownThread.compare_exchange_strong(none, current) || none == current) return true;
    debugRemark("a call from another thread is refused");
    return false;
}

void callHost(const std::string& name, const std::string& value) {
    if (HostNotify == nullptr) return;
    const HostCall call;  // the host may call back from there
    const HostSurroundings host;
    HostNotify(name.c_str(), toWide(value).c_str());
}

std::string hostText(const wchar_t* text) { return fromWide(text, GLIMMERPAD_MAX_TEXT); }

std::string fileNameOf(const std::string& path) { return path.substr(folderOf(path).size()); }

void GLIMMERPAD_CALL hostInit(uint8_t kind, const GlimmerpadHostRecord* host) {
    if (host == nullptr) return;
    if (!toolkitRuns()) ownThread = GetCurrentThreadId();
    if (!onOurThread()) return;
    HostSurroundings::remember();
    guarded([=] {
        HostNotify = host->notify;
        setNotifyHandler(callHost);
        setHost(refinedHostKind(static_cast<HostKind>(kind), fileNameOf(moduleFile(nullptr))));
    });
}

void GLIMMERPAD_CALL hostCapture(const wchar_t* url, const wchar_t* title, const wchar_t* tag, const void* data,
                                 int32_t action, int32_t width, int32_t height) {
    if (!onOurThread()) return;
    guarded([=] {
        const HostCall call;
        if (shutdownWaits() || !ensureProgram()) return;
        pProgram->prepareForDelivery();
        pProgram->offerIntegration(IntegrationMoment::Delivered);
        Delivery delivery;
        delivery.url = hostText(url);
        delivery.title = hostText(title);
        delivery.tag = hostText(tag);
        if (data != nullptr) {
            // It comes without a length.
            const auto* bytes = static_cast<const uint8_t*>(data);
            const Result<size_t> length = measurePng(bytes, isReadable);
            if (length) {
                delivery.png = std::span(bytes, *length);
            } else {
                delivery.unusable = length.message();
            }
        }
        delivery.action = static_cast<CaptureAction>(action);
        delivery.size = {width, height};
        pProgram->HandleCapture(std::move(delivery));
    });
}

void GLIMMERPAD_CALL hostShutdown() {
    if (!onOurThread()) return;
    guarded([] {
        const HostCall call;
        shutDownProgram();
    });
}

int32_t GLIMMERPAD_CALL hostExecute(const wchar_t* command, void* out, uintptr_t arg1, uintptr_t arg2) {
    if (command == nullptr || !onOurThread()) return 0;
    return guarded(0, [=] {
        const HostCall call;
        return shutdownWaits() ? 0 : executeCommand(hostText(command), {out, arg1, arg2});
    });
}

void GLIMMERPAD_CALL hostFinishCapture(const wchar_t* url, const wchar_t* title, int32_t code) {
    if (!onOurThread()) return;
    guarded([=] {
        const HostCall call;
        if (shutdownWaits()) return;
        std::optional<DrawingSurface>& pending = hostState().pendingBitmap;
        if (!pProgram || !pending) return;
        const CaptureCode parts = splitCaptureCode(code);
        Delivery delivery;
        delivery.url = hostText(url);
        delivery.title = hostText(title);
        delivery.picture = std::move(*pending).takeBitmap();
        delivery.action = parts.action;
        pending.reset();
        if (!parts.silent) playDeliverySound();
        askForOutputSize(delivery);
        pProgram->HandleCapture(std::move(delivery));
    });
}

/// A function's address as a word of the record. In a 64-bit build the library is linked to a place where it fits.
template <class Function>
uint32_t wordOf(Function* function) {
    return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(function));
}

}  // namespace

bool fillInterface(GlimmerpadInterface* record, uint32_t size) {
    if (toolkitRuns() && !onOurThread()) return false;
    HostNotify = nullptr;
    setNotifyHandler(nullptr);
    // While a shutdown waits nobody is asked anything; it puts the questions back itself.
    if (!shutdownWaits())
        guarded([] {
            connectSystem();
            TProgram::setCaptureMenu(showCaptureMenu);
        });
    if (record == nullptr || record->version != GLIMMERPAD_INTERFACE_VERSION) return false;
    const GlimmerpadInterface filled = {GLIMMERPAD_INTERFACE_VERSION, wordOf(hostInit),    wordOf(hostCapture),
                                        wordOf(hostShutdown),         wordOf(hostExecute), wordOf(hostFinishCapture)};
    // The host's size counts; what lies behind the record is nobody's business.
    std::memcpy(static_cast<void*>(record), &filled, std::min<size_t>(size, sizeof filled));
    return true;
}

}  // namespace glimmer
