#include "editor/labels/text_services.h"

#include <objidl.h>
#include <richedit.h>
// After what it needs.
#include <imm.h>
#include <textserv.h>

#include <cwchar>
#include <utility>

#include "common/system_library.h"
#include "editor/painting/text_painter.h"

namespace glimmer {

namespace {

/// As documented; the libraries of the system export it as well.
constexpr IID textServicesId = {0x8d33f740, 0xcf58, 0x11ce, {0xa8, 0x9d, 0x00, 0xaa, 0x00, 0x6c, 0xad, 0xc5}};

/// The text begins at its top, however high it is: an area as high as any label never scrolls.
constexpr LONG areaHeight = TextPainter::maxSide;

}  // namespace

/// What text services ask of the place that they are in: an area that shows no caret, scrolls nowhere, answers its size
/// and the screen's resolution, by which the windows of that control lay their text out too.
class TextServices::Host final : public ITextHost {
public:
    Host() {
        character_.cbSize = sizeof(character_);
        character_.dwMask = CFM_FACE | CFM_SIZE | CFM_CHARSET;
        character_.yHeight = 220;
        character_.bCharSet = DEFAULT_CHARSET;
        std::wcscpy(character_.szFaceName, L"Arial");
        paragraph_.cbSize = sizeof(paragraph_);
        paragraph_.dwMask = PFM_ALIGNMENT;
        paragraph_.wAlignment = PFA_LEFT;
    }
    virtual ~Host() = default;

    RECT area = {0, 0, 1, areaHeight};

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        *object = nullptr;
        if (!IsEqualIID(id, IID_IUnknown)) return E_NOINTERFACE;
        AddRef();
        *object = static_cast<IUnknown*>(this);
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

    HDC TxGetDC() override { return GetDC(nullptr); }
    INT TxReleaseDC(HDC dc) override { return ReleaseDC(nullptr, dc); }
    HRESULT TxGetClientRect(LPRECT rect) override {
        *rect = area;
        return S_OK;
    }
    HRESULT TxGetViewInset(LPRECT inset) override {
        *inset = {};
        return S_OK;
    }
    /// Without it nothing is zoomed.
    HRESULT TxGetExtent(LPSIZEL) override { return E_NOTIMPL; }
    HRESULT TxGetCharFormat(const CHARFORMATW** format) override {
        *format = &character_;
        return S_OK;
    }
    HRESULT TxGetParaFormat(const PARAFORMAT** format) override {
        *format = &paragraph_;
        return S_OK;
    }
    HRESULT TxGetPropertyBits(DWORD mask, DWORD* bits) override {
        *bits = mask & (TXTBIT_MULTILINE | TXTBIT_WORDWRAP);
        return S_OK;
    }
    HRESULT TxGetBackStyle(TXTBACKSTYLE* style) override {
        *style = TXTBACK_TRANSPARENT;
        return S_OK;
    }
    HRESULT TxGetMaxLength(DWORD* length) override {
        *length = maxTextUnits;
        return S_OK;
    }
    HRESULT TxGetScrollBars(DWORD* bars) override {
        *bars = 0;
        return S_OK;
    }
    HRESULT TxGetPasswordChar(TCHAR*) override { return S_FALSE; }
    HRESULT TxGetAcceleratorPos(LONG* position) override {
        *position = -1;
        return S_OK;
    }
    HRESULT TxGetSelectionBarWidth(LONG* width) override {
        *width = 0;
        return S_OK;
    }
    COLORREF TxGetSysColor(int index) override { return GetSysColor(index); }

    // There is nothing on any screen.
    WINBOOL TxShowScrollBar(INT, WINBOOL) override { return FALSE; }
    WINBOOL TxEnableScrollBar(INT, INT) override { return FALSE; }
    WINBOOL TxSetScrollRange(INT, LONG, INT, WINBOOL) override { return FALSE; }
    WINBOOL TxSetScrollPos(INT, INT, WINBOOL) override { return FALSE; }
    void TxInvalidateRect(LPCRECT, WINBOOL) override {}
    void TxViewChange(WINBOOL) override {}
    WINBOOL TxCreateCaret(HBITMAP, INT, INT) override { return FALSE; }
    WINBOOL TxShowCaret(WINBOOL) override { return FALSE; }
    WINBOOL TxSetCaretPos(INT, INT) override { return FALSE; }
    WINBOOL TxSetTimer(UINT, UINT) override { return FALSE; }
    void TxKillTimer(UINT) override {}
    void TxScrollWindowEx(INT, INT, LPCRECT, LPCRECT, HRGN, LPRECT, UINT) override {}
    void TxSetCapture(WINBOOL) override {}
    void TxSetFocus() override {}
    void TxSetCursor(HCURSOR, WINBOOL) override {}
    WINBOOL TxScreenToClient(LPPOINT) override { return FALSE; }
    WINBOOL TxClientToScreen(LPPOINT) override { return FALSE; }
    HRESULT TxActivate(LONG*) override { return E_FAIL; }
    HRESULT TxDeactivate(LONG) override { return S_OK; }
    HRESULT OnTxCharFormatChange(const CHARFORMATW*) override { return S_OK; }
    HRESULT OnTxParaFormatChange(const PARAFORMAT*) override { return S_OK; }
    HRESULT TxNotify(DWORD, void*) override { return S_OK; }
    HIMC TxImmGetContext() override { return nullptr; }
    void TxImmReleaseContext(HIMC) override {}

private:
    ULONG references_ = 1;
    CHARFORMATW character_{};
    PARAFORMAT paragraph_{};
};

std::unique_ptr<TextServices> TextServices::create(MakeTextServices make) {
    if (make == nullptr) make = systemFunction<MakeTextServices>(L"msftedit.dll", "CreateTextServices");
    if (make == nullptr) return nullptr;
    Host* host = new Host;  // counts its references, as text services want it
    IUnknown* unknown = nullptr;
    ITextServices* services = nullptr;
    if (SUCCEEDED(make(nullptr, host, &unknown)) && unknown != nullptr) {
        const auto* exported = systemFunction<const IID*>(L"msftedit.dll", "IID_ITextServices");
        unknown->QueryInterface(exported != nullptr ? *exported : textServicesId, reinterpret_cast<void**>(&services));
        unknown->Release();
    }
    if (services == nullptr) {
        host->Release();
        return nullptr;
    }
    return std::unique_ptr<TextServices>(new TextServices(*host, *services));
}

TextServices::~TextServices() {
    services_->Release();
    host_->Release();
}

void TextServices::setWidth(int32_t width) {
    if (host_->area.right == width) return;
    host_->area.right = width;
    services_->OnTxPropertyBitsChange(TXTBIT_CLIENTRECTCHANGE, TXTBIT_CLIENTRECTCHANGE);
}

void TextServices::draw(HDC dc, Size area) const {
    const RECTL bounds = {0, 0, host_->area.right, host_->area.bottom};
    RECT update = {0, 0, area.width, area.height};
    services_->TxDraw(DVASPECT_CONTENT, 0, nullptr, nullptr, dc, nullptr, &bounds, nullptr, &update, nullptr, 0,
                      TXTVIEW_INACTIVE);
}

}  // namespace glimmer
