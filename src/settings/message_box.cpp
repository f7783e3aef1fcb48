#include "settings/message_box.h"

#include <utility>

#include "common/debug_channel.h"
#include "common/worker_thread.h"
#include "settings/options.h"

namespace glimmer {

namespace {

MessageBoxes* current = nullptr;

bool isQuestion(MessageButtons buttons) {
    return buttons == MessageButtons::YesNo || buttons == MessageButtons::YesNoCancel;
}

/// The choice that stands for an answer; 0 for one that is not kept.
int32_t choiceOf(MessageAnswer answer) {
    switch (answer) {
        case MessageAnswer::Ok:
        case MessageAnswer::Yes:
            return 1;
        case MessageAnswer::No:
            return 2;
        default:
            return 0;
    }
}

}  // namespace

MessageBoxes* setMessageBoxes(MessageBoxes* boxes) { return std::exchange(current, boxes); }

MessageAnswer closingAnswer(MessageButtons buttons) {
    switch (buttons) {
        case MessageButtons::Ok:
            return MessageAnswer::Ok;
        case MessageButtons::YesNo:
            return MessageAnswer::No;
        default:
            return MessageAnswer::Cancel;
    }
}

MessageAnswer showMessage(const Message& message, bool* checked) {
    GLIMMER_ASSERT_NO_WORKER("message_box");
    debugDetail("message \"" + message.text + '"');
    return current == nullptr ? closingAnswer(message.buttons) : current->show(message, checked);
}

void showError(const std::string& text) { showMessage({text, "Error", MessageIcon::Error}); }
void showWarning(const std::string& text) { showMessage({text, "Warning", MessageIcon::Warning}); }
void showInformation(const std::string& text) { showMessage({text, "Information", MessageIcon::Information}); }

MessageAnswer showRemembered(std::string_view key, Message message) {
    const bool question = isQuestion(message.buttons);
    switch (OptionsHolder().number(key)) {
        case 0:
            break;
        case 1:
            return question ? MessageAnswer::Yes : MessageAnswer::Ok;
        default:
            return question ? MessageAnswer::No : MessageAnswer::Ok;
    }
    if (message.checkBox.empty())
        message.checkBox = question ? "&Remember my answer and do not ask again" : "&Do not show this message again";
    bool keep = false;
    const MessageAnswer answer = showMessage(message, &keep);
    if (keep && choiceOf(answer) != 0) {
        OptionsHolder().setNumber(key, choiceOf(answer));
        saveOptions();
    }
    return answer;
}

}  // namespace glimmer
