#include "upload/answers/pattern.h"

#include "common/assertion.h"
#include "upload/answers/lazy_automaton.h"
#include "upload/answers/pattern_threads.h"

namespace glimmer {

namespace {

/// An automaton finds the end of the match, one that reads backward from there its beginning, and only what lies
/// between is looked at once more for the groups.
std::optional<PatternSlots> findMatch(const PatternProgram& forward, const PatternProgram& backward,
                                      std::string_view text) {
    // Backward the text's end is the start: a program that waits for nothing elsewhere matches there only.
    ProgramClosure elsewhere(backward);
    elsewhere.add(backward.start, {.atStart = false});
    const bool endsAtEnd = elsewhere.steps().empty();
    LazyAutomaton::Answer end{text.size()};
    if (!endsAtEnd) end = LazyAutomaton(forward).findEnd(text);
    if (end.gaveUp) return findGroups(forward, text);
    if (!end.place) return std::nullopt;
    const LazyAutomaton::Answer begin = LazyAutomaton(backward).findBeginning(text, *end.place);
    if (begin.gaveUp) return findGroups(forward, text);
    GLIMMER_ASSERT(begin.place || endsAtEnd, "begin.place", "pattern");
    if (!begin.place) return std::nullopt;
    if (forward.slots == 2) return PatternSlots{*begin.place, *end.place};
    return findGroupsWithin(forward, text, *begin.place, *end.place);
}

}  // namespace

Result<Pattern> Pattern::compile(std::string_view pattern) {
    const Result<PatternTree> tree = parsePattern(pattern);
    if (!tree) return tree.failure();
    Result<PatternProgram> forward = compileProgram(*tree, PatternDirection::Forward);
    if (!forward) return forward.failure();
    Result<PatternProgram> backward = compileProgram(*tree, PatternDirection::Backward);
    if (!backward) return backward.failure();
    return Pattern(std::make_shared<const PatternProgram>(forward.take()),
                   std::make_shared<const PatternProgram>(backward.take()));
}

std::optional<PatternMatch> Pattern::search(std::string_view text) const {
    const std::optional<PatternSlots> slots = findMatch(*forward_, *backward_, text);
    if (!slots) return std::nullopt;
    const auto part = [&](size_t slot) { return text.substr((*slots)[slot], (*slots)[slot + 1] - (*slots)[slot]); };
    PatternMatch match{.whole = part(0)};
    for (size_t slot = 2; slot < slots->size(); slot += 2) {
        const bool took = (*slots)[slot] != noPlace && (*slots)[slot + 1] != noPlace;
        match.groups.push_back(took ? std::optional(part(slot)) : std::nullopt);
    }
    return match;
}

}  // namespace glimmer
