// The options dialog, page by page.

#include <wx/listbox.h>

#include "host/program/options_services.h"
#include "settings/dialog/options_dialog.h"
#include "shots.h"

namespace glimmer::shots {

void options(const std::string& prefix) {
    OptionsServices services = optionsServices(nullptr);
    services.program = "C:\\Glimmerpad\\glimmerpad.exe";
    OptionsHolder().setOn("chkWMDisplay", true);
    auto* dialog = new TVistraneOptions(nullptr, services);
    dialog->Show();
    auto* pages = dynamic_cast<wxListBox*>(dialog->FindWindow("lstPages"));
    for (unsigned i = 0; i < pages->GetCount(); ++i) {
        wxString page = pages->GetString(i);
        dialog->showPage(page.utf8_string());
        page.Replace(" ", "-");
        shoot(*dialog, prefix + page.Lower().utf8_string());
    }
    dialog->Destroy();
    OptionsHolder() = Options();
}

}  // namespace glimmer::shots
