// Output itself is the saver's (output/); here is what stands around it in the main window.

#include "main_window/output_commands.h"

#include <wx/frame.h>

#include <optional>
#include <string>

#include "common/command_line.h"
#include "common/files.h"
#include "common/shell_start.h"
#include "main_window/leaving.h"
#include "output/spoken_saver.h"
#include "settings/message_box.h"

namespace glimmer {

namespace {

// After a command that has brought the captures where they were wanted, the user may be done.
void afterOutput(CommandContext& context, const char* done) {
    if (!context.window.frame().IsShown()) return;
    Message question;
    question.caption = done;
    question.text = "Would you like to exit the editor?";
    question.icon = MessageIcon::Question;
    question.buttons = MessageButtons::YesNo;
    question.standard = MessageAnswer::No;
    if (showRemembered("cmbExitAfterSaving", question) == MessageAnswer::Yes) leave(context, true);
}

}  // namespace

void uploadCaptures(CommandContext& /*context*/, const Captures& /*captures*/) {
    showInformation("Uploading is not part of this version yet.");
}

void saveCaptures(CommandContext& context, const Captures& captures) {
    if (SpokenSaver(context.saver).savePictures(captures)) afterOutput(context, "Created successfully");
}

void copyCaptures(CommandContext& context, const Captures& captures) {
    if (SpokenSaver(context.saver).copyToClipboard(captures)) afterOutput(context, "Created successfully");
}

void mailCaptures(CommandContext& context, const Captures& captures) {
    const wxFrame& frame = context.window.frame();
    SpokenSaver(context.saver).sendByMail(captures, PictureFormat::Png, frame.IsShown() ? frame.GetHWND() : nullptr);
}

// The program's own settings dialog for this is still to come; until then the system's paint program is started, or
// where that was removed what the user has for changing pictures.
void launchCaptures(CommandContext& context, const Captures& captures) {
    const std::optional<SpokenSaver::Paths> files = SpokenSaver(context.saver).saveForExternalEditor(captures);
    if (!files) return;
    for (const std::filesystem::path& file : *files) {
        const std::string path = utf8FromPath(file);
        const std::string quoted = quotedArgument(path);
        if (shellStart().open("mspaint.exe", quoted) || shellStart().edit(path)) continue;
        SpokenSaver::startExternalEditor("mspaint.exe", quoted);  // says what is wrong
        return;
    }
}

void printCaptures(CommandContext& /*context*/, const Captures& captures) {
    if (captures.size() > 1) {
        Message question;
        question.caption = "Multiple selection printing";
        question.text = "Please specify the settings for the selected documents";
        question.icon = MessageIcon::Information;
        showRemembered("cmbMultipleSelectionPrinting", question);
    }
    showInformation("Printing is not part of this version yet.");
}

}  // namespace glimmer
