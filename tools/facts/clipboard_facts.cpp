#include <algorithm>
#include <cstring>

#include "facts.h"
#include "support/windows/kept_clipboard.h"

namespace glimmer::facts {

namespace {

/// What the system makes of a bitmap for a reader who wants bits with transparency.
void describeMadeUp(Report& report, const std::vector<uint8_t>& data, uint32_t height) {
    BITMAPV5HEADER header = {};
    if (data.size() < sizeof header) {
        report.set("clipboard.made-up", data.empty() ? "none" : "too short");
        return;
    }
    std::memcpy(&header, data.data(), sizeof header);
    report.set("clipboard.made-up", std::to_string(header.bV5Size) + " bytes of header, " +
                                        std::to_string(header.bV5BitCount) + " bits, compression " +
                                        std::to_string(header.bV5Compression));
    const size_t row = static_cast<size_t>(header.bV5Width) * header.bV5BitCount / 8;
    const size_t pixels = row * height;
    report.set("clipboard.made-up-bytes-between", std::to_string(data.size() - header.bV5Size - pixels));
    if (header.bV5BitCount != 32) return;
    unsigned least = 255;
    unsigned most = 0;
    for (size_t at = data.size() - pixels + 3; at < data.size(); at += 4) {
        least = std::min<unsigned>(least, data[at]);
        most = std::max<unsigned>(most, data[at]);
    }
    report.set("clipboard.made-up-alpha", std::to_string(least) + " to " + std::to_string(most));
}

}  // namespace

void askClipboard(Report& report) {
    const test::KeptClipboard kept;
    constexpr int side = 8;
    const Window owner(L"", {0, 0, 10, 10}, 0);
    const HDC screen = GetDC(nullptr);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, side, side);
    ReleaseDC(nullptr, screen);
    if (OpenClipboard(owner.handle()) == FALSE) {
        DeleteObject(bitmap);
        report.set("clipboard.made-up", "the clipboard is in use");
        return;
    }
    EmptyClipboard();
    SetClipboardData(CF_BITMAP, bitmap);  // the clipboard's from here on
    CloseClipboard();
    pumpFor(100);
    std::string formats;
    std::vector<uint8_t> data;
    if (OpenClipboard(owner.handle()) != FALSE) {
        for (UINT format = EnumClipboardFormats(0); format != 0; format = EnumClipboardFormats(format))
            formats += (formats.empty() ? "" : ", ") + std::to_string(format);
        data = test::bytesOfClipboard(CF_DIBV5);
        EmptyClipboard();
        CloseClipboard();
    }
    report.set("clipboard.formats-of-a-bitmap", formats);
    describeMadeUp(report, data, side);
}

}  // namespace glimmer::facts
