#pragma once

namespace glimmer {

/// The wave resources of the library.
enum class Sound {
    Capture,  ///< "PHOTO_SOUND"
    Click,    ///< "CLICK_SOUND", of link-like labels and some buttons
};

/// Starts a sound and returns at once; it cuts an earlier one. Silence where the sound cannot be played.
void playSound(Sound sound);

}  // namespace glimmer
