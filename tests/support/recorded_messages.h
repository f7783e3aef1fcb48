#pragma once

#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "settings/message_box.h"
#include "support/not_copied.h"

namespace glimmer::test {

/// Answers message boxes by itself while it lives, and keeps what they said.
class RecordedMessages : public MessageBoxes, NotCopied {
public:
    RecordedMessages() : before_(setMessageBoxes(this)) {}
    ~RecordedMessages() override { setMessageBoxes(before_); }

    struct Answer {
        MessageAnswer answer;
        bool check = false;  ///< tick the check box
    };
    std::deque<Answer> answers;     ///< for the next boxes; then each is closed
    std::vector<Message> messages;  ///< shown so far

    MessageAnswer show(const Message& message, bool* checked) override {
        messages.push_back(message);
        if (answers.empty()) return closingAnswer(message.buttons);
        const Answer next = answers.front();
        answers.pop_front();
        if (checked != nullptr) *checked = next.check;
        return next.answer;
    }

private:
    MessageBoxes* before_;
};

/// Answers message boxes by a function of its own while it lives.
class AnsweredMessages : public MessageBoxes, NotCopied {
public:
    using Answer = std::function<MessageAnswer(const Message&)>;
    explicit AnsweredMessages(Answer answer) : answer_(std::move(answer)), before_(setMessageBoxes(this)) {}
    ~AnsweredMessages() override { setMessageBoxes(before_); }
    MessageAnswer show(const Message& message, bool* /*checked*/) override { return answer_(message); }

private:
    Answer answer_;
    MessageBoxes* before_;
};

}  // namespace glimmer::test
