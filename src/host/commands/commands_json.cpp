// Commands whose arguments are a function name and a JSON payload.

#include <windows.h>

#include <array>
#include <optional>
#include <string>
#include <utility>

#include "capture/browser_window.h"
#include "capture/tile_join.h"
#include "capture/window_grab.h"
#include "common/json.h"
#include "common/monitors.h"
#include "glimmerpad.h"
#include "host/commands/host_commands.h"
#include "host/commands/json_payload.h"
#include "host/program/delivery.h"
#include "host/program/host_state.h"
#include "host/program/readable_memory.h"
#include "host/program/start_rules.h"
#include "host/program/uProgram.h"
#include "settings/message_box.h"

namespace glimmer {

namespace {

/// The bytes of a payload in the host's memory; nothing when it is missing, too long or not readable.
std::optional<std::span<const uint8_t>> payloadBytes(uintptr_t argument) {
    const auto* payload = reinterpret_cast<const GlimmerpadPayload*>(argument);
    if (!isReadable(reinterpret_cast<const uint8_t*>(payload), sizeof *payload)) return std::nullopt;
    const auto* bytes = static_cast<const uint8_t*>(payload->bytes);
    if (payload->length > GLIMMERPAD_MAX_PAYLOAD || !isReadable(bytes, payload->length)) return std::nullopt;
    return std::span(bytes, payload->length);
}

int32_t captureInit() {
    HostState& state = hostState();
    state.captureTiles.clear();
    state.ChromeRenderWidget = findChromeRenderWidget();
    if (state.ChromeRenderWidget != nullptr) return 1;
    showError("An error occured while capturing from Chrome.\nMake sure Chrome browser is active when capturing.");
    return 0;
}

int32_t captureTab() {
    HostState& state = hostState();
    if (state.ChromeRenderWidget == nullptr) return 0;
    Result<TBitmap> tile = grabWholeWindow(state.ChromeRenderWidget);
    if (!tile) {
        // Told once; the pieces that are still to come would have the same fate.
        if (IsWindow(static_cast<HWND>(std::exchange(state.ChromeRenderWidget, nullptr))) != FALSE)
            showError(tile.message());
        return 0;
    }
    state.captureTiles.push_back(tile.take());
    return 1;
}

/// Pixels; on the monitor that the pieces were taken from.
int32_t scrollBarThickness() {
    RECT place{};
    if (GetWindowRect(static_cast<HWND>(hostState().ChromeRenderWidget), &place) == FALSE)
        return GetSystemMetrics(SM_CXVSCROLL);
    return systemMetricAt({middle(place.left, place.right), middle(place.top, place.bottom)}, SM_CXVSCROLL);
}

int32_t captureDone(const JsonObject& parameters) {
    PageTiles page = PageTiles::read(parameters);
    if (!page.joinable() || hostState().captureTiles.empty()) {
        hostState().captureTiles.clear();
        return 0;
    }
    if (!ensureProgram()) return 0;
    std::vector<TBitmap> tiles = std::exchange(hostState().captureTiles, {});
    pProgram->prepareForDelivery();
    playDeliverySound();
    Result<TBitmap> joined = joinTiles(page, std::move(tiles), scrollBarThickness());
    if (!joined) {
        showError(joined.message());
        return 0;
    }
    Delivery delivery;
    delivery.url = std::move(page.url);
    delivery.title = std::move(page.title);
    delivery.tag = std::move(page.key);
    delivery.picture = joined.take();
    delivery.action = splitCaptureCode(page.action).action;
    askForOutputSize(delivery);
    pProgram->HandleCapture(std::move(delivery));
    return 1;
}

/// "captureFX" and "openIECapture": a page that the host captured, as PNG inside the payload.
int32_t captureFromPayload(std::string_view json) {
    std::optional<CapturePayload> payload = readCapturePayload(json);
    if (!payload || payload->image.empty() || !ensureProgram()) return 0;
    pProgram->prepareForDelivery();
    const CaptureCode code = splitCaptureCode(payload->action);
    if (!code.silent) playDeliverySound();
    Delivery delivery;
    delivery.url = std::move(payload->url);
    delivery.title = std::move(payload->title);
    delivery.png = payload->image;
    delivery.action = code.action;
    delivery.size = {payload->width, payload->height};
    pProgram->HandleCapture(std::move(delivery));
    return 1;
}

}  // namespace

int32_t commandJSONFunctionZ(const CommandArguments& arguments) {
    const std::string name = arguments.text1();
    const auto packed = payloadBytes(arguments.arg2);
    if (!packed || (name != "captureFX" && name != "openIECapture")) return 0;
    const std::optional<std::string> json = unpackZlib(*packed, GLIMMERPAD_MAX_PAYLOAD);
    return json ? captureFromPayload(*json) : 0;
}

int32_t commandJSONFunction(const CommandArguments& arguments) {
    const std::string name = arguments.text1();
    const auto bytes = payloadBytes(arguments.arg2);
    if (!bytes) return 0;
    const auto json = JsonObject::parse({reinterpret_cast<const char*>(bytes->data()), bytes->size()});
    if (!json) return 0;
    if (name == "captureInit") return captureInit();
    if (name == "captureTab") return captureTab();
    if (name == "captureDone") return captureDone(*json);
    return 0;
}

}  // namespace glimmer
