#include "main_window/program_commands.h"

#include <wx/frame.h>

#include <string>

#include "common/host_kind.h"
#include "common/vendor.h"
#include "main_window/leaving.h"
#include "settings/message_box.h"

namespace glimmer {

namespace {

/// A page of the vendor's site.
void openPage(const CommandContext& context, const std::string& page) {
    if (context.program.openPage) context.program.openPage(vendorSite + page);
}

}  // namespace

void newCapture(CommandContext& context) {
    wxWindow* button = wxWindow::FindWindowByName("btnNew", &context.window.frame());
    if (button != nullptr && context.program.newCapture) context.program.newCapture(*button);
}

void showOptions(CommandContext& context) {
    if (context.program.options) context.program.options();
}

void showAbout(CommandContext& /*context*/) {
    Message about;
    about.caption = std::string("About ") + productName();
    about.text = std::string(productName()) + "\nCaptures, annotates and publishes web pages.\n\n" + vendorSite;
    about.icon = MessageIcon::Information;
    showMessage(about);
}

void openTweetPage(CommandContext& context) { openPage(context, "/tweet.htm"); }

void openVotePage(CommandContext& context) {
    // The host as the rating page knows it.
    openPage(context, isChrome() ? "/vote-ch.htm" : "/vote-fx.htm");
}

void hideEditor(CommandContext& context) { context.window.putAway(); }

void exitEditor(CommandContext& context) { leave(context, false); }

}  // namespace glimmer
