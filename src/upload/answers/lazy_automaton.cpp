#include "upload/answers/lazy_automaton.h"

#include <algorithm>

#include "upload/answers/literal_scan.h"

namespace glimmer {

using Op = DraftStep::Op;

namespace {

constexpr size_t memoryLimit = size_t{4} * 1024 * 1024;
/// A state has to serve so many bytes, or else running all threads at once is the better way.
constexpr size_t bytesForState = 10;

}  // namespace

LazyAutomaton::LazyAutomaton(const PatternProgram& program)
    : program_(program),
      endColumn_(static_cast<uint32_t>(program.representatives.size())),
      width_(endColumn_ + 1),
      resolved_(program),
      next_(program) {}

LazyAutomaton::Answer LazyAutomaton::findEnd(std::string_view text) {
    Answer answer;
    size_t at = 0;
    const std::string& prefix = program_.prefix;
    if (!prefix.empty() && (at = findLiteral(text, prefix, 0)) == std::string_view::npos) return answer;
    // A state that waits for the prefix asks nothing of the bytes before it, so it is the same everywhere.
    uint32_t row = firstRow(true, {.atStart = true});
    for (;; ++at) {
        uint32_t entry = 0;
        for (const uint32_t* table = table_.data(); at < text.size(); ++at) {
            entry = table[row + column(text[at])];
            if (entry >= resting) break;
            row = entry;
        }
        const bool atEnd = at == text.size();
        if (atEnd) entry = table_[row + endColumn_];
        if (entry == unknown) entry = makeEntry(row, atEnd ? endColumn_ : column(text[at]), at);
        if (gaveUp_) return {.gaveUp = true};
        if ((entry & matched) != 0) answer.place = at;
        if ((entry & dead) != 0) return answer;
        row = entry & rowMask;
        if ((entry & resting) == 0) continue;
        at = findLiteral(text, prefix, at + 1);
        if (at == std::string_view::npos) return answer;
        --at;
    }
}

LazyAutomaton::Answer LazyAutomaton::findBeginning(std::string_view text, size_t end) {
    Answer answer;
    // Read backward, the text's end is its start.
    const bool atStart = end == text.size();
    uint32_t row =
        firstRow(false, {.atStart = atStart, .wordBefore = !atStart && isWordByte(static_cast<uint8_t>(text[end]))});
    for (size_t at = end;; --at) {
        const uint32_t wanted = at == 0 ? endColumn_ : column(text[at - 1]);
        uint32_t entry = table_[row + wanted];
        if (entry == unknown) entry = makeEntry(row, wanted, end - at);
        if (gaveUp_) return {.gaveUp = true};
        if ((entry & matched) != 0) answer.place = at;
        if ((entry & dead) != 0) return answer;
        row = entry & rowMask;
    }
}

uint32_t LazyAutomaton::firstRow(bool seeking, const PlaceLook& look) {
    next_.clear();
    next_.add(program_.start, look);
    return entryFor({next_.steps(), seeking, look}) & rowMask;
}

uint32_t LazyAutomaton::entryFor(State state) {
    const auto isAssertion = [this](uint32_t step) {
        const Op op = program_.steps[step].op;
        return op != Op::Bytes && op != Op::Match;
    };
    // What lies before the place matters to assertions only; states that differ in nothing else are one.
    if (std::none_of(state.steps.begin(), state.steps.end(), isAssertion)) state.look = {};
    std::u32string key(state.steps.begin(), state.steps.end());
    key.push_back((state.seeking ? 1U : 0U) | (state.look.atStart ? 2U : 0U) | (state.look.wordBefore ? 4U : 0U));
    const auto [place, fresh] = entries_.try_emplace(std::move(key), 0);
    if (fresh) {
        place->second = static_cast<uint32_t>(table_.size());
        const bool waitsForPrefix = state.steps.size() == 1 && !program_.prefix.empty();
        if (state.seeking && waitsForPrefix) place->second |= resting;
        memory_ += sizeof(State) + 100 + width_ * sizeof(uint32_t) + state.steps.size() * 2 * sizeof(uint32_t);
        table_.resize(table_.size() + width_, unknown);
        states_.push_back(std::move(state));
    }
    return place->second;
}

/// `row` may change: when there are too many states, all but its own are thrown away.
uint32_t LazyAutomaton::makeEntry(uint32_t& row, uint32_t column, size_t taken) {
    if (memory_ > memoryLimit) {
        gaveUp_ = taken - emptiedAt_ < states_.size() * bytesForState;
        if (gaveUp_) return dead;
        State kept = std::move(states_[row / width_]);
        states_.clear();
        table_.clear();
        entries_.clear();
        memory_ = 0;
        emptiedAt_ = taken;
        row = entryFor(std::move(kept)) & rowMask;
    }
    const uint32_t entry = follow(states_[row / width_], column);
    table_[row + column] = entry;
    return entry;
}

uint32_t LazyAutomaton::follow(const State& from, uint32_t column) {
    const bool atEnd = column == endColumn_;
    const uint8_t byte = atEnd ? uint8_t{0} : program_.representatives[column];
    PlaceLook look = from.look;
    look.ahead = true;
    look.atEnd = atEnd;
    look.wordBehind = !atEnd && isWordByte(byte);
    resolved_.clear();
    for (const uint32_t step : from.steps) resolved_.add(step, look);

    State to{.seeking = from.seeking, .look = {.wordBefore = look.wordBehind}};
    uint32_t flags = 0;
    next_.clear();
    for (const uint32_t index : resolved_.steps()) {
        const ProgramStep& step = program_.steps[index];
        if (step.op == Op::Match) {
            flags = matched;
            // Forward, what comes now is less preferred than this match; backward the longest is wanted.
            if (program_.direction == PatternDirection::Backward) continue;
            to.seeking = false;
            break;
        }
        if (!atEnd && program_.sets[step.other][byte]) next_.add(step.next, to.look);
    }
    if (to.seeking) next_.add(program_.start, to.look);
    to.steps = next_.steps();
    if (atEnd || to.steps.empty()) return flags | dead;
    if (program_.direction == PatternDirection::Backward) std::sort(to.steps.begin(), to.steps.end());
    return flags | entryFor(std::move(to));
}

}  // namespace glimmer
