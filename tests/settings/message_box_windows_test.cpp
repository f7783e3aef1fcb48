#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/dialog.h>
#include <wx/msw/wrapwin.h>
#include <wx/stattext.h>

#include <atomic>
#include <thread>

#include "settings/message_box.h"
#include "support/windows/forms.h"

namespace glimmer {
namespace {

const Message remembered{"Would you like to open the target folder?\r\n",
                         "Saved successfully",
                         MessageIcon::Question,
                         MessageButtons::YesNo,
                         MessageAnswer::Yes,
                         "",
                         "",
                         "",
                         "&Remember my answer and do not ask again"};

TEST(MessageDialogs, AreAnsweredByButtonsAndKeys) {
    const struct {
        const char* what;
        uint8_t key;
        int32_t held;
        bool check;
        MessageAnswer answer;
    } cases[] = {
        {"Enter", 0x0D, 0, false, MessageAnswer::Yes},
        {"Esc", 0x1B, 0, false, MessageAnswer::No},
        {"access key", 'N', 0x8000, true, MessageAnswer::No},
        {"access key of the default", 'Y', 0x8000, true, MessageAnswer::Yes},
    };
    for (const auto& c : cases) {
        bool checked = false;
        const test::NextModal answer([&c](wxDialog& dialog) {
            test::bringForward(dialog);
            EXPECT_EQ(dialog.GetTitle(), "Saved successfully");
            EXPECT_NE(GetWindowLongW(dialog.GetHWND(), GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
            EXPECT_EQ(test::find<wxStaticText>(dialog, "lblMessage")->GetLabelText(),
                      "Would you like to open the target folder?");
            if (c.check) test::click(*test::findControl(dialog, "chkRemember"));
            test::pressKey(c.key, c.held);
        });
        EXPECT_EQ(systemMessageBoxes().show(remembered, &checked), c.answer) << c.what;
        EXPECT_EQ(checked, c.check) << c.what;
    }
}

TEST(MessageDialogs, TakeCaptionsOfTheirOwn) {
    const Message leaving{"2 captures are not saved: a, b.",
                          "Exit",
                          MessageIcon::Warning,
                          MessageButtons::YesNoCancel,
                          MessageAnswer::Cancel,
                          "&Save all",
                          "&Discard",
                          ""};
    const test::NextModal answer([](wxDialog& dialog) {
        EXPECT_EQ(dialog.FindWindow(wxID_YES)->GetLabel(), "&Save all");
        test::click(*dialog.FindWindow(wxID_NO));
    });
    EXPECT_EQ(systemMessageBoxes().show(leaving, nullptr), MessageAnswer::No);
}

/// Presses a key of the system's own box from outside, as the user does, once the box is up.
MessageAnswer answerSystemBox(const Message& message, WPARAM button, bool& topmost) {
    std::atomic<bool> done{false};
    std::thread user([&] {
        const std::wstring caption(message.caption.begin(), message.caption.end());
        HWND box = nullptr;
        while (!done && (box = FindWindowW(L"#32770", caption.c_str())) == nullptr) Sleep(5);
        topmost = (GetWindowLongW(box, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
        PostMessageW(box, WM_COMMAND, button, 0);
    });
    const MessageAnswer answer = systemMessageBoxes().show(message, nullptr);
    done = true;
    user.join();
    return answer;
}

TEST(MessageDialogs, PlainOnesAreTheSystems) {
    bool topmost = false;
    EXPECT_EQ(answerSystemBox({"text", "Plain warning", MessageIcon::Warning}, IDOK, topmost), MessageAnswer::Ok);
    // Windows makes the box topmost; Wine 8 was seen not to, so the test only tells.
    RecordProperty("topmost", topmost ? "yes" : "no");
    EXPECT_EQ(answerSystemBox({"text", "Plain question", MessageIcon::Question, MessageButtons::YesNo}, IDNO, topmost),
              MessageAnswer::No);
}

}  // namespace
}  // namespace glimmer
