// What a host hands over: a JSON object, plain or packed, with a picture in base64.

#include <string>

#include "common/text.h"
#include "fuzz/fuzz.h"
#include "host/commands/json_payload.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace glimmer;
    constexpr size_t unpackedLimit = size_t{1} << 20U;
    const std::string text(reinterpret_cast<const char*>(data), size);
    static_cast<void>(readCapturePayload(text));
    if (const std::optional<std::string> unpacked = unpackZlib({data, size}, unpackedLimit)) {
        FUZZ_CHECK(unpacked->size() <= unpackedLimit);
        static_cast<void>(readCapturePayload(*unpacked));
    }
    if (const std::optional<std::vector<uint8_t>> bytes = base64Decode(text))
        FUZZ_CHECK(base64Decode(base64Encode(*bytes)) == bytes);
    return 0;
}
