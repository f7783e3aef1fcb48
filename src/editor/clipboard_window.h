#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "common/bitmap.h"
#include "common/result.h"

namespace glimmer {

/// Replaces the clipboard's content by a block in a registered format. False when another program holds it.
bool setClipboardBlock(const char* format, std::span<const uint8_t> data);
/// The block in that format; nothing when there is none or it is longer than `limit`. May be some bytes longer than
/// what was put there.
std::optional<std::vector<uint8_t>> clipboardBlock(const char* format, size_t limit);
bool clipboardHasBlock(const char* format);

/// Pictures on the clipboard, which the output knows how to write and read; the main window sets them.
struct PictureClipboard {
    std::function<Status(const TBitmap&)> copy;
    std::function<Result<TBitmap>()> paste;
    std::function<bool()> available;
};
PictureClipboard& pictureClipboard();

}  // namespace glimmer
