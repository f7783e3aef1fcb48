#include "host/program/delivery.h"

#include "capture/capture_options.h"
#include "common/sound.h"
#include "host/program/start_rules.h"
#include "host/program/uProgram.h"
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

void deliverPixels(Delivery delivery) {
    const Size output = CaptureOptions::load(settings()).outputFor(delivery.bitmap->size());
    delivery.width = output.width;
    delivery.height = output.height;
    deliver(std::move(delivery));
}

void playDeliverySound() {
    if (CaptureOptions::load(settings()).playSound) playSound(Sound::Capture);
}

int32_t playDeliverySound(int32_t code) {
    const CaptureCode parts = splitCaptureCode(code);
    if (!parts.silent) playDeliverySound();
    return parts.action;
}

void prepareMainEditor() {
    if (!pProgram->hidden()) pProgram->prepareMainEditor();
}

}  // namespace glimmer
