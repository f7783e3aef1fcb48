#include "host/delivery.h"

#include "capture/capture_options.h"
#include "common/sound.h"
#include "host/start_rules.h"
#include "host/uProgram.h"
#include "settings/settings.h"

namespace glimmer {

void deliver(Delivery delivery) {
    if (!delivery.unusable.empty()) {
        pProgram->refusePicture(delivery.unusable, static_cast<uint32_t>(delivery.action));
        return;
    }
    pProgram->HandleCapture(delivery.url, delivery.title, delivery.tag, delivery.png, std::move(delivery.bitmap),
                            static_cast<uint32_t>(delivery.action), delivery.width, delivery.height);
}

void deliverPixels(std::string url, std::string title, TBitmap bitmap, int32_t code) {
    const CaptureOptions options = CaptureOptions::load(settings());
    const Size output = options.outputFor(bitmap.size());
    const CaptureCode parts = splitCaptureCode(code);
    if (options.playSound && !parts.silent) playSound(Sound::Capture);
    Delivery delivery;
    delivery.url = std::move(url);
    delivery.title = std::move(title);
    delivery.bitmap = std::move(bitmap);
    delivery.action = parts.action;
    delivery.width = output.width;
    delivery.height = output.height;
    deliver(std::move(delivery));
}

void prepareMainEditor() {
    if (!pProgram->hidden()) pProgram->prepareMainEditor();
}

}  // namespace glimmer
