#include "editor/rich_text_painter.h"

#include <richedit.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "common/text.h"

namespace glimmer {

namespace {

struct GdiDeleter {
    void operator()(HDC dc) const { DeleteDC(dc); }
    void operator()(HBITMAP bitmap) const { DeleteObject(bitmap); }
};
using MemoryDc = std::unique_ptr<std::remove_pointer_t<HDC>, GdiDeleter>;
using SectionBitmap = std::unique_ptr<std::remove_pointer_t<HBITMAP>, GdiDeleter>;

/// Lines beyond are not asked for their width: each question costs time in proportion to the text before it.
constexpr LONG maxMeasuredLines = 500;

/// Units of a text that are laid out; what is beyond is not painted.
constexpr size_t maxLaidOutUnits = 8192;

/// Words of more units are broken before the control sees them: Wine's takes time that grows with the third power of a
/// word's length (0.2 s for 1000 letters that need several lines, 16 s for 4000).
constexpr size_t maxControlWord = 400;

/// Dots per inch that the control's fonts are scaled by.
int screenDotsPerInch() {
    const HDC screen = GetDC(nullptr);
    const int dots = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    return dots > 0 ? dots : 96;
}

std::wstring wide(const std::string& text) {
    const std::u16string units = toUtf16(text);
    std::wstring result(units.begin(), units.end());
    // The control ends a text at the first 0.
    std::replace(result.begin(), result.end(), L'\0', L' ');
    return result;
}

std::wstring laidOutUnits(const std::string& text) {
    return wide(text.size() > maxLaidOutUnits ? firstUnits(text, maxLaidOutUnits) : text);
}

/// Where a character stands, in the control's pixels.
POINTL positionOf(HWND control, LONG character) {
    POINTL point = {0, 0};
    SendMessageW(control, EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&point), character);
    return point;
}

WORD paragraphAlignment(TextAlignment alignment) {
    if (alignment == TextAlignment::Left) return PFA_LEFT;
    return alignment == TextAlignment::Centre ? PFA_CENTER : PFA_RIGHT;
}

HWND createControl() {
    // The class belongs to this library, which stays loaded.
    static const HMODULE library = LoadLibraryW(L"Msftedit.dll");
    if (library == nullptr) return nullptr;
    return CreateWindowExW(0, L"RICHEDIT50W", L"", WS_POPUP | ES_MULTILINE, 0, 0, 16, 16, nullptr, nullptr,
                           GetModuleHandleW(nullptr), nullptr);
}

}  // namespace

void prepareLabelControl(HWND richEdit) {
    SendMessageW(richEdit, EM_SETTEXTMODE, TM_PLAINTEXT | TM_SINGLELEVELUNDO, 0);
    SendMessageW(richEdit, EM_SETUNDOLIMIT, 0, 0);
    SendMessageW(richEdit, EM_EXLIMITTEXT, 0, maxTextUnits);
    SendMessageW(richEdit, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, 0);
}

void formatLabelControl(HWND richEdit, const TTextSettings& settings, double zoom) {
    CHARFORMAT2W format{};
    format.cbSize = sizeof(format);
    format.dwMask = CFM_FACE | CFM_SIZE | CFM_BOLD | CFM_ITALIC | CFM_UNDERLINE | CFM_COLOR | CFM_CHARSET;
    // Labels are as large as their pixels at 96 dots per inch, whatever the screen has; twips are points / 20.
    format.yHeight = static_cast<LONG>(std::lround(settings.fontSize * 20.0 * 96 / screenDotsPerInch() * zoom));
    format.dwEffects = (settings.bold ? CFE_BOLD : 0U) | (settings.italic ? CFE_ITALIC : 0U) |
                       (settings.underlined ? CFE_UNDERLINE : 0U);
    format.crTextColor = settings.textColour;
    format.bCharSet = DEFAULT_CHARSET;
    const std::wstring face = wide(settings.fontName).substr(0, LF_FACESIZE - 1);
    std::copy(face.begin(), face.end(), format.szFaceName);
    SendMessageW(richEdit, EM_SETCHARFORMAT, SCF_ALL, reinterpret_cast<LPARAM>(&format));
    SendMessageW(richEdit, EM_SETCHARFORMAT, SCF_DEFAULT, reinterpret_cast<LPARAM>(&format));
    SendMessageW(richEdit, EM_SETBKGNDCOLOR, 0, static_cast<LPARAM>(settings.backgroundColour));

    CHARRANGE selection{};
    SendMessageW(richEdit, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selection));
    CHARRANGE all = {0, -1};
    SendMessageW(richEdit, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&all));
    PARAFORMAT2 paragraph{};
    paragraph.cbSize = sizeof(paragraph);
    paragraph.dwMask = PFM_ALIGNMENT;
    paragraph.wAlignment = paragraphAlignment(settings.alignment);
    SendMessageW(richEdit, EM_SETPARAFORMAT, 0, reinterpret_cast<LPARAM>(&paragraph));
    SendMessageW(richEdit, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&selection));
}

