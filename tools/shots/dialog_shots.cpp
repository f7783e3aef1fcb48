// The dialogs around saving: the system's with our words, the JPEG settings, the capture options, "Please wait",
// message boxes.

#include <wx/msw/wrapwin.h>

#include <cstdio>

#include "capture/screen_area.h"
#include "capture/uIECaptureOptions.h"
#include "common/files.h"
#include "imaging/png_codec.h"
#include "output/ways/save_dialogs.h"
#include "output/ways/uJPEGSettings.h"
#include "output/ways/wait_window.h"
#include "settings/message_box.h"
#include "shots.h"
#include "support/windows/dialog_driver.h"
#include "support/windows/forms.h"

namespace glimmer::shots {

namespace {

void shootWindow(HWND window, const std::string& path) {
    RECT place{};
    GetWindowRect(window, &place);
    const Result<TBitmap> picture = grabScreen({place.left, place.top, place.right, place.bottom});
    const auto file = picture ? encodePng(*picture) : Result<std::vector<uint8_t>>(picture.failure());
    if (!file || !writeFile(pathFromUtf8(path + ".png"), *file)) std::fprintf(stderr, "no %s\n", path.c_str());
}

/// A dialog that runs a loop of its own is photographed from another thread and then closed.
test::DialogDriver::Step step(const wchar_t* title, const std::string& path) {
    return {title, [path](HWND window) {
                Sleep(600);  // it paints itself
                shootWindow(window, path);
                PostMessageW(window, WM_CLOSE, 0, 0);
                return true;
            }};
}

}  // namespace

void dialogs(const std::string& prefix) {
    {
        TIECaptureOptions dialog(nullptr);
        dialog.Show();
        shoot(dialog, prefix + "capture-options");
    }
    {
        TJPEGSettings dialog(nullptr);
        dialog.Show();
        shoot(dialog, prefix + "jpeg");
    }
    {
        WaitWindow wait("Please wait: creating pictures...");
        for (int i = 0; i < 60; ++i) {
            Sleep(10);
            wait.progress(i / 100.0);
        }
        if (wxWindow* window = wxWindow::FindWindowByName("WaitWindow")) shoot(*window, prefix + "wait");
    }
    {
        const test::DialogDriver driver({step(L"Save Screenshot...", prefix + "save-picture"),
                                         step(L"Save Screenshots to Disk", prefix + "save-folder"),
                                         step(L"Save Project as", prefix + "save-project")});
        saveDialogs().askPicture("samples", "Why small tools last", PictureFormat::Png);
        saveDialogs().askFolder("samples", PictureFormat::Png);
        saveDialogs().askProject("samples", "Why small tools last");
    }
    setMessageBoxes(&systemMessageBoxes());
    {
        const test::DialogDriver driver({step(L"Saved successfully", prefix + "message-remembered"),
                                         step(L"Error", prefix + "message-error"),
                                         step(L"Exit Editor", prefix + "message-exit")});
        showRemembered("cmbOpenFolderAfterSaving",
                       {"Would you like to open the target folder?\r\n", "Saved successfully", MessageIcon::Question,
                        MessageButtons::YesNo, MessageAnswer::Yes});
        showError("Cannot create file: C:\\Windows\\picture.png for writing");
        Message question;
        question.caption = "Exit Editor";
        question.text = "2 captures are not saved:\n  \xE2\x80\xA2 Why small tools last\n  \xE2\x80\xA2 Garden shop";
        question.icon = MessageIcon::Warning;
        question.buttons = MessageButtons::YesNoCancel;
        question.yes = "&Save all";
        question.no = "&Discard";
        showMessage(question);
    }
    setMessageBoxes(nullptr);
}

}  // namespace glimmer::shots
