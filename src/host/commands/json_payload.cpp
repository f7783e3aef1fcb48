#include "host/commands/json_payload.h"

#include <algorithm>
#include <limits>

#include "common/json.h"
#include "common/text.h"
#include "common/zlib_streams.h"

namespace glimmer {

std::optional<CapturePayload> readCapturePayload(std::string_view json) {
    const std::optional<JsonObject> object = JsonObject::parse(json);
    if (!object) return std::nullopt;
    CapturePayload payload;
    payload.url = object->text("url");
    payload.title = object->text("title");
    payload.action = object->integer("action");
    payload.width = object->integer("width");
    payload.height = object->integer("height");
    if (object->has("image")) {
        std::optional<std::vector<uint8_t>> image = base64Decode(object->textView("image"));
        if (!image || image->empty()) return std::nullopt;
        payload.image = std::move(*image);
    }
    return payload;
}

std::optional<std::string> unpackZlib(std::span<const uint8_t> packed, size_t limit) {
    constexpr size_t largestStep = size_t{1024} * 1024;
    if (packed.empty() || packed.size() > std::numeric_limits<uInt>::max()) return std::nullopt;
    InflateStream stream;
    if (!stream.ok()) return std::nullopt;
    stream.next_in = const_cast<Bytef*>(packed.data());  // zlib only reads there
    stream.avail_in = static_cast<uInt>(packed.size());
    std::string text;
    size_t step = 4096;
    int state = Z_OK;
    try {
        while (state == Z_OK && text.size() <= limit) {
            const size_t filled = text.size();
            text.resize(filled + step);
            stream.next_out = reinterpret_cast<Bytef*>(text.data() + filled);
            stream.avail_out = static_cast<uInt>(step);
            state = inflate(&stream, Z_NO_FLUSH);
            text.resize(text.size() - stream.avail_out);
            step = std::min(step * 2, largestStep);
        }
    } catch (const std::bad_alloc&) {
        state = Z_MEM_ERROR;
    }
    if (state != Z_STREAM_END || text.size() > limit) return std::nullopt;
    return text;
}

}  // namespace glimmer
