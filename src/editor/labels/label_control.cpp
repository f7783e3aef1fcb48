#include "editor/labels/label_control.h"

#include <objidl.h>
#include <richedit.h>
// After what it needs.
#include <imm.h>
#include <textserv.h>

#include <algorithm>
#include <cmath>

#include "common/system_library.h"
#include "common/wide_text.h"

namespace glimmer {

namespace {

/// Dots per inch that the control's fonts are scaled by.
int screenDotsPerInch() {
    const HDC screen = GetDC(nullptr);
    const int dots = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    return dots > 0 ? dots : 96;
}

WORD paragraphAlignment(TextAlignment alignment) {
    if (alignment == TextAlignment::Left) return PFA_LEFT;
    return alignment == TextAlignment::Centre ? PFA_CENTER : PFA_RIGHT;
}

}  // namespace

LRESULT RichEdit::send(UINT message, WPARAM wParam, LPARAM lParam) const {
    if (services_ == nullptr) return SendMessageW(window_, message, wParam, lParam);
    LRESULT answer = 0;
    services_->TxSendMessage(message, wParam, lParam, &answer);
    return answer;
}

HWND createLabelControl() {
    // The class belongs to this library, which stays loaded.
    if (systemLibrary(L"msftedit.dll") == nullptr) return nullptr;
    return CreateWindowExW(0, L"RICHEDIT50W", L"", WS_POPUP | ES_MULTILINE, 0, 0, 16, 16, nullptr, nullptr,
                           GetModuleHandleW(nullptr), nullptr);
}

void prepareLabelControl(const RichEdit& edit) {
    edit.send(EM_SETTEXTMODE, TM_PLAINTEXT | TM_SINGLELEVELUNDO);
    edit.send(EM_SETUNDOLIMIT);
    edit.send(EM_EXLIMITTEXT, 0, LPARAM{maxTextUnits});
    edit.send(EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN);
}

void formatLabelControl(const RichEdit& edit, const TTextSettings& settings, double zoom) {
    if (labelControlIsZoomed(edit)) edit.send(EM_SETZOOM);
    CHARFORMAT2W format{};
    format.cbSize = sizeof(format);
    format.dwMask = CFM_FACE | CFM_SIZE | CFM_BOLD | CFM_ITALIC | CFM_UNDERLINE | CFM_COLOR | CFM_CHARSET;
    // Labels are as large as their pixels at 96 dots per inch, whatever the screen has; twips are points / 20.
    format.yHeight = static_cast<LONG>(std::lround(settings.fontSize * 20.0 * 96 / screenDotsPerInch() * zoom));
    format.dwEffects = (settings.bold ? CFE_BOLD : 0U) | (settings.italic ? CFE_ITALIC : 0U) |
                       (settings.underlined ? CFE_UNDERLINE : 0U);
    format.crTextColor = settings.textColour;
    format.bCharSet = DEFAULT_CHARSET;
    const std::wstring face = labelControlUnits(settings.fontName).substr(0, LF_FACESIZE - 1);
    std::copy(face.begin(), face.end(), format.szFaceName);
    edit.send(EM_SETCHARFORMAT, SCF_ALL, &format);
    edit.send(EM_SETCHARFORMAT, SCF_DEFAULT, &format);
    edit.send(EM_SETBKGNDCOLOR, 0, static_cast<LPARAM>(settings.backgroundColour));

    CHARRANGE selection{};
    edit.send(EM_EXGETSEL, 0, &selection);
    CHARRANGE all = {0, -1};
    edit.send(EM_EXSETSEL, 0, &all);
    PARAFORMAT2 paragraph{};
    paragraph.cbSize = sizeof(paragraph);
    paragraph.dwMask = PFM_ALIGNMENT;
    paragraph.wAlignment = paragraphAlignment(settings.alignment);
    edit.send(EM_SETPARAFORMAT, 0, &paragraph);
    edit.send(EM_EXSETSEL, 0, &selection);
}

bool labelControlIsZoomed(const RichEdit& edit) {
    int numerator = 0;
    int denominator = 0;
    edit.send(EM_GETZOOM, reinterpret_cast<WPARAM>(&numerator), &denominator);
    return numerator != denominator;
}

bool labelControlIsAligned(const RichEdit& edit, TextAlignment alignment) {
    PARAFORMAT2 paragraph{};
    paragraph.cbSize = sizeof(paragraph);
    edit.send(EM_GETPARAFORMAT, 0, &paragraph);
    return paragraph.wAlignment == paragraphAlignment(alignment);
}

void setLabelControlArea(HWND richEdit, Size area) {
    const RichEdit edit(richEdit);
    RECT wanted = {0, 0, area.width, area.height};
    edit.send(EM_SETRECT, 0, &wanted);
    // The control may keep some pixels for itself; it then gets as many more.
    RECT got{};
    edit.send(EM_GETRECT, 0, &got);
    const LONG missing = area.width - (got.right - got.left);
    if (missing == 0 || got.right <= got.left) return;
    wanted.right += missing;
    edit.send(EM_SETRECT, 0, &wanted);
}

void setLabelControlText(const RichEdit& edit, std::wstring text) {
    // Replacing the selection puts the characters in as they are; setting the text would obey "{\rtf".
    CHARRANGE all = {0, -1};
    edit.send(EM_EXSETSEL, 0, &all);
    std::replace(text.begin(), text.end(), L'\n', L'\r');
    edit.send(EM_REPLACESEL, FALSE, text.c_str());
    CHARRANGE start = {0, 0};
    edit.send(EM_EXSETSEL, 0, &start);
}

void setLabelControlText(const RichEdit& edit, const std::string& text) {
    setLabelControlText(edit, labelControlUnits(text));
}

std::string labelControlText(const RichEdit& edit) {
    GETTEXTLENGTHEX lengthOf = {GTL_NUMCHARS | GTL_PRECISE, 1200};
    const LRESULT length = edit.send(EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&lengthOf));
    if (length <= 0) return {};
    std::wstring text(static_cast<size_t>(length) + 1, L'\0');
    GETTEXTEX get{};
    get.cb = static_cast<DWORD>(text.size()) * sizeof(wchar_t);
    get.flags = GT_DEFAULT;
    get.codepage = 1200;
    const LRESULT got = edit.send(EM_GETTEXTEX, reinterpret_cast<WPARAM>(&get), text.data());
    text.resize(static_cast<size_t>(std::max<LRESULT>(got, 0)));
    // Enter gives a carriage return, Shift+Enter a vertical tab.
    std::replace(text.begin(), text.end(), L'\r', L'\n');
    std::replace(text.begin(), text.end(), L'\v', L'\n');
    return fromWide(text);
}

std::wstring labelControlUnits(const std::string& text) {
    std::wstring units = toWide(text);
    // The control ends a text at the first 0.
    std::replace(units.begin(), units.end(), L'\0', L' ');
    std::replace(units.begin(), units.end(), L'\v', L'\n');
    return units;
}

}  // namespace glimmer
