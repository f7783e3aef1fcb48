// Styles and options in a settings file.

#include "editor/annotations/new_annotation_options.h"
#include "editor/annotations/style_store.h"
#include "fuzz/fuzz.h"
#include "fuzz/painted.h"
#include "settings/options.h"
#include "settings/settings.h"

namespace {

using namespace glimmer;

/// What is kept is read as it was.
void checkStyle(const TShapeStyle& style) {
    TShapeStyle clamped = style;
    clampSettings(clamped);
    FUZZ_CHECK(clamped == style);
    TCachedMemIniFile kept({});
    writeStyle(kept, "one", style);
    TShapeStyle again = readStyle(kept, "one", *predefinedStyle("Default"));
    again.name = style.name;
    FUZZ_CHECK(again == style);
}

void paint(const TShapeStyle& style) {
    TBBShape shape(style, {10, 12, 40, 30});
    shape.text.text = style.text.fontName;
    TShapesList list;
    list.add(shape);
    paintForFuzzer(list);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const TCachedMemIniFile store = TCachedMemIniFile::parse({data, size});
    Options options;
    options.load(store);
    TCachedMemIniFile kept({});
    options.store(kept);
    Options again;
    again.load(kept);
    FUZZ_CHECK(again == options);
    size_t styles = 0;
    for (const std::string& name : styleNames(store)) {
        if (++styles > 4) break;
        TShapeStyle style = readStyle(store, name, *predefinedStyle("Default"));
        checkStyle(style);
        paint(style);
        followChange(style, newAnnotationOptions(Options()), newAnnotationOptions(options));
        showParts(style, newAnnotationOptions(options));
        clampSettings(style);
        paint(style);
    }
    return 0;
}
