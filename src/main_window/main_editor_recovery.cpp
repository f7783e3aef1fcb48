// The main editor and the recovery folder: what is open is kept there, what an earlier run left behind is offered.

#include <algorithm>

#include "editor/recovery/recovery_keeper.h"
#include "main_window/main_toolbar.h"
#include "main_window/notice_bar.h"
#include "main_window/uMainEditor.h"
#include "output/places/output_folders.h"
#include "settings/message_box.h"
#include "settings/settings.h"

namespace glimmer {

namespace {

constexpr int thumbnailPeriod = 100;  // milliseconds
constexpr int recoveryPeriod = 30;
/// A round ends after this time, so that nobody notices it. With a piece that is slow it takes up to 30 ms.
constexpr std::chrono::milliseconds recoveryBudget{8};
/// More names than this would not fit on a message box.
constexpr size_t mostNames = 10;

std::string described(const std::vector<RecoveryStore::Entry>& entries) {
    if (entries.size() == 1) return "A capture with unsaved changes was open when the editor ended unexpectedly.";
    return std::to_string(entries.size()) +
           " captures with unsaved changes were open when the editor ended unexpectedly.";
}

}  // namespace

void TMainEditor::startKeeping(std::filesystem::path folder) {
    const bool users = folder == recoveryFolder();
    recovery_ = std::make_unique<RecoveryKeeper>(std::move(folder));
    if (users) recovery_->store().takeOver(formerRecoveryFolder());
    // A timer's message comes when there is no other: the user never waits for this.
    tmrRecovery_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) {
        recovery_->work(recoveryBudget);
        if (!IsShown() && recovery_->complete()) tmrRecovery_.Stop();
    });
}

/// They sleep while the window is hidden and nothing is to be kept.
void TMainEditor::wakeTimers() {
    if (!toolbar_->filled()) return;
    if (IsShown()) toolbar_->wake();
    if (IsShown() && !tmrUpdateThumbnails_.IsRunning()) tmrUpdateThumbnails_.Start(thumbnailPeriod);
    if (!tmrRecovery_.IsRunning()) tmrRecovery_.Start(recoveryPeriod);
}

void TMainEditor::prepareForSessionEnd(std::chrono::milliseconds budget) {
    recovery_->keepAll(budget);
    storeState();
    settings().save();
}

void TMainEditor::offerRecovered(bool inBar) {
    if (recoveredOffered_) return;
    recoveredOffered_ = true;
    const std::vector<RecoveryStore::Entry> entries = recovery_->store().leftBehind();
    if (entries.empty()) return;
    if (inBar) {
        offerInBar(entries);
        return;
    }
    Message question;
    question.caption = "Unsaved captures";
    question.text = described(entries);
    for (size_t i = 0; i < std::min(entries.size(), mostNames); ++i)
        question.text.append("\n  \xE2\x80\xA2 ").append(entries[i].info.name);
    if (entries.size() > mostNames)
        question.text.append("\n  \xE2\x80\xA2 and ")
            .append(std::to_string(entries.size() - mostNames))
            .append(" more");
    question.text.append("\n\nWould you like to go on with ").append(entries.size() == 1 ? "it?" : "them?");
    question.icon = MessageIcon::Question;
    question.buttons = MessageButtons::YesNoCancel;
    question.standard = MessageAnswer::Yes;
    question.yes = "&Open";
    question.no = "&Discard";
    question.cancel = "&Later";
    const MessageAnswer answer = showMessage(question);
    if (answer == MessageAnswer::Yes) openRecovered(entries);
    if (answer == MessageAnswer::No)
        for (const RecoveryStore::Entry& entry : entries) recovery_->store().toss(entry.folder);
}

/// In a host the editor came up for another capture; nobody is kept from that one.
void TMainEditor::offerInBar(const std::vector<RecoveryStore::Entry>& entries) {
    showNoticeBar(*this, "barRecovered", described(entries),
                  {{"btnOpenRecovered", "Open", [this, entries] { openRecovered(entries); }},
                   {"btnDiscardRecovered", "Discard",
                    [this, entries] {
                        for (const RecoveryStore::Entry& entry : entries) recovery_->store().toss(entry.folder);
                    }},
                   {"btnLaterRecovered", "Later", {}}});
}

void TMainEditor::openRecovered(const std::vector<RecoveryStore::Entry>& entries) {
    std::string failures;
    for (const RecoveryStore::Entry& entry : entries) {
        Result<std::unique_ptr<CaptureDocument>> opened = RecoveryStore::open(entry);
        // One that cannot be read, for want of memory perhaps, stays where it is.
        if (opened)
            addDocument(opened.take(), entry);
        else
            failures.append("\n  \xE2\x80\xA2 ").append(entry.info.name).append(": ").append(opened.message());
    }
    if (editorCount() > 0) showRoutine();
    if (!failures.empty()) showWarning("These captures could not be opened:" + failures);
}

}  // namespace glimmer
