// The ways on which a picture comes into the library and goes back out: memory, a lent surface, JSON, base64.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <climits>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "support/not_copied.h"
#include "support/windows/base64.h"
#include "support/windows/host_fixture.h"

namespace glimmer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string captureOptions = "[\\Software\\Glimmerpad for Firefox\\IECaptureOptions]\n";

class Captures : public HostTest {
protected:
    [[nodiscard]] HDC lendSurface(intptr_t width, intptr_t height) const {
        HDC context = reinterpret_cast<HDC>(uintptr_t{1});
        const int32_t answer =
            host_.hostExecute(L"getBitmapDC", &context, static_cast<uintptr_t>(width), static_cast<uintptr_t>(height));
        EXPECT_EQ(answer, context != nullptr ? 1 : 0);
        return context;
    }
    void startController() const {
        uint8_t flag = 0;
        ASSERT_EQ(host_.execute(L"getCheckForIEUpdates", &flag), 1);
    }
    void setCaptureOptions(const std::string& lines) const {
        host_.writeSettings(captureOptions + lines);
        host_.hostShutdown();
    }
    [[nodiscard]] int32_t jsonZ(const wchar_t* function, const std::string& text) const {
        return packedPayload(function, deflated(Bytes(text.begin(), text.end())));
    }
    [[nodiscard]] int32_t packedPayload(const wchar_t* function, const Bytes& packed) const {
        const GlimmerpadPayload payload = {static_cast<uint32_t>(packed.size()), packed.data()};
        return host_.execute(L"JSONFunctionZ", nullptr, function, &payload);
    }
};

TEST_F(Captures, APngIsTakenAsItIsAndFittedWhenASizeIsGiven) {
    const RgbPicture picture = patternPicture(300, 200);
    const Bytes png = pngOf(picture);
    struct Case {
        int32_t width, height;
        uint32_t expectedWidth, expectedHeight;
    };
    for (const Case& c : {Case{0, 0, 300, 200}, Case{300, 200, 300, 200}, Case{-5, 100, 300, 200},
                          Case{150, 0, 300, 200}, Case{150, 400, 150, 400}, Case{1, 1, 1, 1}}) {
        host_.capture(png, GLIMMERPAD_ENCODE_IMAGE, c.width, c.height);
        const RgbPicture out = encodedPicture();
        EXPECT_EQ(out.width, c.expectedWidth);
        EXPECT_EQ(out.height, c.expectedHeight);
        if (c.expectedWidth == picture.width) {
            EXPECT_EQ(out, picture) << c.width << " x " << c.height;
        }
    }
    EXPECT_EQ(takeSounds(), 0) << "the host that brings a finished picture makes its own";
    EXPECT_THAT(takeDialogs(), IsEmpty());
}

TEST_F(Captures, TheEncodedPictureComesAsTextOrAsFile) {
    const RgbPicture picture = patternPicture(64, 48);
    host_.capture(pngOf(picture), GLIMMERPAD_ENCODE_TEXT);
    GlimmerpadContent content = {};
    ASSERT_EQ(host_.execute(L"getEncodedContent", &content), 1);
    ASSERT_NE(content.data, nullptr);
    const auto* text = static_cast<const char*>(content.data);
    EXPECT_EQ(text[content.length], '\0');
    const std::string base64(text, content.length);
    EXPECT_EQ(base64.find_first_of("\r\n "), std::string::npos);
    const std::vector<uint8_t> png = fromBase64(base64);
    EXPECT_EQ(pictureOf(png), picture);
    EXPECT_EQ(base64Of(png), base64);

    host_.capture(pngOf(picture), GLIMMERPAD_ENCODE_IMAGE);
    EXPECT_EQ(encodedPicture(), picture);
    // The next capture ends it, whatever it is.
    for (const int32_t action : {GLIMMERPAD_LOAD, 11, -1, INT_MAX}) {
        host_.capture(pngOf(picture), GLIMMERPAD_ENCODE_IMAGE);
        host_.capture(pngOf(picture), action);
        EXPECT_THAT(host_.encodedContent(), IsEmpty()) << action;
    }
    // No hundred counts here: 109 is no action at all.
    host_.capture(pngOf(picture), GLIMMERPAD_ENCODE_IMAGE + GLIMMERPAD_SILENT);
    EXPECT_THAT(host_.encodedContent(), IsEmpty());
}

