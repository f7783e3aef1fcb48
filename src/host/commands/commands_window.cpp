// Commands that show, open and arrange windows.

#include <wx/toplevel.h>

#include "common/foreground.h"
#include "host/commands/host_commands.h"
#include "host/program/chrome_fg_wnd_patch.h"
#include "host/program/host_state.h"
#include "host/program/uProgram.h"
#include "main_window/uMainEditor.h"
#include "settings/message_box.h"

namespace glimmer {

namespace {

bool someFormIsShown() {
    for (const wxWindow* window : wxTopLevelWindows) {
        if (window->IsShown()) return true;
    }
    return false;
}

}  // namespace

int32_t commandResumeEditing(const CommandArguments&) {
    if (pProgram && pProgram->resumeAvailable()) pProgram->resumeEditing();
    if (pProgram) pProgram->tellResumeState();
    return 1;
}

int32_t commandGetResumeAvailable(const CommandArguments& arguments) {
    if (arguments.out == nullptr) return 0;
    arguments.putByte(pProgram && pProgram->resumeAvailable() ? 1 : 0);
    return 1;
}

int32_t commandOpenSettings(const CommandArguments&) {
    if (!ensureProgram()) return 0;
    pProgram->showOptions();
    return 1;
}

int32_t commandOpenFile(const CommandArguments&) {
    if (!ensureProgram()) return 0;
    if (!pProgram->openFile()) return 1;
    showRemembered("cmbLoadingFilesViaDDropHint", {"You can drag and drop files directly onto Editor to open them.",
                                                   "Hint", MessageIcon::Information});
    return 1;
}

int32_t commandOpenFromClipboard(const CommandArguments&) {
    if (!ensureProgram()) return 0;
    pProgram->openFromClipboard();
    return 1;
}

int32_t commandFGWindowPatch(const CommandArguments&) {
    std::unique_ptr<TChromeFGWndPatch>& patch = hostState().foregroundPatch;
    if (!patch) patch = std::make_unique<TChromeFGWndPatch>();
    patch->moveAway();
    return 1;
}

int32_t commandActivateApp(const CommandArguments&) {
    if (pMainEditor == nullptr || !someFormIsShown()) return 1;
    takeForeground(pMainEditor->GetHWND());
    return 1;
}

}  // namespace glimmer
