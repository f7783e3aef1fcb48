// The painted label against a rich edit control as the in-place editor shows it: same lines, same pixels.

#include "editor/labels/rich_text_painter.h"

#include <gtest/gtest.h>
#include <richedit.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "common/assertion.h"
#include "editor/painting/annotation_painter.h"
#include "settings/options.h"
#include "support/not_copied.h"

namespace glimmer {
namespace {

const char* const texts[] = {
    "Hamburg",
    "one\ntwo\n\nfour",
    "many words that cannot stand on one line of this label, however short they are",
    "wwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwww",
    "{\\rtf1\\b no markup}",
    "\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82 \xCE\xB3\xCE\xB5\xCE\xB9\xCE\xAC \xC3\xBC",
    "ends with a line\n",
};

struct Look {
    int32_t size;
    bool bold, italic, underlined;
    TextAlignment alignment;
};
const Look looks[] = {
    {11, false, false, false, TextAlignment::Left},
    {16, true, false, true, TextAlignment::Centre},
    {24, false, true, false, TextAlignment::Right},
};

TTextSettings settingsOf(const Look& look) {
    TTextSettings settings;
    settings.fontSize = look.size;
    settings.bold = look.bold;
    settings.italic = look.italic;
    settings.underlined = look.underlined;
    settings.alignment = look.alignment;
    return settings;
}

/// A visible control on a window, as the canvas has it while a label is edited.
class EditorWindow : test::NotCopied {
public:
    explicit EditorWindow(Size size) {
        LoadLibraryW(L"msftedit.dll");  // it stays; a painter brings it only with its first text
        parent_ = CreateWindowExW(WS_EX_TOPMOST, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 10, 10, size.width + 20,
                                  size.height + 20, nullptr, nullptr, nullptr, nullptr);
        control_ = CreateWindowExW(0, L"RICHEDIT50W", L"", WS_CHILD | WS_VISIBLE | ES_MULTILINE, 5, 5, size.width,
                                   size.height, parent_, nullptr, nullptr, nullptr);
        prepareLabelControl(control_);
        resize(size);
    }
    void resize(Size size) const {
        SetWindowPos(control_, nullptr, 5, 5, size.width, size.height, SWP_NOZORDER | SWP_NOACTIVATE);
        RECT all = {0, 0, size.width, size.height};
        SendMessageW(control_, EM_SETRECT, 0, reinterpret_cast<LPARAM>(&all));
    }
    ~EditorWindow() { DestroyWindow(parent_); }

    [[nodiscard]] HWND control() const { return control_; }
    [[nodiscard]] LRESULT lineCount() const { return SendMessageW(control_, EM_GETLINECOUNT, 0, 0); }
    /// Coverage as it stands on the screen.
    [[nodiscard]] std::vector<int> shown(Size size) const {
        RedrawWindow(parent_, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        HDC screen = GetDC(control_);
        HDC dc = CreateCompatibleDC(screen);
        HBITMAP bitmap = CreateCompatibleBitmap(screen, size.width, size.height);
        HGDIOBJ before = SelectObject(dc, bitmap);
        BitBlt(dc, 0, 0, size.width, size.height, screen, 0, 0, SRCCOPY);
        std::vector<int> coverage;
        for (int y = 0; y < size.height; ++y) {
            for (int x = 0; x < size.width; ++x) {
                const COLORREF c = GetPixel(dc, x, y);
                coverage.push_back(255 - (GetRValue(c) + GetGValue(c) + GetBValue(c)) / 3);
            }
        }
        SelectObject(dc, before);
        DeleteObject(bitmap);
        DeleteDC(dc);
        ReleaseDC(control_, screen);
        return coverage;
    }

private:
    HWND parent_ = nullptr;
    HWND control_ = nullptr;
};

/// A control that does what Windows' one is documented to do, and no more: it does not print itself, it formats its
/// text for a device as wide as it is told, it takes no notice of its size in a minimised form.
class WindowsControl : test::NotCopied {
public:
    explicit WindowsControl(HWND parent = nullptr) {
        window = createLabelControl();
        if (parent != nullptr) {
            SetWindowLongW(window, GWL_STYLE, WS_CHILD | ES_MULTILINE);
            SetParent(window, parent);
        }
        own_ = reinterpret_cast<WNDPROC>(SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(answer)));
    }
    ~WindowsControl() { DestroyWindow(window); }