TEST_F(Captures, Base64TextIsStoredAsACapture) {
    const Bytes png = pngOf(patternPicture(33, 22));
    const std::string text = base64Of(png);
    const std::wstring wide(text.begin(), text.end());
    const auto store = [this](const std::wstring& content) {
        return host_.execute(L"storeEncodedContent", nullptr, content.c_str());
    };
    EXPECT_EQ(store(wide), 0) << "before the first capture";
    startController();
    EXPECT_FALSE(host_.resumeAvailable());
    const std::wstring notPng = L"AQIDBA==";
    std::wstring damaged = wide;
    damaged[wide.size() / 2] = damaged[wide.size() / 2] == L'A' ? L'B' : L'A';
    for (const std::wstring& bad : {std::wstring(), notPng, damaged, wide.substr(0, wide.size() / 2), L"{" + wide,
                                    std::wstring(100000, L'A'), std::wstring(L"\x4F60")}) {
        EXPECT_EQ(store(bad), 0) << bad.size();
        EXPECT_FALSE(host_.resumeAvailable());
    }
    EXPECT_EQ(host_.execute(L"storeEncodedContent"), 0);
    EXPECT_EQ(store(wide), 1);
    EXPECT_TRUE(host_.resumeAvailable());
    EXPECT_THAT(takeDialogs(), IsEmpty());
}

TEST_F(Captures, ALentSurfaceIsPaintedAndDelivered) {
    startController();
    const HDC context = lendSurface(40, 30);
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(GetPixel(context, 39, 29), RGB(0, 0, 0));
    const RECT left = {0, 0, 20, 30};
    const HBRUSH brush = CreateSolidBrush(RGB(200, 100, 50));
    FillRect(context, &left, brush);
    DeleteObject(brush);
    SetPixel(context, 39, 0, RGB(1, 2, 3));
    host_.hostFinishCapture(L"http://a/", L"Painted", GLIMMERPAD_ENCODE_IMAGE);
    EXPECT_EQ(encodedPicture(), makePicture(40, 30, [](uint32_t x, uint32_t y) -> uint32_t {
                  return x == 39 && y == 0 ? 0x010203U : x < 20 ? 0xC86432U : 0U;
              }));
    EXPECT_EQ(GetObjectType(context), 0U) << "the surface is the library's and ends with its delivery";
    EXPECT_EQ(takeSounds(), 1);

    // Nothing is lent any more.
    host_.capture(pngOf(patternPicture(2, 2)), GLIMMERPAD_LOAD);
    host_.hostFinishCapture(L"http://a/", L"Again", GLIMMERPAD_ENCODE_IMAGE);
    EXPECT_THAT(host_.encodedContent(), IsEmpty());
    EXPECT_EQ(takeSounds(), 0);
}

