#include "imaging/clipboard.h"

#include <windows.h>

#include <algorithm>
#include <vector>

#include "common/opened_clipboard.h"
#include "imaging/clipboard_formats.h"
#include "imaging/picture_file.h"
#include "imaging/png_codec.h"

namespace glimmer {

namespace {

UINT pngFormat() {
    static const UINT format = RegisterClipboardFormatW(L"PNG");
    return format;
}

bool put(UINT format, const Result<std::vector<uint8_t>>& data) {
    if (!data || format == 0) return false;
    HGLOBAL const memory = GlobalAlloc(GMEM_MOVEABLE, data->size());
    if (memory == nullptr) return false;
    void* const bytes = GlobalLock(memory);
    if (bytes != nullptr) {
        std::copy(data->begin(), data->end(), static_cast<uint8_t*>(bytes));
        GlobalUnlock(memory);
        if (SetClipboardData(format, memory) != nullptr) return true;  // the system's memory from here on
    }
    GlobalFree(memory);
    return false;
}

std::vector<uint8_t> get(UINT format) {
    HANDLE const memory = format != 0 ? GetClipboardData(format) : nullptr;
    if (memory == nullptr) return {};
    const SIZE_T size = GlobalSize(memory);
    const auto* bytes = static_cast<const uint8_t*>(GlobalLock(memory));
    if (bytes == nullptr) return {};
    std::vector<uint8_t> data(bytes, bytes + size);
    GlobalUnlock(memory);
    return data;
}

}  // namespace

Status copyPictureToClipboard(const TBitmap& picture, const Progress& progress) {
    // Encoded before the clipboard is opened: others wait for it.
    bool stopped = false;
    const Result<std::vector<uint8_t>> png = encodePng(picture, {}, [&](double done) {
        stopped = progress && !progress(done);
        return !stopped;
    });
    if (stopped) return png.failure();
    const OpenedClipboard clipboard;
    if (!clipboard || EmptyClipboard() == FALSE) return Failure{clipboardInUse};
    // The best form first, since programs look at them in this order. Memory is freed between the large ones.
    const bool asPng = put(pngFormat(), png);
    const bool asV5 = put(CF_DIBV5, clipboardDibV5(picture));
    const bool asDib = put(CF_DIB, clipboardDib(picture));
    if (asPng || asV5 || asDib) return {};
    return Failure{"There is not enough memory to copy the image."};
}

bool clipboardHasPicture() {
    for (const UINT format : {pngFormat(), static_cast<UINT>(CF_DIBV5), static_cast<UINT>(CF_DIB)})
        if (IsClipboardFormatAvailable(format) != FALSE) return true;
    return false;
}

Result<TBitmap> pictureFromClipboard() {
    Failure reason{"There is no image in the clipboard."};
    const OpenedClipboard clipboard;
    if (!clipboard) return Failure{clipboardInUse};
    static_assert(formatDib == CF_DIB && formatDibV5 == CF_DIBV5);
    std::vector<uint32_t> offered;
    for (UINT format = EnumClipboardFormats(0); format != 0; format = EnumClipboardFormats(format))
        offered.push_back(format);
    for (const UINT format : readingOrder(offered, pngFormat())) {
        const std::vector<uint8_t> data = get(format);
        if (data.empty()) continue;
        Result<TBitmap> picture = format == pngFormat() ? readPicture(data) : pictureFromDib(data);
        if (picture) return picture;
        reason = picture.failure();
    }
    return reason;
}

}  // namespace glimmer
