// Leaving the session, and the questions about it.

#include "main_window/leaving.h"

#include <memory>
#include <string>
#include <vector>

#include "common/files.h"
#include "editor/window/uEditor.h"
#include "main_window/command_runner.h"
#include "main_window/lines_of_names.h"
#include "main_window/project_commands.h"
#include "settings/message_box.h"

namespace glimmer {

namespace {

bool confirmUnsaved(CommandContext& context) {
    std::vector<std::string> names;
    for (const CaptureDocument* capture : context.session.unsaved()) names.push_back(capture->info().name);
    Message question;
    question.caption = "Exit Editor";
    if (names.empty()) {
        question.text = "Captures were added, deleted or moved since the project was saved:";
        names.push_back(utf8FromPath(pathFromUtf8(context.session.projectPath()).filename()));
    } else if (names.size() == 1) {
        question.text = "One capture is not saved:";
    } else {
        question.text.append(std::to_string(names.size())).append(" captures are not saved:");
    }
    question.text += linesOf(names);
    question.icon = MessageIcon::Warning;
    question.buttons = MessageButtons::YesNoCancel;
    question.yes = "&Save all";
    question.no = "&Discard";
    const MessageAnswer answer = showMessage(question);
    return answer == MessageAnswer::No || (answer == MessageAnswer::Yes && storeProject(context, false));
}

bool confirmExit() {
    Message question;
    question.caption = "Exit Editor";
    question.text = "Would you like to exit the editor?";
    question.icon = MessageIcon::Question;
    question.buttons = MessageButtons::YesNo;
    return showRemembered("cmbConfirmExit", question) == MessageAnswer::Yes;
}

bool confirmLeaving(CommandContext& context, bool confirmed) {
    const CaptureSession& session = context.session;
    for (;; confirmed = false) {
        if (session.empty()) return true;
        const CaptureSession::State asked(session);
        if (!session.unsaved().empty() || session.projectHasChanged()) {
            if (!confirmUnsaved(context)) return false;
        } else if (!confirmed && !confirmExit()) {
            return false;
        }
        // While that was on the screen a hot key, a browser or another start may have brought more.
        if (asked.covers(CaptureSession::State(session))) return true;
    }
}

}  // namespace

bool leave(CommandContext& context, bool confirmed) {
    // The icon's menu stays in reach while the question is up.
    if (context.leaving) return false;
    // What waits for the user, below here, has yet to do with its captures and its canvas.
    const TEditForm* canvas = context.window.canvas();
    if (context.runner.running() > 1 || (canvas != nullptr && canvas->waits())) {
        context.window.bringForward();
        return false;
    }
    context.leaving = true;
    const std::shared_ptr<void> afterwards(nullptr, [&context](void*) { context.leaving = false; });
    if (!confirmLeaving(context, confirmed)) return false;
    context.session.discardAll();
    context.window.storeState();
    context.window.putAway();
    return true;
}

}  // namespace glimmer
