#include "main_window/notice_bar.h"

#include <wx/button.h>
#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <utility>

namespace glimmer {

namespace {

/// The bar goes as soon as nothing of it is on the stack; its name is free at once.
void closeBar(wxFrame& window, wxWindow* bar) {
    bar->SetName(wxString());
    bar->Hide();
    window.Layout();
    window.Refresh();  // what moved is not always painted where it came to
    window.CallAfter([bar] { bar->Destroy(); });
}

}  // namespace

void showNoticeBar(wxFrame& window, const char* name, const std::string& text, std::vector<NoticeButton> buttons) {
    if (window.FindWindow(name) != nullptr) return;
    auto* bar = new wxPanel(&window, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, name);
    bar->SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_INFOBK));
    bar->SetForegroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_INFOTEXT));
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    auto* line =
        new wxStaticText(bar, wxID_ANY, wxString::FromUTF8(text), wxDefaultPosition, wxDefaultSize, wxST_ELLIPSIZE_END);
    line->SetForegroundColour(bar->GetForegroundColour());
    row->Add(line, 1, wxALIGN_CENTRE_VERTICAL | wxLEFT, window.FromDIP(12));
    for (NoticeButton& one : buttons) {
        auto* button = new wxButton(bar, wxID_ANY, wxString::FromUTF8(one.caption), wxDefaultPosition, wxDefaultSize, 0,
                                    wxDefaultValidator, one.name);
        button->Bind(wxEVT_BUTTON, [&window, bar, act = std::move(one.act)](wxCommandEvent&) {
            closeBar(window, bar);
            if (act) act();
        });
        row->Add(button, 0, wxALIGN_CENTRE_VERTICAL | wxTOP | wxBOTTOM | wxRIGHT, window.FromDIP(6));
    }
    bar->SetSizer(row);
    window.GetSizer()->Insert(1, bar, 0, wxEXPAND);
    window.Layout();
    window.Refresh();
}

void closeNoticeBar(wxFrame& window, const char* name) {
    if (wxWindow* bar = window.FindWindow(name)) closeBar(window, bar);
}

}  // namespace glimmer