TEST_F(Captures, ASecondSurfaceEndsTheFirst) {
    startController();
    const HDC first = lendSurface(10, 10);
    ASSERT_NE(first, nullptr);
    SetPixel(first, 0, 0, RGB(255, 0, 0));
    const HDC second = lendSurface(5, 4);
    ASSERT_NE(second, nullptr);
    SetPixel(second, 0, 0, RGB(0, 255, 0));
    host_.hostFinishCapture(nullptr, nullptr, GLIMMERPAD_ENCODE_IMAGE + GLIMMERPAD_SILENT);
    const RgbPicture delivered = encodedPicture();
    EXPECT_EQ(delivered.width, 5U);
    EXPECT_EQ(delivered.at(0, 0), 0x00FF00U);
    EXPECT_EQ(takeSounds(), 0) << "a hundred asks for silence";

    // A size that cannot be had ends it too.
    const HDC third = lendSurface(6, 6);
    ASSERT_NE(third, nullptr);
    for (const auto& [width, height] : {std::pair<intptr_t, intptr_t>{0, 5},
                                        {5, 0},
                                        {-1, 5},
                                        {200001, 1},
                                        {100000, 100000},
                                        {INT_MAX, INT_MAX},
                                        {INT_MIN, INT_MIN}})
        EXPECT_EQ(lendSurface(width, height), nullptr) << width << " x " << height;
    EXPECT_EQ(GetObjectType(third), 0U);

    const HDC fourth = lendSurface(6, 6);
    host_.hostShutdown();
    EXPECT_EQ(GetObjectType(fourth), 0U);
    host_.hostFinishCapture(L"", L"", GLIMMERPAD_EDIT);
    EXPECT_FALSE(host_.resumeAvailable());
}

TEST_F(Captures, ASurfaceWaitsUntilThereIsAController) {
    const HDC context = lendSurface(8, 8);
    ASSERT_NE(context, nullptr);
    host_.hostFinishCapture(L"", L"", GLIMMERPAD_LOAD);
    EXPECT_FALSE(host_.resumeAvailable());
    startController();
    host_.hostFinishCapture(L"", L"", GLIMMERPAD_LOAD);
    EXPECT_TRUE(host_.resumeAvailable());
}

TEST_F(Captures, CodesFromAHundredOnAreSilent) {
    struct Case {
        int32_t code;
        int sounds;
        bool encoded;
        std::vector<std::wstring> dialogs;
    };
    const std::wstring noUpload = L"Information: Uploading is not part of this version yet.";
    const std::wstring noPrint = L"Information: Printing is not part of this version yet.";
    const std::vector<Case> cases = {
        {99, 1, false, {}},
        {109, 0, true, {}},
        {111, 0, false, {}},
        {-9, 1, false, {}},
        {GLIMMERPAD_UPLOAD, 1, false, {noUpload}},
        {107, 0, false, {noPrint}},
    };
    for (const Case& c : cases) {
        startController();
        ASSERT_NE(lendSurface(4, 4), nullptr);
        host_.hostFinishCapture(L"http://a/", L"T", c.code);
        EXPECT_EQ(takeSounds(), c.sounds) << c.code;
        EXPECT_EQ(!host_.encodedContent().empty(), c.encoded) << c.code;
        EXPECT_EQ(takeDialogs(), c.dialogs) << c.code;
        EXPECT_TRUE(host_.resumeAvailable()) << c.code;
        host_.hostShutdown();
    }
    setCaptureOptions("chkPlaySound=0\n");
    startController();
    ASSERT_NE(lendSurface(4, 4), nullptr);
    host_.hostFinishCapture(L"http://a/", L"T", GLIMMERPAD_LOAD);
    EXPECT_EQ(takeSounds(), 0);
}

TEST_F(Captures, DeliveredPixelsGetTheSizeOfTheOptions) {
    setCaptureOptions("radFixedWidth=1\nspnFixedWidth=10\n");
    startController();
    ASSERT_NE(lendSurface(40, 20), nullptr);
    host_.hostFinishCapture(L"", L"", GLIMMERPAD_ENCODE_IMAGE);
    EXPECT_EQ(encodedPicture().width, 10U);
    EXPECT_EQ(encodedPicture().height, 5U);
}

