#pragma once

#include <functional>
#include <optional>
#include <string>

#include "capture/capture_request.h"
#include "capture/screen_picture.h"

// A capture of the screen from the request to the picture: the countdown, the screen, the choice of an area.

namespace glimmer {

/// What was taken, and what is to be known of it.
struct TakenCapture {
    ScreenPicture screen;
    Rect area;          ///< of the whole screen
    std::string title;  ///< of the window that it shows, if it is one
    std::string note;   ///< what the user is to be told of it; empty: nothing
};

/// Takes what the request's kind says, after its delay; its action and file are the caller's. The user notices it
/// (announceCapture()). Nothing when the user has left it. Fails, with a sentence, where it cannot be had.
Result<std::optional<TakenCapture>> takeCapture(const CaptureRequest& request);

}  // namespace glimmer
