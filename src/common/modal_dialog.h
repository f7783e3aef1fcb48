#pragma once

#include <wx/dialog.h>

namespace glimmer {

/// A dialog that can be shown modally inside somebody else's process. The toolkit's own one comes back only when the
/// thread's message queue is empty: a host whose timers are always due would never get its call back.
class ModalDialog : public wxDialog {
public:
    using wxDialog::wxDialog;

    int ShowModal() override;
    void EndModal(int code) override;
    [[nodiscard]] bool IsModal() const override { return loop_ != nullptr; }
    bool Show(bool show = true) override;

protected:
    /// A line and below it, at the right edge, OK and Cancel; OK is the default and has the focus.
    wxSizer* newOkAndCancel();

private:
    class Loop;
    Loop* loop_ = nullptr;
};

}  // namespace glimmer
