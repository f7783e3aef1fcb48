#include "editor/labels/rich_text_painter.h"

#include <richedit.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "common/assertion.h"
#include "common/debug_channel.h"
#include "common/text.h"
#include "settings/options.h"

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

constexpr auto blanks = L" \t\r\n";

std::wstring laidOutUnits(const std::string& text) {
    return labelControlUnits(text.size() > maxLaidOutUnits ? firstUnits(text, maxLaidOutUnits) : text);
}

/// Where a character stands, in the control's pixels.
POINTL positionOf(HWND control, LONG character) {
    POINTL point = {0, 0};
    SendMessageW(control, EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&point), character);
    return point;
}

LONG lineCount(HWND control) { return static_cast<LONG>(SendMessageW(control, EM_GETLINECOUNT, 0, 0)); }

LONG startOfLine(HWND control, LONG line) {
    return static_cast<LONG>(SendMessageW(control, EM_LINEINDEX, static_cast<WPARAM>(line), 0));
}

bool anyCovered(const TextMask& mask) {
    return std::any_of(mask.coverage.begin(), mask.coverage.end(), [](uint8_t covered) { return covered != 0; });
}

/// Signs that every font, or the one that the system puts in its place, has a picture of.
bool isSeen(wchar_t unit) {
    return (unit >= 0x21 && unit <= 0x7E) || (unit >= 0xA1 && unit <= 0x24F && unit != 0xAD) ||
           (unit >= 0x391 && unit <= 0x3C9 && unit != 0x3A2) || (unit >= 0x400 && unit <= 0x45F) ||
           (unit >= 0x4E00 && unit <= 0x9FA5);
}

LabelDrawingChoice& choiceOfTheProcess() {
    static LabelDrawingChoice choice;
    return choice;
}

}  // namespace

RichTextPainter::RichTextPainter() : RichTextPainter(LabelControl()) {}

RichTextPainter::RichTextPainter(LabelControl makeControl)
    : RichTextPainter(std::move(makeControl), choiceOfTheProcess()) {}

RichTextPainter::RichTextPainter(LabelControl makeControl, LabelDrawingChoice& choice)
    : makeControl_(std::move(makeControl)), choice_(choice) {}

RichTextPainter::~RichTextPainter() {
    if (ownControl_ != nullptr) DestroyWindow(ownControl_);
}

HWND RichTextPainter::ownControl() {
    if (ownControl_ == nullptr) {
        ownControl_ = createLabelControl();
        if (ownControl_ != nullptr) prepareLabelControl(ownControl_);
    }
    return ownControl_;
}

HWND RichTextPainter::control() {
    if (!makeControl_) return ownControl();
    if (control_ == nullptr) {
        control_ = makeControl_();
        if (control_ != nullptr) prepareLabelControl(control_);
    }
    // In a minimised form a control takes no notice of its size, and so does not wrap anew.
    if (control_ != nullptr && IsIconic(GetAncestor(control_, GA_ROOT))) return ownControl();
    return control_;
}

