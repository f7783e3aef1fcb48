#include "common/sound.h"

#include <windows.h>
// After windows.h, which it needs.
#include <mmsystem.h>

#include "common/library_module.h"

namespace glimmer {

namespace {

void playResource(Sound sound) {
    PlaySoundW(sound == Sound::Capture ? L"PHOTO_SOUND" : L"CLICK_SOUND", static_cast<HMODULE>(libraryModule()),
               SND_RESOURCE | SND_ASYNC | SND_NODEFAULT);
}

SoundPlayer currentPlayer = playResource;

}  // namespace

void playSound(Sound sound) { currentPlayer(sound); }

void setSoundPlayer(SoundPlayer player) { currentPlayer = player != nullptr ? player : playResource; }

}  // namespace glimmer
