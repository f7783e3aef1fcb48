#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "common/bitmap.h"

namespace glimmer {

/// A capture on its way from a host to the controller, which exists by then.
struct Delivery {
    std::string url;
    std::string title;
    std::string tag;
    std::optional<std::span<const uint8_t>> png;
    std::optional<TBitmap> bitmap;
    std::string unusable;  ///< why the picture that came cannot be used; empty: it can, or none came
    int32_t action = 0;
    int32_t width = 0;  ///< size that the picture shall get; 0 leaves it
    int32_t height = 0;
};

/// Hands a capture over.
void deliver(Delivery delivery);

/// The same for pixels, which are brought to the output size of the capture options.
void deliverPixels(Delivery delivery);

/// Plays the capture sound if the capture options want it for what hosts deliver.
void playDeliverySound();
/// The same for a capture code, which may ask for silence; answers the action in it.
int32_t playDeliverySound(int32_t code);

/// Makes the main editor window unless the application is hidden.
void prepareMainEditor();

}  // namespace glimmer