bool labelControlIsAligned(HWND richEdit, TextAlignment alignment) {
    PARAFORMAT2 paragraph{};
    paragraph.cbSize = sizeof(paragraph);
    SendMessageW(richEdit, EM_GETPARAFORMAT, 0, reinterpret_cast<LPARAM>(&paragraph));
    return paragraph.wAlignment == paragraphAlignment(alignment);
}

namespace {

void setControlText(HWND richEdit, std::wstring lines) {
    // Replacing the selection puts the characters in as they are; setting the text would obey "{\rtf".
    CHARRANGE all = {0, -1};
    SendMessageW(richEdit, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&all));
    std::replace(lines.begin(), lines.end(), L'\n', L'\r');
    SendMessageW(richEdit, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(lines.c_str()));
    CHARRANGE start = {0, 0};
    SendMessageW(richEdit, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&start));
}

}  // namespace

void setLabelControlText(HWND richEdit, const std::string& text) { setControlText(richEdit, wide(text)); }

std::string labelControlText(HWND richEdit) {
    GETTEXTLENGTHEX lengthOf = {GTL_NUMCHARS | GTL_PRECISE, 1200};
    const LRESULT length = SendMessageW(richEdit, EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&lengthOf), 0);
    if (length <= 0) return {};
    std::wstring text(static_cast<size_t>(length) + 1, L'\0');
    GETTEXTEX get{};
    get.cb = static_cast<DWORD>(text.size()) * sizeof(wchar_t);
    get.flags = GT_DEFAULT;
    get.codepage = 1200;
    const LRESULT got =
        SendMessageW(richEdit, EM_GETTEXTEX, reinterpret_cast<WPARAM>(&get), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<size_t>(std::max<LRESULT>(got, 0)));
    std::replace(text.begin(), text.end(), L'\r', L'\n');
    return toUtf8(std::u16string(text.begin(), text.end()));
}

RichTextPainter::RichTextPainter() : makeControl_(createControl), owned_(true) {}

RichTextPainter::RichTextPainter(std::function<HWND()> makeControl) : makeControl_(std::move(makeControl)) {}

RichTextPainter::~RichTextPainter() {
    if (owned_ && control_ != nullptr) DestroyWindow(control_);
}

HWND RichTextPainter::control() {
    if (control_ == nullptr) {
        control_ = makeControl_();
        if (control_ != nullptr) prepareLabelControl(control_);
    }
    return control_;
}

void RichTextPainter::layOut(const TTextSettings& font, const std::wstring& text, Size area) {
    SetWindowPos(control_, nullptr, 0, 0, area.width, area.height,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOREDRAW);
    RECT all = {0, 0, area.width, area.height};
    SendMessageW(control_, EM_SETRECT, 0, reinterpret_cast<LPARAM>(&all));
    TTextSettings black = font;
    black.textColour = RGB(0, 0, 0);
    black.backgroundColour = RGB(255, 255, 255);
    formatLabelControl(control_, black);
    setControlText(control_, withLongWordsBroken(text));
    formatLabelControl(control_, black);
}

