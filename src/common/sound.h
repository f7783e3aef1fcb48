#pragma once

namespace glimmer {

/// The wave resources of the library.
enum class Sound {
    Capture,  ///< "PHOTO_SOUND"
    Click,    ///< "CLICK_SOUND", of link-like labels and some buttons
};

/// Starts a sound and returns at once; it cuts an earlier one. Silence where the sound cannot be played.
void playSound(Sound sound);

/// Stands in for the system in a test; null gives it back.
using SoundPlayer = void (*)(Sound sound);
void setSoundPlayer(SoundPlayer player);

}  // namespace glimmer
