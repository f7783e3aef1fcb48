#pragma once

#include "common/modal_dialog.h"
#include "upload/proxy/proxy.h"

class wxCheckBox;
class wxFlexGridSizer;
class wxTextCtrl;

namespace glimmer {

/// The dialog for the proxy server, with the stored values; OK stores them.
class TProxySettings : public ModalDialog {
public:
    explicit TProxySettings(wxWindow* parent);

private:
    wxTextCtrl* addRow(wxFlexGridSizer& grid, const char* caption, const char* name, long style);
    void showProxy(const Proxy& proxy);
    [[nodiscard]] Proxy shownProxy() const;
    void enableFields();
    void btnDetectClick();
    void okClick(wxCommandEvent& event);

    wxCheckBox* chkUseProxyServer_;
    wxTextCtrl* edtProxyAddr_;
    wxTextCtrl* edtProxyPort_;
    wxCheckBox* chkProxyNeedsAuth_;
    wxTextCtrl* edtProxyUser_;
    wxTextCtrl* edtProxyPassword_;
    wxCheckBox* chkFirstTimeRun_;  ///< never to be seen
};

}  // namespace glimmer
