// The record stream of one annotation.

#include <string_view>

#include "common/assertion.h"
#include "editor/annotations/annotation_record.h"
#include "fuzz/fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace glimmer;
    try {
        const std::optional<AnnotationRecord> record = decodeAnnotation({data, size});
        if (!record) return 0;
        // What was accepted is written in the newest version, and that reads as the same.
        const std::vector<uint8_t> written = encodeAnnotation(&record->descriptor);
        const std::optional<AnnotationRecord> again = decodeAnnotation(written);
        FUZZ_CHECK(again.has_value());
        FUZZ_CHECK(encodeAnnotation(&again->descriptor) == written);
    } catch (const AssertionFailure& failure) {
        FUZZ_CHECK(failure.condition == std::string_view("pSL->Count == 3"));  // the answer to other than three strings
    }
    return 0;
}
