// A server's answer: as JSON, and as XML on its way to the system's reader and back.

#include "common/text.h"
#include "fuzz/fuzz.h"
#include "upload/answers/json_answer.h"
#include "upload/answers/xml_text.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace glimmer;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const AnswerLimits limits{size_t{1} << 16U, 16, 1000};
    if (const Result<Answer> answer = readJsonAnswer(text, limits)) {
        FUZZ_CHECK(!answer->elements.empty() && answer->elements.size() <= limits.elements);
        for (const AnswerElement& element : answer->elements) {
            // Equal members lie one behind the other; the first one is found.
            const AnswerElement* found = answer->first(element.path);
            FUZZ_CHECK(element.path.empty() ? found == nullptr : found != nullptr && found->path == element.path);
            for (const auto& attribute : element.attributes) FUZZ_CHECK(element.attribute(attribute.first).has_value());
        }
    }
    if (const std::optional<std::string> ascii = asciiXml(text)) {
        for (const char c : *ascii) FUZZ_CHECK(static_cast<uint8_t>(c) < 0x80);
        const std::optional<std::string> back = fromAsciiXml(*ascii);
        FUZZ_CHECK(!back || isUtf8(*back));
    }
    static_cast<void>(fromAsciiXml(text));
    return 0;
}
