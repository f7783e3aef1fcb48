// Commands that take pixels and hand encoded pictures back.

#include <windows.h>

#include <optional>

#include "capture/own_capture.h"
#include "capture/window_grab.h"
#include "common/wide_text.h"
#include "glimmerpad.h"
#include "host/commands/host_commands.h"
#include "host/commands/json_payload.h"
#include "host/program/delivery.h"
#include "host/program/host_state.h"
#include "host/program/uProgram.h"
#include "settings/message_box.h"

namespace glimmer {

namespace {

/// Captures what the window in front shows inside its frame, as the JSON text describes.
int32_t grabForeground(const CommandArguments& arguments) {
    std::optional<CapturePayload> payload = readCapturePayload(arguments.text1());
    if (!payload || !ensureProgram()) return 0;
    Result<TBitmap> picture = takeWithoutOwnWindows([] { return grabClientArea(windowInFront()); });
    if (!picture) {
        showError(picture.message());
        return 0;
    }
    pProgram->prepareForDelivery();
    const CaptureCode code = splitCaptureCode(payload->action);
    if (!code.silent) playDeliverySound();
    Delivery delivery;
    delivery.url = std::move(payload->url);
    delivery.title = std::move(payload->title);
    delivery.picture = picture.take();
    delivery.action = code.action;
    askForOutputSize(delivery);
    pProgram->HandleCapture(std::move(delivery));
    return 1;
}

}  // namespace

int32_t commandGetBitmapDC(const CommandArguments& arguments) {
    std::optional<DrawingSurface>& pending = hostState().pendingBitmap;
    pending.reset();
    if (arguments.out == nullptr) return 0;
    auto* context = static_cast<HDC*>(arguments.out);
    *context = nullptr;
    Result<DrawingSurface> surface = DrawingSurface::create(arguments.number1(), arguments.number2());
    if (!surface) return 0;
    pending = surface.take();
    *context = static_cast<HDC>(pending->deviceContext());
    return 1;
}

int32_t commandGrabTB(const CommandArguments& arguments) { return grabForeground(arguments); }

int32_t commandCaptureBrowser(const CommandArguments& arguments) { return grabForeground(arguments); }

int32_t commandGetEncodedContent(const CommandArguments& arguments) {
    auto* content = static_cast<GlimmerpadContent*>(arguments.out);
    if (content == nullptr) return 0;
    *content = {};
    if (!pProgram) return 1;
    const EncodedContent& encoded = pProgram->encodedContent();
    if (const std::string& text = encoded.text(); !text.empty()) {
        *content = {text.c_str(), static_cast<uint32_t>(text.size())};
    } else if (const std::vector<uint8_t>& image = encoded.image(); !image.empty()) {
        *content = {image.data(), static_cast<uint32_t>(image.size())};
    }
    return 1;
}

int32_t commandStoreEncodedContent(const CommandArguments& arguments) {
    if (!pProgram || arguments.arg1 == 0) return 0;
    const auto* text = reinterpret_cast<const wchar_t*>(arguments.arg1);
    return pProgram->storeEncodedContent(fromWide(text, GLIMMERPAD_MAX_PAYLOAD)) ? 1 : 0;
}

}  // namespace glimmer
