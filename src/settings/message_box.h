#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace glimmer {

enum class MessageIcon : uint8_t { None, Information, Question, Warning, Error };
enum class MessageButtons : uint8_t { Ok, OkCancel, YesNo, YesNoCancel };
enum class MessageAnswer : uint8_t { Ok, Cancel, Yes, No };

/// One message box. Line ends in the text may be "\n", "\r\n" or "\r".
struct Message {
    std::string text;
    std::string caption;
    MessageIcon icon = MessageIcon::None;
    MessageButtons buttons = MessageButtons::Ok;
    MessageAnswer standard = MessageAnswer::Ok;  ///< the default button, if it has it; else its first one
    /// Captions instead of the usual ones, with "&" before the access key; empty keeps the usual one.
    std::string yes{};
    std::string no{};
    std::string cancel{};
    std::string checkBox{};  ///< text of a check box below the message; empty: none
};

/// Shows message boxes: one class for people, others for tests.
class MessageBoxes {
public:
    virtual ~MessageBoxes() = default;
    /// Shows the box, topmost, in front of the active window of this thread, until it is answered. Closing it is
    /// Cancel where there is a Cancel button, No where there is none but a No, else Ok. `checked` gives the check
    /// box's state before and receives the one after; it may be null.
    virtual MessageAnswer show(const Message& message, bool* checked) = 0;
};

/// Replaces what shows message boxes; null means nobody, and every box is then answered as by closing it. The object
/// must live until it is replaced. The one before is returned.
MessageBoxes* setMessageBoxes(MessageBoxes* boxes);

/// What closing the box answers.
MessageAnswer closingAnswer(MessageButtons buttons);

MessageAnswer showMessage(const Message& message, bool* checked = nullptr);
/// The usual three captions: "Error", "Warning" and "Information", with one button.
void showError(const std::string& text);
void showWarning(const std::string& text);
void showInformation(const std::string& text);

/// A question or notice that the user can tell not to come again. `key` is a combo option whose first choice ("Ask",
/// "Display") shows the message with a check box that keeps the answer: Yes as the second choice, No as the third,
/// Ok as the second; Cancel is never kept. The other choices answer so without asking.
MessageAnswer showRemembered(std::string_view key, Message message);

/// The production class's object; Windows only.
MessageBoxes& systemMessageBoxes();

}  // namespace glimmer