    HWND window = nullptr;
    inline static bool formats = true;
    inline static int kept = 0;  ///< devices whose facts it keeps

private:
    static LRESULT CALLBACK answer(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
        const bool iconic = IsIconic(GetAncestor(control, GA_ROOT)) != FALSE;
        if (message == WM_PRINTCLIENT || (message == EM_SETRECT && iconic)) return 0;
        if (message == WM_WINDOWPOSCHANGING && iconic) reinterpret_cast<WINDOWPOS*>(lParam)->flags |= SWP_NOSIZE;
        if (message == EM_FORMATRANGE && lParam == 0) return kept = 0;
        if (message == EM_FORMATRANGE) {
            const auto& range = *reinterpret_cast<FORMATRANGE*>(lParam);
            if (!formats) return 0;
            ++kept;
            const int across = GetDeviceCaps(range.hdcTarget, LOGPIXELSX);
            const int down = GetDeviceCaps(range.hdcTarget, LOGPIXELSY);
            RECT area = {0, 0, MulDiv(range.rc.right - range.rc.left, across, 1440),
                         MulDiv(range.rc.bottom - range.rc.top, down, 1440)};
            SetWindowPos(control, nullptr, 0, 0, area.right, area.bottom, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
            SendMessageW(control, EM_SETRECT, 0, reinterpret_cast<LPARAM>(&area));
            CallWindowProcW(own_, control, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(range.hdc), PRF_CLIENT);
            return GetWindowTextLengthW(control);
        }
        return CallWindowProcW(own_, control, message, wParam, lParam);
    }
    inline static WNDPROC own_ = nullptr;
};

HRESULT WINAPI noTextServices(IUnknown*, ITextHost*, IUnknown** services) {
    *services = nullptr;
    return E_FAIL;
}

enum Way { ByTextServices, ByFormatting, ByPrinting };

/// A painter that has only that way, and for formatting nothing but what Windows documents.
struct OneWay {
    explicit OneWay(Way way) {
        choice.make = [way](const LabelControl& control) {
            LabelDrawings all = allLabelDrawings(control);
            LabelDrawings one;
            one.push_back(std::move(all[way]));
            return one;
        };
        if (way == ByFormatting) control = std::make_unique<WindowsControl>();
        const LabelControl make = [this] { return control->window; };
        painter = std::make_unique<RichTextPainter>(control == nullptr ? LabelControl() : make, choice);
    }
    std::unique_ptr<WindowsControl> control;
    LabelDrawingChoice choice;
    std::unique_ptr<RichTextPainter> painter;
};

TEST(RichTextPainter, PaintsWhatTheEditorShows) {
    constexpr Size size = {180, 200};
    EditorWindow editor(size);
    for (const Way way : {ByTextServices, ByFormatting, ByPrinting}) {
        OneWay one(way);
        RichTextPainter& painter = *one.painter;
        ASSERT_NE(painter.control(), nullptr);
        for (const Look& look : looks) {
            for (const char* text : texts) {
                const TTextSettings settings = settingsOf(look);
                setLabelControlText(editor.control(), text);
                formatLabelControl(editor.control(), settings);
                EXPECT_EQ(labelControlText(editor.control()), text);
                const auto mask = painter.mask(settings, text, size);
                const std::vector<int> shown = editor.shown(size);
                ASSERT_EQ(shown.size(), mask->coverage.size());
                int64_t ink = 0;
                int64_t difference = 0;
                for (size_t i = 0; i < shown.size(); ++i) {
                    ink += shown[i];
                    difference += std::abs(shown[i] - mask->coverage[i]);
                }
                EXPECT_GT(ink, 2000) << text;
                EXPECT_LE(difference, ink / 50) << text << ", " << look.size << " points, way " << way;
            }
        }
        EXPECT_EQ(WindowsControl::kept, 0) << "what the control kept of a device is given back";
    }
}

// On Windows a control prints nothing; where text services are missing as well, it formats for a device.
TEST(RichTextPainter, TakesTheFirstWayThatDrawsAndNeverLeavesALabelEmpty) {
    const WindowsControl control;
    const LabelControl make = [&] { return control.window; };
    const auto onWindows = [](const LabelControl& edit) { return allLabelDrawings(edit, noTextServices); };
    const auto inked = [](const TextMask& mask) {
        return std::any_of(mask.coverage.begin(), mask.coverage.end(), [](uint8_t covered) { return covered != 0; });
    };
    RichTextPainter usual;
    const auto expected = usual.mask({}, "Hamburg", {100, 30});

    LabelDrawingChoice choice;
    choice.make = onWindows;
    EXPECT_EQ(RichTextPainter(make, choice).mask({}, "Hamburg", {100, 30})->coverage, expected->coverage);
    EXPECT_EQ(choice.way, ByFormatting);
    choice.way = ByPrinting;
    EXPECT_EQ(RichTextPainter(make, choice).mask({}, "Hamburg", {100, 30})->coverage, expected->coverage);

    // Drawing something is not enough: it has to be the text, in its lines.
    class Blot final : public LabelDrawing {
        void draw(const TTextSettings&, const std::wstring&, Size area, HDC dc) override {
            RECT all = {0, 0, area.width, area.height};
            FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
        }
    };
    LabelDrawingChoice blotted;
    blotted.make = [](const LabelControl& edit) {
        LabelDrawings all = allLabelDrawings(edit);
        all.insert(all.begin(), std::make_unique<Blot>());
        return all;
    };
    EXPECT_EQ(RichTextPainter(make, blotted).mask({}, "Hamburg", {100, 30})->coverage, expected->coverage);

    WindowsControl::formats = false;
    LabelDrawingChoice none;
    none.make = onWindows;
    RichTextPainter blind(make, none);
    EXPECT_FALSE(inked(*blind.mask({}, " \n", {100, 60})));
    EXPECT_FALSE(inked(*blind.mask({}, "\n\nlow", {100, 30}))) << "no letter has its place in the area";
    OptionsHolder().setOn("chkDebugMode", true);
    EXPECT_THROW(static_cast<void>(blind.mask({}, "Hamburg", {100, 30})), AssertionFailure);
    EXPECT_FALSE(inked(*blind.mask({}, "Hamburg", {100, 30}))) << "once is enough";
    OptionsHolder() = Options();
    WindowsControl::formats = true;
}

// What a toolkit does when its window comes to a monitor with another scaling, and a minimised window.
TEST(RichTextPainter, KnowsNoMonitorAndNoMinimisedForm) {
    const HWND form = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 300, 200, nullptr,
                                      nullptr, nullptr, nullptr);
    {
        const WindowsControl control(form);
        LabelDrawingChoice choice;
        choice.make = [](const LabelControl& edit) { return allLabelDrawings(edit, noTextServices); };
        RichTextPainter painter([&] { return control.window; }, choice);
        const std::string text = "many words that cannot stand on one line";
        const Size size = painter.measure({}, text, 90);
        const auto mask = painter.mask({}, "other words " + text, size);
        RichTextPainter moved([&] { return control.window; }, choice);
        for (int step = 0; step < 2; ++step) {
            SendMessageW(control.window, EM_SETZOOM, 3, 2);
            if (step == 1) ShowWindow(form, SW_MINIMIZE);
            EXPECT_EQ(moved.measure({}, text, 60), RichTextPainter().measure({}, text, 60)) << step;
            EXPECT_EQ(moved.measure({}, text, 90), size) << step;
            SendMessageW(control.window, EM_SETZOOM, 3, 2);
            EXPECT_EQ(
                RichTextPainter([&] { return control.window; }, choice).mask({}, "other words " + text, size)->coverage,
                mask->coverage)
                << step;
        }
    }
    DestroyWindow(form);
}

TEST(RichTextPainter, MeasuresTheLinesOfTheEditor) {
    RichTextPainter painter;
    const EditorWindow editor({400, 900});
    for (const Look& look : looks) {
        const TTextSettings settings = settingsOf(look);
        const int32_t line = painter.measure(settings, "x", 0).height;
        EXPECT_GE(line, look.size * 96 / 72);
        for (const char* text : texts) {
            for (const int32_t width : {60, 120, 180, 333}) {
                editor.resize({width, 900});
                setLabelControlText(editor.control(), text);
                formatLabelControl(editor.control(), settings);
                const auto lines = static_cast<double>(editor.lineCount());
                const Size size = painter.measure(settings, text, width);
                EXPECT_NEAR(size.height, line * lines, lines) << text << ", " << width;
                EXPECT_LE(size.width, width);
                // A label as wide as was measured wraps as it did.
                EXPECT_EQ(painter.measure(settings, text, size.width).height, size.height) << text << ", " << width;
            }
            const Size natural = painter.measure(settings, text, 0);
            const auto hardLines = std::count(text, text + std::strlen(text), '\n') + 1;
            EXPECT_NEAR(natural.height, static_cast<double>(line * hardLines), static_cast<double>(hardLines)) << text;
        }
    }
}

// Very long words are broken by the painter: where the editor would, and without its time, which would be minutes.
TEST(RichTextPainter, BreaksLongWordsWhereTheEditorDoes) {
    RichTextPainter painter;
    const EditorWindow editor({180, 900});
    for (const std::string& text : {std::string(500, 'w'), "so it begins " + std::string(450, 'i') + " and ends\nso",
                                    std::string(401, 'x') + " " + std::string(401, 'y')}) {
        setLabelControlText(editor.control(), text);
        formatLabelControl(editor.control(), {});
        const int32_t line = painter.measure({}, "x", 0).height;
        const Size size = painter.measure({}, text, 180);
        EXPECT_NEAR(size.height, line * static_cast<double>(editor.lineCount()),
                    static_cast<double>(editor.lineCount()))
            << text;
        EXPECT_EQ(size.width, 180);
    }
    // One that has room on its line stays there.
    const std::string fits = "see " + std::string(450, 'i');
    const Size natural = painter.measure({}, fits, 0);
    EXPECT_EQ(natural.height, painter.measure({}, "x", 0).height);
    EXPECT_LT(natural.width, TextPainter::maxSide);
    EXPECT_EQ(painter.measure({}, fits, natural.width), natural);
}

TEST(RichTextPainter, TakesAnyText) {
    RichTextPainter painter;
    std::string pairs;
    while (pairs.size() < 4000) pairs += "\xF0\x9F\x98\x80";
    const std::string awkward[] = {"",       std::string("a\0b", 3), "\xED\xA0\x80",          "\xFF",
                                   "\r\n\r", std::string(600, 'w'),  std::string(60000, 'w'), pairs};
    for (const std::string& text : awkward) {
        const Size size = painter.measure({}, text, 100);
        EXPECT_GT(size.height, 0);
        EXPECT_LE(size.width, 100);
        painter.mask({}, text, {100, 30});
    }
}

class LabelColours : public testing::TestWithParam<Way> {};
INSTANTIATE_TEST_SUITE_P(EachWay, LabelColours, testing::Values(ByTextServices, ByFormatting, ByPrinting));

TEST_P(LabelColours, AreTheLabelsOwnOnAnyGround) {
    const OneWay one(GetParam());
    RichTextPainter& painter = *one.painter;
    TBBShape shape(*predefinedStyle("Default"), {10, 100, 200, 150});
    shape.text.settings.filled = false;
    shape.text.settings.textColour = rgb(0, 0, 255);
    shape.text.text = "Hamburg";
    shape.line.setVisible(false);
    fitLabel(shape, painter);
    for (const Colour ground : {rgb(255, 255, 255), rgb(0, 0, 0), rgb(255, 255, 0)}) {
        TBitmap bitmap = TBitmap::create(220, 160, PixelFormat::Bgra32).take();
        bitmap.fill(bitmap.bounds(), ground);
        paintAnnotation(bitmap, bitmap.bounds(), shape, painter);
        int inked = 0;
        const Rect label = shape.text.rectangle;
        for (int32_t y = label.top; y < label.bottom; ++y) {
            for (int32_t x = label.left; x < label.right; ++x) {
                const Colour seen = bitmap.pixel(x, y);
                if (seen == ground) continue;
                ++inked;
                // Somewhere between ground and text: no fringe of another colour.
                for (const auto part : {redOf, greenOf, blueOf}) {
                    const auto [low, high] = std::minmax({part(ground), part(shape.text.settings.textColour)});
                    EXPECT_TRUE(part(seen) >= low && part(seen) <= high) << x << ',' << y;
                }
            }
        }
        EXPECT_GT(inked, 60);
    }
}

}  // namespace
}  // namespace glimmer