/// The text with a line break wherever the control, as it is sized and formatted, breaks one of its very long words.
std::wstring RichTextPainter::withLongWordsBroken(const TTextSettings& font, const std::wstring& text, Size area) {
    std::wstring result;
    HWND sized = nullptr;
    for (size_t at = 0; at < text.size(); ++at) {
        const size_t end = std::min(text.find_first_of(blanks, at), text.size());
        if (end - at > maxControlWord && sized == nullptr) {
            sized = control();
            layOutLabel(sized, font, {}, area);
        }
        for (size_t length = maxControlWord; end - at > maxControlWord && at + length < end;) {
            setLabelControlText(sized, text.substr(at, length));
            const LONG lines = lineCount(sized);
            if (lines < 2) {
                length *= 2;
                continue;
            }
            // A word that needs several lines begins on one of its own.
            if (!result.empty() && result.back() != L'\n') result += L'\n';
            const auto whole = static_cast<size_t>(startOfLine(sized, lines - 1));  // in all lines but the last
            for (LONG line = 1; line < lines; ++line) {
                const auto from = static_cast<size_t>(startOfLine(sized, line - 1));
                const auto to = static_cast<size_t>(startOfLine(sized, line));
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
    const HWND edit = control();
    if (edit == nullptr) return {std::max(width, 1), 1};
    TTextSettings left = font;
    left.alignment = TextAlignment::Left;
    // One empty line more: where it begins is the height of the others.
    const std::wstring units = laidOutUnits(text);
    const Size area = {width > 0 ? std::min(width, maxSide) : maxSide, maxSide};
    layOutLabel(edit, left, withLongWordsBroken(left, units + L"\n", area), area);
    const LONG lines = lineCount(edit) - 1;
    const POINTL origin = positionOf(edit, 0);
    Size size;
    size.height = std::max(1, static_cast<int32_t>(positionOf(edit, startOfLine(edit, lines)).y - origin.y));
    if (lines > std::count(units.begin(), units.end(), L'\n') + 1) {
        // Some line was broken: the text takes all the width there is.
        size.width = width > 0 ? width : maxSide;
        return size;
    }
    for (LONG line = 0; line < std::min(lines, maxMeasuredLines); ++line) {
        // The place behind its last character, one pixel more for the overhang.
        const POINTL end = positionOf(edit, startOfLine(edit, line + 1) - 1);
        size.width = std::max(size.width, static_cast<int32_t>(end.x - origin.x) + 1);
    }
    if (width > 0) size.width = std::min(size.width, width);
    return size;
}

/// What that way covers; nothing without memory for the picture.
TextMask RichTextPainter::draw(LabelDrawing& drawing, const TTextSettings& font, const std::wstring& text, Size area) {
    TextMask mask{area, std::vector<uint8_t>(static_cast<size_t>(area.width) * static_cast<size_t>(area.height))};
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
    const HGDIOBJ before = SelectObject(dc.get(), bitmap.get());
    RECT all = {0, 0, area.width, area.height};
    FillRect(dc.get(), &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    drawing.draw(font, text, area, dc.get());
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

/// Has each way draw two words that the control wraps. The first one that has ink in both lines and none below serves;
/// when there is none, the first one that draws anything.
int RichTextPainter::findWay() {
    const TTextSettings font;
    const std::string words = "XXX XXX";
    const int32_t height = measure(font, "X", 0).height;
    const Size area = {measure(font, words, 0).width * 3 / 4, 4 * height};
    const int32_t wrapped = measure(font, words, area.width).height;
    int drawn = LabelDrawingChoice::none;
    for (size_t way = 0; way < drawings_.size(); ++way) {
        const TextMask mask = draw(*drawings_[way], font, labelControlUnits(words), area);
        const auto hasInk = [&](int32_t top, int32_t bottom) {
            const auto row = [&](int32_t y) { return mask.coverage.begin() + std::ptrdiff_t{y} * area.width; };
            return std::any_of(row(top), row(bottom), [](uint8_t covered) { return covered != 0; });
        };
        if (!hasInk(0, area.height)) continue;
        if (drawn == LabelDrawingChoice::none) drawn = static_cast<int>(way);
        if (hasInk(0, height) && hasInk(height, wrapped) && !hasInk(wrapped, area.height)) return static_cast<int>(way);
    }
    return drawn;
}

TextMask RichTextPainter::render(const TTextSettings& font, const std::string& text, Size area) {
    if (control() == nullptr)
        return {area, std::vector<uint8_t>(static_cast<size_t>(area.width) * static_cast<size_t>(area.height))};
    if (drawings_.empty()) drawings_ = choice_.make([this] { return control(); });
    if (choice_.way == LabelDrawingChoice::unknown) choice_.way = findWay();
    const auto first = static_cast<size_t>(std::max(choice_.way.load(), 0));
    const std::wstring units = withLongWordsBroken(font, laidOutUnits(text), area);
    TextMask mask = draw(*drawings_[first], font, units, area);
    if (anyCovered(mask) || units.find_first_not_of(blanks) == std::wstring::npos) return mask;
    for (size_t way = 0; way < drawings_.size(); ++way) {
        if (way == first) continue;
        TextMask other = draw(*drawings_[way], font, units, area);
        if (anyCovered(other)) return other;
    }
    if (mustBeSeen(font, units, area) && !choice_.told.exchange(true)) {
        debugRemark("a label was painted without any pixel");
        GLIMMER_ASSERT(!OptionsHolder().on("chkDebugMode"), "label is seen", "uShapes");
    }
    return mask;
}

/// Whether a letter of the text stands wholly inside the area.
bool RichTextPainter::mustBeSeen(const TTextSettings& font, const std::wstring& text, Size area) {
    const auto letter = std::find_if(text.begin(), text.end(), isSeen);
    if (letter == text.end()) return false;
    const HWND edit = control();
    layOutLabel(edit, font, text + L"\n", area);
    const auto at = static_cast<LONG>(letter - text.begin());
    const auto line = static_cast<LONG>(SendMessageW(edit, EM_EXLINEFROMCHAR, 0, at));
    const POINTL place = positionOf(edit, at);
    return place.x >= 0 && positionOf(edit, at + 1).x <= area.width && place.y >= 0 &&
           positionOf(edit, startOfLine(edit, line + 1)).y <= area.height;
}

}  // namespace glimmer
