#include "main_window/recovered_offer.h"

#include <string>

#include "main_window/lines_of_names.h"
#include "main_window/notice_bar.h"
#include "settings/message_box.h"

namespace glimmer {

namespace {

std::string described(size_t count) {
    if (count == 1) return "A capture with unsaved changes was open when the editor ended.";
    return std::to_string(count) + " captures with unsaved changes were open when the editor ended.";
}

}  // namespace

void RecoveredOffer::make(bool inBar) {
    if (made_) return;
    made_ = true;
    const Entries entries = session_.recovery().store().leftBehind();
    if (entries.empty()) return;
    if (inBar)
        showBar(entries);
    else
        ask(entries);
}

void RecoveredOffer::ask(const Entries& entries) {
    std::vector<std::string> names;
    for (const RecoveryStore::Entry& entry : entries) names.push_back(entry.info.name);
    Message question;
    question.caption = "Unsaved captures";
    question.text = described(entries.size()) + linesOf(names);
    question.text.append("\n\nWould you like to go on with ").append(entries.size() == 1 ? "it?" : "them?");
    question.icon = MessageIcon::Question;
    question.buttons = MessageButtons::YesNoCancel;
    question.standard = MessageAnswer::Yes;
    question.yes = "&Open";
    question.no = "&Discard";
    question.cancel = "&Later";
    const MessageAnswer answer = showMessage(question);
    if (answer == MessageAnswer::Yes) open(entries);
    if (answer == MessageAnswer::No) toss(entries);
}

/// In a host the editor came up for another capture; nobody is kept from that one.
void RecoveredOffer::showBar(const Entries& entries) {
    showNoticeBar(window_, "barRecovered", described(entries.size()),
                  {{"btnOpenRecovered", "Open", [this, entries] { open(entries); }},
                   {"btnDiscardRecovered", "Discard", [this, entries] { toss(entries); }},
                   {"btnLaterRecovered", "Later", {}}});
}

void RecoveredOffer::open(const Entries& entries) {
    std::vector<std::string> failures;
    for (const RecoveryStore::Entry& entry : entries) {
        Result<std::unique_ptr<CaptureDocument>> opened = RecoveryStore::open(entry);
        // One that cannot be read, for want of memory perhaps, stays where it is.
        if (opened)
            session_.add(opened.take(), entry);
        else
            failures.push_back(entry.info.name + ": " + opened.message());
    }
    if (!session_.empty()) opened_();
    if (!failures.empty()) showWarning("These captures could not be opened:" + linesOf(failures));
}

void RecoveredOffer::toss(const Entries& entries) {
    for (const RecoveryStore::Entry& entry : entries) session_.recovery().store().toss(entry.folder);
}

}  // namespace glimmer