/// The text with a line break wherever the control, as it is sized and formatted, breaks one of its very long words.
std::wstring RichTextPainter::withLongWordsBroken(const std::wstring& text) {
    std::wstring result;
    for (size_t at = 0; at < text.size(); ++at) {
        const size_t end = std::min(text.find_first_of(L" \t\r\n", at), text.size());
        for (size_t length = maxControlWord; end - at > maxControlWord && at + length < end;) {
            setControlText(control_, text.substr(at, length));
            const auto lines = SendMessageW(control_, EM_GETLINECOUNT, 0, 0);
            if (lines < 2) {
                length *= 2;
                continue;
            }
            // A word that needs several lines begins on one of its own.
            if (!result.empty() && result.back() != L'\n') result += L'\n';
            const auto whole = static_cast<size_t>(
                SendMessageW(control_, EM_LINEINDEX, static_cast<WPARAM>(lines) - 1, 0));  // in all lines but the last
            for (WPARAM line = 1; line < static_cast<WPARAM>(lines); ++line) {
                const auto from = static_cast<size_t>(SendMessageW(control_, EM_LINEINDEX, line - 1, 0));
                const auto to = static_cast<size_t>(SendMessageW(control_, EM_LINEINDEX, line, 0));
                result.append(text, at + from, to - from) += L'\n';
            }
            at += whole;
        }
        result.append(text, at, end - at);
        if (end < text.size()) result += text[end];
        at = end;
    }
    return result;
}

Size RichTextPainter::measure(const TTextSettings& font, const std::string& text, int32_t width) {
    if (control() == nullptr) return {std::max(width, 1), 1};
    TTextSettings left = font;
    left.alignment = TextAlignment::Left;
    // One empty line more: where it begins is the height of the others.
    const std::wstring units = laidOutUnits(text);
    layOut(left, units + L"\n", {width > 0 ? std::min(width, maxSide) : maxSide, maxSide});
    const auto lines = static_cast<LONG>(SendMessageW(control_, EM_GETLINECOUNT, 0, 0)) - 1;
    const auto startOf = [this](LONG line) {
        return static_cast<LONG>(SendMessageW(control_, EM_LINEINDEX, static_cast<WPARAM>(line), 0));
    };
    const POINTL origin = positionOf(control_, 0);
    Size size;
    size.height = std::max(1, static_cast<int32_t>(positionOf(control_, startOf(lines)).y - origin.y));
    if (lines > std::count(units.begin(), units.end(), L'\n') + 1) {
        // Some line was broken: the text takes all the width there is.
        size.width = width > 0 ? width : maxSide;
        return size;
    }
    for (LONG line = 0; line < std::min(lines, maxMeasuredLines); ++line) {
        // The place behind its last character, one pixel more for the overhang.
        const POINTL end = positionOf(control_, startOf(line + 1) - 1);
        size.width = std::max(size.width, static_cast<int32_t>(end.x - origin.x) + 1);
    }
    if (width > 0) size.width = std::min(size.width, width);
    return size;
}

TextMask RichTextPainter::render(const TTextSettings& font, const std::string& text, Size area) {
    TextMask mask{area, std::vector<uint8_t>(static_cast<size_t>(area.width) * static_cast<size_t>(area.height))};
    if (control() == nullptr) return mask;
    const MemoryDc dc(CreateCompatibleDC(nullptr));
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = area.width;
    info.bmiHeader.biHeight = -area.height;  // from the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    const SectionBitmap bitmap(CreateDIBSection(dc.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (bitmap == nullptr) return mask;
    layOut(font, laidOutUnits(text), area);
    const HGDIOBJ before = SelectObject(dc.get(), bitmap.get());
    RECT all = {0, 0, area.width, area.height};
    FillRect(dc.get(), &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    SendMessageW(control_, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc.get()), PRF_CLIENT);
    GdiFlush();
    // Black on white: what is missing to white is covered. The mean of the colours evens out subpixel rendering,
    // which has no meaning in a picture.
    const auto* pixel = static_cast<const uint8_t*>(bits);
    for (uint8_t& coverage : mask.coverage) {
        coverage = static_cast<uint8_t>(255 - (pixel[0] + pixel[1] + pixel[2]) / 3);
        pixel += 4;
    }
    SelectObject(dc.get(), before);
    return mask;
}

}  // namespace glimmer
