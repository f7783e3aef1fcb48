#include "host/program/delivery.h"

#include <utility>

#include "capture/capture_options.h"
#include "common/sound.h"
#include "imaging/png_codec.h"
#include "imaging/scaling.h"
#include "settings/settings.h"

namespace glimmer {

void askForOutputSize(Delivery& delivery) {
    delivery.size = CaptureOptions::load(settings()).outputFor(delivery.picture.size());
}

Status receivePicture(Delivery& delivery) {
    if (!delivery.unusable.empty()) return Failure{delivery.unusable};
    if (delivery.png) {
        Result<PngPicture> decoded = readPng(*delivery.png);
        if (!decoded) return decoded.failure();
        delivery.picture = std::move(decoded->bitmap);
    }
    const Size size = delivery.size;
    if (delivery.picture.empty() || size.width <= 0 || size.height <= 0 || delivery.picture.size() == size) return {};
    Result<TBitmap> fitted = resized(delivery.picture, size.width, size.height);
    delivery.picture = TBitmap();
    if (!fitted) return fitted.failure();
    delivery.picture = fitted.take();
    return {};
}

void playDeliverySound() {
    if (CaptureOptions::load(settings()).playSound) playSound(Sound::Capture);
}

}  // namespace glimmer