TEST_F(Captures, JsonCarriesAPicture) {
    const RgbPicture picture = patternPicture(50, 30);
    const std::string image = base64Of(pngOf(picture));
    for (const wchar_t* function : {L"captureFX", L"openIECapture"}) {
        EXPECT_EQ(jsonZ(function, R"({"url":"http://a/","title":"\u20ac","action":9,"image":")" + image + "\"}"), 1);
        EXPECT_EQ(encodedPicture(), picture);
        EXPECT_EQ(takeSounds(), 1);
    }
    EXPECT_EQ(jsonZ(L"captureFX", R"({"action":109,"width":25,"height":15,"image":")" + image + "\"}"), 1);
    EXPECT_EQ(encodedPicture().width, 25U);
    EXPECT_EQ(takeSounds(), 0);
    // Types that are none: the defaults hold.
    EXPECT_EQ(jsonZ(L"captureFX", R"({"url":7,"title":{},"action":"9","width":[],"image":")" + image + "\"}"), 1);
    EXPECT_TRUE(host_.resumeAvailable());
    EXPECT_THAT(takeDialogs(), IsEmpty());
}

TEST_F(Captures, JsonThatIsNotOneAnswersNothing) {
    const std::string image = base64Of(pngOf(patternPicture(3, 3)));
    const std::string good = R"({"action":6,"image":")" + image + "\"}";
    const auto nested = [](size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
    for (const std::string& bad :
         {std::string(), std::string("{}"), good + "x", "{\"image\":\"" + image.substr(9) + "*\"}",
          "{\"a\":" + nested(500000) + "}", std::string("\0{}", 3)}) {
        EXPECT_EQ(jsonZ(L"captureFX", bad), 0) << bad.substr(0, 40);
        EXPECT_EQ(host_.json(L"captureDone", bad == "{}" ? std::string("{]") : bad), 0) << bad.substr(0, 40);
    }
    EXPECT_EQ(jsonZ(L"captureInit", good), 0) << "not a packed function";
    EXPECT_EQ(jsonZ(L"CaptureFX", good), 0);
    EXPECT_EQ(host_.json(L"captureFX", good), 0) << "only a packed function";
    EXPECT_EQ(host_.json(L"", "{}"), 0);
    EXPECT_EQ(packedPayload(L"captureFX", Bytes(good.begin(), good.end())), 0) << "not packed";
    Bytes cut = deflated(Bytes(good.begin(), good.end()));
    cut.pop_back();
    EXPECT_EQ(packedPayload(L"captureFX", cut), 0);
    EXPECT_FALSE(host_.resumeAvailable());
    EXPECT_THAT(takeDialogs(), IsEmpty());
    EXPECT_EQ(takeSounds(), 0);
    // What unpacks to more than is taken: a few kilobytes that become a hundred megabytes.
    EXPECT_EQ(packedPayload(L"captureFX", deflated(Bytes(100U << 20U, ' '))), 0);
}

