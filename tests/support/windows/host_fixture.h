#pragma once

#include <gtest/gtest.h>
#include <windows.h>
// After windows.h, which it needs.
#include <mmsystem.h>

#include "support/rgb_picture.h"
#include "support/windows/host_windows.h"
#include "support/windows/hosted_library.h"
#include "support/windows/import_patch.h"

namespace glimmer::test {

/// A test that is a host: the library loaded, dialogs refused and noted, sounds counted.
class HostTest : public testing::Test {
protected:
    HostTest() { sounds_ = 0; }
    void SetUp() override { ASSERT_NE(host_.module, nullptr); }

    /// Sounds that the library played since the last call.
    static int takeSounds() { return std::exchange(sounds_, 0); }
    /// The dialogs since the last call, as "caption: text".
    std::vector<std::wstring> takeDialogs() {
        std::vector<std::wstring> all;
        for (const DialogRobot::Seen& seen : robot_.take()) all.push_back(seen.caption + L": " + seen.text);
        return all;
    }
    /// The picture that a capture with action 8 or 9 gave.
    [[nodiscard]] RgbPicture encodedPicture() const { return pictureOf(host_.encodedContent()); }

    HostedLibrary host_{knownUser};
    DialogRobot robot_;

private:
    static BOOL WINAPI countSound(LPCWSTR name, HMODULE, DWORD) {
        if (name != nullptr) ++sounds_;
        return TRUE;
    }
    static inline int sounds_ = 0;
    ImportPatch sound_{host_.module, "winmm.dll", "PlaySoundW", &HostTest::countSound};
};

}  // namespace glimmer::test
