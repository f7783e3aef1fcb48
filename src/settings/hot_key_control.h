#pragma once

#include <wx/textctrl.h>

#include <cstdint>

namespace glimmer {

/// A box that shows a key combination and takes the one that is pressed in it. Backspace and Delete alone clear it,
/// Tab and Shift+Tab leave it; its context menu offers Print Screen, which a system that keeps this key for itself does
/// not let through; a combination that would take a plain letter from all programs is refused. The value is
/// the shortcut value of hot_key.h; 0 is none. Each change by the user sends wxEVT_TEXT.
class THotKey : public wxTextCtrl {
public:
    THotKey(wxWindow* parent, wxWindowID id, int32_t hotKey = 0);

    [[nodiscard]] int32_t hotKey() const { return hotKey_; }
    void setHotKey(int32_t hotKey);

protected:
    WXLRESULT MSWWindowProc(WXUINT message, WXWPARAM wParam, WXLPARAM lParam) override;
    bool MSWShouldPreProcessMessage(WXMSG* message) override;

private:
    void take(int32_t hotKey);
    bool keyDown(uint32_t key);
    bool keyUp(uint32_t key);
    void showHeldModifiers();
    void offerPrintScreen();

    int32_t hotKey_ = 0;
};

}  // namespace glimmer