TEST_F(Captures, PayloadsThatReachBeyondTheHostsMemoryAreRefused) {
    SYSTEM_INFO system{};
    GetSystemInfo(&system);
    auto* pages = static_cast<uint8_t*>(
        VirtualAlloc(nullptr, 2 * size_t{system.dwPageSize}, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    ASSERT_NE(pages, nullptr);
    uint8_t* const end = pages + system.dwPageSize;
    DWORD before = 0;
    VirtualProtect(end, system.dwPageSize, PAGE_NOACCESS, &before);
    std::memset(pages, ' ', system.dwPageSize);
    for (const wchar_t* command : {L"JSONFunction", L"JSONFunctionZ"}) {
        for (const GlimmerpadPayload& payload :
             {GlimmerpadPayload{10, nullptr}, GlimmerpadPayload{5, end - 4}, GlimmerpadPayload{0xFFFFFFFF, end - 4},
              GlimmerpadPayload{0x4000001, pages}, GlimmerpadPayload{4, reinterpret_cast<void*>(uintptr_t{16})}})
            EXPECT_EQ(host_.execute(command, nullptr, L"captureTab", &payload), 0) << payload.length;
        // The record itself is cut.
        EXPECT_EQ(host_.execute(command, nullptr, L"captureTab", end - 4), 0);
        EXPECT_EQ(host_.execute(command, nullptr, L"captureTab", reinterpret_cast<void*>(uintptr_t{4})), 0);
    }
    VirtualFree(pages, 0, MEM_RELEASE);
}

TEST_F(Captures, NullForEveryTextIsAnEmptyOne) {
    const Bytes png = pngOf(patternPicture(7, 5));
    host_.hostCapture(nullptr, nullptr, nullptr, png.data(), GLIMMERPAD_ENCODE_IMAGE, 0, 0);
    EXPECT_EQ(encodedPicture().width, 7U);
    // Without a picture the screen is taken.
    host_.hostCapture(nullptr, nullptr, nullptr, nullptr, GLIMMERPAD_ENCODE_IMAGE, 0, 0);
    EXPECT_EQ(encodedPicture().width, static_cast<uint32_t>(GetSystemMetrics(SM_CXSCREEN)));
    EXPECT_EQ(encodedPicture().height, static_cast<uint32_t>(GetSystemMetrics(SM_CYSCREEN)));
    EXPECT_THAT(takeDialogs(), IsEmpty());
}

TEST_F(Captures, TheWindowInFrontIsGrabbed) {
    const HWND window = CreateWindowExW(WS_EX_TOPMOST, L"Static", L"in front", WS_POPUP | WS_BORDER, 100, 100, 120, 80,
                                        nullptr, nullptr, nullptr, nullptr);
    ASSERT_TRUE(bringForward(window));
    const HDC context = GetDC(window);
    RECT area{};
    GetClientRect(window, &area);
    const HBRUSH brush = CreateSolidBrush(RGB(10, 200, 30));
    FillRect(context, &area, brush);
    DeleteObject(brush);
    ReleaseDC(window, context);
    GdiFlush();
    for (const wchar_t* command : {L"grabTB", L"captureBrowser"}) {
        ASSERT_TRUE(bringForward(window));
        EXPECT_EQ(host_.execute(command, nullptr, L"{\"url\":\"http://a/\",\"action\":9}"), 1);
        EXPECT_EQ(encodedPicture(), makePicture(static_cast<uint32_t>(area.right), static_cast<uint32_t>(area.bottom),
                                                [](uint32_t, uint32_t) { return 0x0AC81EU; }));
        EXPECT_EQ(takeSounds(), 1);
        host_.hostShutdown();
    }
    DestroyWindow(window);
}

/// A window of the host that fills the screen with one colour, painted when it is asked to.
class GreenScreen : NotCopied {
public:
    static constexpr uint32_t colour = 0x20B040;

    explicit GreenScreen(COLORREF shown = RGB(0x20, 0xB0, 0x40)) {
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = DefWindowProcW;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = L"GlimmerTestGreen";
        windowClass.hbrBackground = CreateSolidBrush(shown);
        RegisterClassW(&windowClass);
        window_ = CreateWindowExW(0, L"GlimmerTestGreen", L"host", WS_POPUP, 0, 0, GetSystemMetrics(SM_CXSCREEN),
                                  GetSystemMetrics(SM_CYSCREEN), nullptr, nullptr, nullptr, nullptr);
        bringForward(window_);
        pump();
    }
    ~GreenScreen() {
        DestroyWindow(window_);
        UnregisterClassW(L"GlimmerTestGreen", GetModuleHandleW(nullptr));
    }

private:
    HWND window_ = nullptr;
};

BOOL WINAPI printGreen(HWND window, HDC context, UINT how) {
    RECT area{};
    GetWindowRect(window, &area);
    OffsetRect(&area, -area.left, -area.top);
    SetDCBrushColor(context, RGB(0x20, 0xB0, 0x40));
    // As a window that the graphics card draws: only who asks for all of it gets it.
    if ((how & 2U) != 0) FillRect(context, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    return TRUE;
}
HDESK WINAPI refuseDesktop(DWORD, BOOL, ACCESS_MASK) {
    SetLastError(ERROR_ACCESS_DENIED);
    return nullptr;
}

TEST_F(Captures, ABlackScreenIsDrawnAnewOrExplained) {
    const GreenScreen black(0);
    const auto grab = [this] { return host_.execute(L"grabTB", nullptr, L"{\"action\":9}"); };
    {
        const ImportPatch print(host_.module, "user32.dll", "PrintWindow", &printGreen);
        EXPECT_EQ(grab(), 1);
        EXPECT_EQ(encodedPicture().at(10, 10), GreenScreen::colour);
    }
    host_.hostShutdown();
    const ImportPatch locked(host_.module, "user32.dll", "OpenInputDesktop", &refuseDesktop);
    const std::wstring why =
        L"Windows is locked or waits for a permission. Until then no picture of the screen can be taken.";
    EXPECT_EQ(grab(), 0);
    EXPECT_THAT(takeDialogs(), ElementsAre(L"Error: " + why));
    pump();
    host_.hostCapture(L"", L"", L"", nullptr, GLIMMERPAD_ENCODE_IMAGE, 0, 0);
    EXPECT_THAT(takeDialogs(), ElementsAre(L"Warning: " + why));
}

std::vector<std::string> order;  // of grabs and sounds

BOOL WINAPI noteGrab(HDC to, int x, int y, int width, int height, HDC from, int fromX, int fromY, DWORD how) {
    if ((how & CAPTUREBLT) != 0) order.emplace_back("grab");
    return BitBlt(to, x, y, width, height, from, fromX, fromY, how);
}
BOOL WINAPI noteSound(LPCWSTR, HMODULE, DWORD) {
    order.emplace_back("sound");
    return TRUE;
}

TEST_F(Captures, TheProgramsOwnWindowIsOnNoneOfItsPictures) {
    const ImportPatch grabs(host_.module, "gdi32.dll", "BitBlt", &noteGrab);
    const ImportPatch sounds(host_.module, "winmm.dll", "PlaySoundW", &noteSound);
    const GreenScreen screen;
    host_.capture(pngOf(patternPicture(300, 200)), GLIMMERPAD_EDIT);
    const HWND editor = mainWindow();
    ASSERT_TRUE(pumpUntil([editor] { return GetForegroundWindow() == editor; }, "the editor in front"));
    // Where the mouse is, its pointer may be: as an object of the capture, not of the screen.
    SetCursorPos(400, 300);
    constexpr uint32_t pointerReach = 64;
    struct Way {
        const char* what;
        std::function<void()> take;
        bool withPointer;
    };
    for (const Way& way :
         {Way{"no picture", [this] { host_.hostCapture(L"", L"", L"", nullptr, GLIMMERPAD_ENCODE_IMAGE, 0, 0); }, true},
          Way{"grabTB", [this] { EXPECT_EQ(host_.execute(L"grabTB", nullptr, L"{\"action\":9}"), 1); }, false}}) {
        order.clear();
        way.take();
        EXPECT_THAT(order, ElementsAre("grab", "sound")) << way.what;
        const RgbPicture picture = encodedPicture();
        ASSERT_FALSE(picture.pixels.empty()) << way.what;
        size_t others = 0;
        size_t ofPointer = 0;
        for (uint32_t y = 0; y < picture.height; ++y) {
            for (uint32_t x = 0; x < picture.width; ++x) {
                if (picture.at(x, y) == GreenScreen::colour) continue;
                const bool close = x > 400 - pointerReach && x < 400 + pointerReach && y > 300 - pointerReach &&
                                   y < 300 + pointerReach;
                ++(close ? ofPointer : others);
            }
        }
        EXPECT_EQ(ofPointer > 0, way.withPointer) << way.what << ": " << ofPointer;
        EXPECT_EQ(others, 0U) << way.what << ", in the middle " << std::hex
                              << picture.at(picture.width / 2, picture.height / 2);
        EXPECT_NE(IsWindowVisible(editor), FALSE) << way.what << ": it comes back";
    }
}

}  // namespace
}  // namespace glimmer::test
