#include "common/sound.h"

#include <windows.h>
// After windows.h, which it needs.
#include <mmsystem.h>

#include "common/library_module.h"

namespace glimmer {

void playSound(Sound sound) {
    PlaySoundW(sound == Sound::Capture ? L"PHOTO_SOUND" : L"CLICK_SOUND", static_cast<HMODULE>(libraryModule()),
               SND_RESOURCE | SND_ASYNC | SND_NODEFAULT);
}

}  // namespace glimmer
