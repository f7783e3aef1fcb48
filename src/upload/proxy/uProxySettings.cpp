#include "upload/proxy/uProxySettings.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include "common/accessible_name.h"
#include "common/wx_text.h"
#include "settings/form_store.h"
#include "settings/message_box.h"
#include "settings/settings.h"
#include "upload/proxy/proxy_keys.h"

namespace glimmer {

namespace {

std::string textOf(const wxTextCtrl& edit) { return edit.GetValue().utf8_string(); }

wxCheckBox* newCheckBox(wxWindow* parent, const char* caption, const char* name) {
    auto* box = new wxCheckBox(parent, wxID_ANY, caption);
    box->SetName(name);
    return box;
}

}  // namespace

TProxySettings::TProxySettings(wxWindow* parent) : ModalDialog(parent, wxID_ANY, "Setup proxy settings") {
    SetName("ProxySettings");
    detectProxyOnce(settings());
    const int gap = FromDIP(12);
    chkUseProxyServer_ = newCheckBox(this, "This computer uses proxy server to connect to the Internet", proxyKey::use);
    chkProxyNeedsAuth_ = newCheckBox(this, "The proxy server requires authorization", proxyKey::needsAuth);
    chkFirstTimeRun_ = newCheckBox(this, "", proxyKey::firstTime);
    chkFirstTimeRun_->Hide();

    auto* server = new wxFlexGridSizer(2, gap / 2, gap);
    server->AddGrowableCol(1);
    edtProxyAddr_ = addRow(*server, "Address:", proxyKey::address, 0);
    edtProxyPort_ = addRow(*server, "Port:", proxyKey::port, 0);
    auto* who = new wxFlexGridSizer(2, gap / 2, gap);
    who->AddGrowableCol(1);
    edtProxyUser_ = addRow(*who, "User name:", proxyKey::user, 0);
    edtProxyPassword_ = addRow(*who, "Password:", proxyKey::password, wxTE_PASSWORD);
    auto* detect = new wxButton(this, wxID_ANY, "Click to detect");
    detect->SetName("btnDetect");
    detect->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { btnDetectClick(); });
    for (wxCheckBox* box : {chkUseProxyServer_, chkProxyNeedsAuth_})
        box->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { enableFields(); });
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent& event) { okClick(event); }, wxID_OK);

    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(chkUseProxyServer_, 0, wxLEFT | wxRIGHT | wxTOP, gap);
    sizer->Add(server, 0, wxEXPAND | wxALL, gap);
    sizer->Add(detect, 0, wxALIGN_RIGHT | wxLEFT | wxRIGHT, gap);
    sizer->Add(chkProxyNeedsAuth_, 0, wxLEFT | wxRIGHT | wxTOP, gap);
    sizer->Add(who, 0, wxEXPAND | wxALL, gap);
    sizer->Add(newOkAndCancel(), 0, wxEXPAND | wxLEFT | wxRIGHT | wxBOTTOM, gap);
    restoreControls(settings(), settingsSection(group::uploader), *this);
    showProxy(storedProxy(settings()));
    SetSizerAndFit(sizer);
    CentreOnParent();
}

wxTextCtrl* TProxySettings::addRow(wxFlexGridSizer& grid, const char* caption, const char* name, long style) {
    grid.Add(new wxStaticText(this, wxID_ANY, caption), 0, wxALIGN_CENTRE_VERTICAL);
    auto* edit = new wxTextCtrl(this, wxID_ANY, "", wxDefaultPosition, FromDIP(wxSize(240, -1)), style);
    edit->SetName(name);
    setAccessibleName(*edit, caption);
    grid.Add(edit, 1, wxEXPAND);
    return edit;
}

void TProxySettings::showProxy(const Proxy& proxy) {
    chkUseProxyServer_->SetValue(proxy.use);
    edtProxyAddr_->ChangeValue(wxText(proxy.address));
    edtProxyPort_->ChangeValue(wxText(proxy.port));
    chkProxyNeedsAuth_->SetValue(proxy.needsAuthorization);
    edtProxyUser_->ChangeValue(wxText(proxy.user));
    edtProxyPassword_->ChangeValue(wxText(proxy.password));
    enableFields();
}

Proxy TProxySettings::shownProxy() const {
    return {chkUseProxyServer_->GetValue(), textOf(*edtProxyAddr_), textOf(*edtProxyPort_),
            chkProxyNeedsAuth_->GetValue(), textOf(*edtProxyUser_), textOf(*edtProxyPassword_)};
}

void TProxySettings::enableFields() {
    const bool use = chkUseProxyServer_->GetValue();
    const bool authorize = chkProxyNeedsAuth_->GetValue();
    for (wxTextCtrl* edit : {edtProxyAddr_, edtProxyPort_}) edit->Enable(use);
    for (wxTextCtrl* edit : {edtProxyUser_, edtProxyPassword_}) edit->Enable(authorize);
}

void TProxySettings::btnDetectClick() {
    Proxy proxy = shownProxy();
    if (!detectProxy(proxy)) return showError("The system does not tell which proxy server it uses.");
    showProxy(proxy);
}

void TProxySettings::okClick(wxCommandEvent& event) {
    const Proxy proxy = shownProxy();
    saveControls(settings(), settingsSection(group::uploader), *this);
    if (const Status stored = storeProxy(settings(), proxy); !stored) showError(stored.message());
    settings().save();
    event.Skip();
}

}  // namespace glimmer
