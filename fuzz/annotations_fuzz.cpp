// Annotations that another process put on the clipboard or drags in, painted.

#include <string_view>

#include "common/assertion.h"
#include "editor/annotations/annotation_clipboard.h"
#include "fuzz/fuzz.h"
#include "fuzz/painted.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace glimmer;
    try {
        const std::vector<TBBShape> shapes = decodeAnnotations({data, size});
        FUZZ_CHECK(shapes.size() <= maxClipboardAnnotations);
        if (shapes.empty()) return 0;
        // What was accepted is written, and reads as the same.
        const std::vector<TBBShape> again = decodeAnnotations(encodeAnnotations(shapes));
        FUZZ_CHECK(again == shapes);
        TShapesList list;
        for (const TBBShape& shape : shapes) list.add(shape);
        paintForFuzzer(list);
    } catch (const AssertionFailure& failure) {
        FUZZ_CHECK(failure.condition == std::string_view("pSL->Count == 3"));  // the answer to other than three strings
    }
    return 0;
}
