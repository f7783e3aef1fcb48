// No define of the toolkit is about: these headers need more of the system than others.
#include <d3d11.h>

#include "common/system_library.h"
#include "facts.h"

namespace glimmer::facts {

namespace {

constexpr RECT place = {100, 100, 420, 300};
constexpr COLORREF red = RGB(255, 0, 0);
constexpr int middle = 100;

/// The pixel in the middle of a window, by its own context, by that of the screen, and by having it printed.
void askPixel(Report& report, const std::string& key, HWND window) {
    Canvas canvas(2 * middle, 2 * middle);
    POINT corner = {};
    ClientToScreen(window, &corner);
    const auto copyFrom = [&canvas](HWND of, POINT from, DWORD way) {
        canvas.fill(0x00123456);
        const HDC source = GetDC(of);
        BitBlt(canvas.dc(), 0, 0, 2 * middle, 2 * middle, source, from.x, from.y, way);
        ReleaseDC(of, source);
        return colourText(canvas.pixel(middle, middle));
    };
    report.set(key + ".own-context", copyFrom(window, {0, 0}, SRCCOPY));
    report.set(key + ".screen", copyFrom(nullptr, corner, SRCCOPY | CAPTUREBLT));
    constexpr UINT clientOnly = 1;
    constexpr UINT fullContent = 2;
    canvas.fill(0x00123456);
    const BOOL printed = PrintWindow(window, canvas.dc(), clientOnly | fullContent);
    report.set(key + ".printed", printed != FALSE ? colourText(canvas.pixel(middle, middle)) : "refused");
}

/// Fills the window red through Direct3D, and keeps it so while the object lives.
class Direct3D {
public:
    explicit Direct3D(HWND window) {
        const auto create =
            systemFunction<PFN_D3D11_CREATE_DEVICE_AND_SWAP_CHAIN>(L"d3d11.dll", "D3D11CreateDeviceAndSwapChain");
        if (create == nullptr) return;
        DXGI_SWAP_CHAIN_DESC wanted = {};
        wanted.BufferCount = 2;
        wanted.BufferDesc.Format = DXGI_FORMAT_B8G8R8A8_UNORM;
        wanted.BufferUsage = DXGI_USAGE_RENDER_TARGET_OUTPUT;
        wanted.OutputWindow = window;
        wanted.SampleDesc.Count = 1;
        wanted.Windowed = TRUE;
        wanted.SwapEffect = static_cast<DXGI_SWAP_EFFECT>(3);  // flip, as browsers have it
        // By the graphics card, or where there is none, by the processor.
        for (const D3D_DRIVER_TYPE kind : {D3D_DRIVER_TYPE_HARDWARE, D3D_DRIVER_TYPE_WARP}) {
            result_ = create(nullptr, kind, nullptr, 0, nullptr, 0, D3D11_SDK_VERSION, &wanted, &chain_, &device_,
                             nullptr, &context_);
            if (SUCCEEDED(result_)) break;
        }
        ID3D11Texture2D* texture = nullptr;
        ID3D11RenderTargetView* view = nullptr;
        if (FAILED(result_) ||
            FAILED(chain_->GetBuffer(0, __uuidof(ID3D11Texture2D), reinterpret_cast<void**>(&texture))))
            return;
        if (SUCCEEDED(device_->CreateRenderTargetView(texture, nullptr, &view))) {
            const float colour[] = {1, 0, 0, 1};
            context_->ClearRenderTargetView(view, colour);
            chain_->Present(1, 0);
            view->Release();
        }
        texture->Release();
    }
    ~Direct3D() {
        if (context_ != nullptr) context_->Release();
        if (device_ != nullptr) device_->Release();
        if (chain_ != nullptr) chain_->Release();
    }
    Direct3D(const Direct3D&) = delete;
    Direct3D& operator=(const Direct3D&) = delete;
    Direct3D(Direct3D&&) = delete;
    Direct3D& operator=(Direct3D&&) = delete;

    [[nodiscard]] bool works() const { return SUCCEEDED(result_); }

private:
    HRESULT result_ = E_FAIL;
    IDXGISwapChain* chain_ = nullptr;
    ID3D11Device* device_ = nullptr;
    ID3D11DeviceContext* context_ = nullptr;
};

using GetAttribute = HRESULT(WINAPI*)(HWND, DWORD, void*, DWORD);
using SetAttribute = HRESULT(WINAPI*)(HWND, DWORD, const void*, DWORD);

std::string invisibleBorders(HWND window) {
    constexpr DWORD extendedFrameBounds = 9;
    RECT outer = {};
    RECT seen = {};
    GetWindowRect(window, &outer);
    const auto get = systemFunction<GetAttribute>(L"dwmapi.dll", "DwmGetWindowAttribute");
    if (get == nullptr || FAILED(get(window, extendedFrameBounds, &seen, sizeof seen))) return "not told";
    return std::to_string(seen.left - outer.left) + " left, " + std::to_string(seen.top - outer.top) + " above, " +
           std::to_string(outer.right - seen.right) + " right, " + std::to_string(outer.bottom - seen.bottom) +
           " below";
}

/// Hides a red window and looks when the screen has its last colour there.
std::string fading(bool withTransitions) {
    const Window window(L"Glimmerpad: this window fades", place, red);
    constexpr DWORD forceDisabled = 3;
    const auto set = systemFunction<SetAttribute>(L"dwmapi.dll", "DwmSetWindowAttribute");
    const BOOL off = TRUE;
    if (!withTransitions && (set == nullptr || FAILED(set(window.handle(), forceDisabled, &off, sizeof off))))
        return "refused";
    window.show();
    constexpr DWORD step = 50;
    constexpr DWORD last = 500;
    pumpFor(last);
    ShowWindow(window.handle(), SW_HIDE);
    std::vector<uint32_t> seen;
    for (DWORD at = 0; at <= last; at += step) {
        Canvas canvas(1, 1);
        const HDC screen = GetDC(nullptr);
        BitBlt(canvas.dc(), 0, 0, 1, 1, screen, place.left + 160, place.top + 100, SRCCOPY | CAPTUREBLT);
        ReleaseDC(nullptr, screen);
        seen.push_back(canvas.pixel(0, 0));
        pumpFor(step);
    }
    size_t gone = seen.size() - 1;
    while (gone > 0 && seen[gone - 1] == seen.back()) --gone;
    return "gone after " + std::to_string(gone * step) + " ms";
}

}  // namespace

void askScreenCopies(Report& report) {
    const Window plain(L"Glimmerpad: a plain window", place, red);
    plain.show();
    pumpFor(500);
    askPixel(report, "copy.plain", plain.handle());
    report.set("copy.invisible-borders", invisibleBorders(plain.handle()));
    const Window window(L"Glimmerpad: a window drawn by Direct3D", {450, 100, 770, 300}, RGB(0, 0, 255));
    window.show();
    const Direct3D drawn(window.handle());
    pumpFor(500);
    if (drawn.works())
        askPixel(report, "copy.direct3d", window.handle());
    else
        report.set("copy.direct3d", "none");
}

void askFading(Report& report) {
    report.set("fade.as-it-is", fading(true));
    report.set("fade.transitions-disabled", fading(false));
}

}  // namespace glimmer::facts
