#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "capture/mouse_cursor.h"
#include "common/bitmap.h"
#include "common/result.h"
#include "host/program/capture_action.h"

namespace glimmer {

/// A capture on its way from whoever took it to the controller: what it comes with, and what is to happen with it.
struct Delivery {
    std::string url;
    std::string title;
    std::string tag;                              ///< accepted, without any effect
    std::optional<std::span<const uint8_t>> png;  ///< a PNG file; of the caller, who keeps it during the call
    TBitmap picture;                              ///< finished pixels; empty: none came
    std::string unusable;                         ///< why the picture that came cannot be used; empty: it can
    CaptureAction action = CaptureAction::Edit;
    std::optional<MouseCursor> pointer{};  ///< in the pixels of `picture`
    std::string notes{};                   ///< on the capture, for the user
    Size size;  ///< that the picture is scaled to; with a side that is not positive it stays as it is
};

/// Asks for the output size of the capture options, which depends on the picture's own.
void askForOutputSize(Delivery& delivery);

/// Decodes the PNG file and scales the picture, which stands in `picture` afterwards. One that cannot be used fails;
/// none at all does not, and leaves `picture` empty.
Status receivePicture(Delivery& delivery);

/// Plays the capture sound if the capture options want it for what hosts deliver.
void playDeliverySound();

}  // namespace glimmer
