// How a browser's add-on scrolled over a page, and the pictures of its steps. The input: a JSON object, a zero byte,
// the scroll bar's thickness, then width and height of each tile.

#include "capture/tile_join.h"
#include "common/json.h"
#include "fuzz/fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace glimmer;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const size_t end = text.find('\0');
    const std::optional<JsonObject> parameters = JsonObject::parse(text.substr(0, end));
    if (!parameters || end == std::string_view::npos || size - end < 2) return 0;
    const PageTiles page = PageTiles::read(*parameters);
    std::vector<TBitmap> tiles;
    for (size_t at = end + 2; at + 1 < size && tiles.size() < 12; at += 2) {
        TBitmap tile = TBitmap::create(1 + data[at] % 64, 1 + data[at + 1] % 64, PixelFormat::Bgra32).take();
        tile.fill(tile.bounds(), rgb(static_cast<uint32_t>(tiles.size()), 2, 3));
        tiles.push_back(std::move(tile));
    }
    const bool possible = page.joinable() && !tiles.empty();
    const Result<TBitmap> joined = joinTiles(page, std::move(tiles), data[end + 1]);
    FUZZ_CHECK(joined.ok() ? possible && !joined->empty() : !joined.message().empty());
    return 0;
}
