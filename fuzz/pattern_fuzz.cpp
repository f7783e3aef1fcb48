// A pattern, up to the first line end, and a text behind it: the quick way to a match finds what the plain one finds.

#include "fuzz/fuzz.h"
#include "upload/answers/pattern.h"
#include "upload/answers/pattern_threads.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace glimmer;
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string_view source = input.substr(0, input.find('\n'));
    const std::string_view text = source.size() < size ? input.substr(source.size() + 1) : std::string_view();
    const Result<Pattern> pattern = Pattern::compile(source);
    if (!pattern) {
        FUZZ_CHECK(!pattern.message().empty());
        return 0;
    }
    const Result<PatternProgram> program = compileProgram(*parsePattern(source), PatternDirection::Forward);
    const std::optional<PatternSlots> plain = findGroups(*program, text);
    const std::optional<PatternMatch> match = pattern->search(text);
    FUZZ_CHECK(plain.has_value() == match.has_value());
    if (!match) return 0;
    FUZZ_CHECK(match->groups.size() == plain->size() / 2 - 1);
    for (size_t group = 0; group < plain->size() / 2; ++group) {
        const std::optional<std::string_view> part = group == 0 ? match->whole : match->groups[group - 1];
        const size_t from = (*plain)[2 * group];
        const size_t to = (*plain)[2 * group + 1];
        FUZZ_CHECK(part.has_value() == (from != noPlace));
        if (!part) continue;
        FUZZ_CHECK(from <= to && to <= text.size());
        FUZZ_CHECK(part->data() == text.data() + from && part->size() == to - from);
    }
    return 0;
}
