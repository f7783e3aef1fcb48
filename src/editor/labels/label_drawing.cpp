#include "editor/labels/label_drawing.h"

#include <richedit.h>

#include <utility>

#include "editor/labels/label_control.h"

namespace glimmer {

namespace {

constexpr int twipsPerInch = 1440;

TTextSettings blackOnWhite(const TTextSettings& font) {
    TTextSettings black = font;
    black.textColour = RGB(0, 0, 0);
    black.backgroundColour = RGB(255, 255, 255);
    return black;
}

void setLabel(const RichEdit& edit, const TTextSettings& font, const std::wstring& text) {
    const TTextSettings black = blackOnWhite(font);
    formatLabelControl(edit, black);
    setLabelControlText(edit, text);
    formatLabelControl(edit, black);  // replacing all text can lose the alignment
}

class TextServicesDrawing final : public LabelDrawing {
public:
    explicit TextServicesDrawing(MakeTextServices make) : make_(make) {}

    void draw(const TTextSettings& font, const std::wstring& text, Size area, HDC dc) override {
        if (!asked_) {
            asked_ = true;
            services_ = TextServices::create(make_);
            if (services_ != nullptr) prepareLabelControl(services_->edit());
        }
        if (services_ == nullptr) return;
        services_->setWidth(area.width);
        setLabel(services_->edit(), font, text);
        services_->draw(dc, area);
    }

private:
    MakeTextServices make_;
    bool asked_ = false;
    std::unique_ptr<TextServices> services_;
};

/// For a device that is as fine as the screen, so that lines break where they do in the control's window.
class FormatRangeDrawing final : public LabelDrawing {
public:
    explicit FormatRangeDrawing(LabelControl control) : control_(std::move(control)) {}

    void draw(const TTextSettings& font, const std::wstring& text, Size area, HDC dc) override {
        const HWND control = control_();
        if (control == nullptr) return;
        layOutLabel(control, font, text, area);
        FORMATRANGE range{};
        range.hdc = range.hdcTarget = dc;
        // A line is left out unless all of it has room: the last one may hang over the area.
        range.rc = {0, 0, MulDiv(area.width, twipsPerInch, GetDeviceCaps(dc, LOGPIXELSX)),
                    MulDiv(TextPainter::maxSide, twipsPerInch, GetDeviceCaps(dc, LOGPIXELSY))};
        range.rcPage = range.rc;
        range.chrg = {0, -1};
        SendMessageW(control, EM_FORMATRANGE, TRUE, reinterpret_cast<LPARAM>(&range));
        SendMessageW(control, EM_FORMATRANGE, FALSE, 0);  // what it keeps of the device
    }

private:
    LabelControl control_;
};

class PrintClientDrawing final : public LabelDrawing {
public:
    explicit PrintClientDrawing(LabelControl control) : control_(std::move(control)) {}

    void draw(const TTextSettings& font, const std::wstring& text, Size area, HDC dc) override {
        const HWND control = control_();
        if (control == nullptr) return;
        layOutLabel(control, font, text, area);
        SendMessageW(control, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT);
    }

private:
    LabelControl control_;
};

}  // namespace

LabelDrawings allLabelDrawings(const LabelControl& control, MakeTextServices makeTextServices) {
    LabelDrawings all;
    all.push_back(std::make_unique<TextServicesDrawing>(makeTextServices));
    all.push_back(std::make_unique<FormatRangeDrawing>(control));
    all.push_back(std::make_unique<PrintClientDrawing>(control));
    return all;
}

void layOutLabel(HWND control, const TTextSettings& font, const std::wstring& text, Size area) {
    SetWindowPos(control, nullptr, 0, 0, area.width + labelControlSlack, area.height,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOREDRAW);
    setLabelControlArea(control, area);
    setLabel(control, font, text);
}

}  // namespace glimmer
