#include "upload/answers/pattern_threads.h"

#include <algorithm>

#include "common/assertion.h"
#include "upload/answers/program_closure.h"

namespace glimmer {

namespace {

using Op = DraftStep::Op;

/// The threads at one place, the preferred first, at most one for each step.
class Threads {
public:
    explicit Threads(const PatternProgram& program)
        : program_(&program), seen_(program.steps.size()), slots_(program.steps.size() * program.slots) {}

    void clear() {
        steps_.clear();
        ++reached_;
    }
    [[nodiscard]] const std::vector<uint32_t>& steps() const { return steps_; }
    [[nodiscard]] const size_t* slotsOf(uint32_t step) const { return &slots_[step * program_->slots]; }

    /// Starts a thread, which has `slots`, at each step where the program waits that `step` reaches at `place`. Less
    /// preferred than those that are there. `slots` come back as they were.
    void add(uint32_t step, PatternSlots& slots, size_t place, const PlaceLook& look);

private:
    /// A step to go on with or, where `slot` says so, a slot that gets its old place back.
    struct Waiting {
        static constexpr uint32_t none = std::numeric_limits<uint32_t>::max();
        uint32_t step = 0;
        uint32_t slot = none;
        size_t place = 0;
    };

    const PatternProgram* program_;  ///< a pointer, so that two can be exchanged
    std::vector<uint64_t> seen_;     ///< `reached_` where the step has been reached since clear()
    uint64_t reached_ = 1;
    std::vector<uint32_t> steps_;
    std::vector<size_t> slots_;
    std::vector<Waiting> waiting_;
};

void Threads::add(uint32_t step, PatternSlots& slots, size_t place, const PlaceLook& look) {
    waiting_.push_back({.step = step});
    while (!waiting_.empty()) {
        const Waiting now = waiting_.back();
        waiting_.pop_back();
        if (now.slot != Waiting::none) {
            slots[now.slot] = now.place;
            continue;
        }
        if (seen_[now.step] == reached_) continue;
        seen_[now.step] = reached_;
        const ProgramStep& at = program_->steps[now.step];
        switch (at.op) {
            case Op::Bytes:
            case Op::Match:
                steps_.push_back(now.step);
                std::copy(slots.begin(), slots.end(),
                          slots_.begin() + static_cast<std::ptrdiff_t>(now.step * slots.size()));
                break;
            case Op::Split:
                waiting_.push_back({.step = at.other});
                waiting_.push_back({.step = at.next});
                break;
            case Op::Save:
                waiting_.push_back({.slot = at.other, .place = slots[at.other]});
                slots[at.other] = place;
                waiting_.push_back({.step = at.next});
                break;
            default:
                if (holds(at.op, look) == Holds::Yes) waiting_.push_back({.step = at.next});
        }
    }
}

/// One search.
class Run {
public:
    Run(const PatternProgram& program, std::string_view text)
        : program_(program), text_(text), here_(program), there_(program), slots_(program.slots, noPlace) {}

    std::optional<PatternSlots> seek() {
        std::optional<PatternSlots> found;
        here_.clear();
        for (size_t place = 0;; ++place) {
            if (!found) begin(place);
            // What comes behind a match in the list is less preferred.
            if (const std::optional<uint32_t> match = step(place)) found = slotsOf(*match);
            std::swap(here_, there_);
            if (place == text_.size() || (found && here_.steps().empty())) return found;
        }
    }

    PatternSlots within(size_t first, size_t end) {
        here_.clear();
        begin(first);
        for (size_t place = first; place < end; ++place) {
            step(place);
            std::swap(here_, there_);
        }
        const std::optional<uint32_t> match = step(end);
        GLIMMER_ASSERT(match, "match", "pattern_threads");
        return slotsOf(*match);
    }

private:
    [[nodiscard]] bool wordAt(size_t place) const {
        return place < text_.size() && isWordByte(static_cast<uint8_t>(text_[place]));
    }
    [[nodiscard]] PlaceLook look(size_t place) const {
        return {place == 0, place > 0 && wordAt(place - 1), true, place == text_.size(), wordAt(place)};
    }
    void begin(size_t place) {
        std::fill(slots_.begin(), slots_.end(), noPlace);
        here_.add(program_.start, slots_, place, look(place));
    }
    [[nodiscard]] PatternSlots slotsOf(uint32_t step) const {
        return {here_.slotsOf(step), here_.slotsOf(step) + program_.slots};
    }
    std::optional<uint32_t> step(size_t place);

    const PatternProgram& program_;
    std::string_view text_;
    Threads here_;
    Threads there_;
    PatternSlots slots_;
};

/// Takes the byte at `place` with each thread before the first that matches there, which is answered.
std::optional<uint32_t> Run::step(size_t place) {
    there_.clear();
    const PlaceLook next = look(place + 1);
    for (const uint32_t index : here_.steps()) {
        const ProgramStep& step = program_.steps[index];
        if (step.op == Op::Match) return index;
        if (place == text_.size() || !program_.sets[step.other][static_cast<uint8_t>(text_[place])]) continue;
        std::copy_n(here_.slotsOf(index), program_.slots, slots_.begin());
        there_.add(step.next, slots_, place + 1, next);
    }
    return std::nullopt;
}

}  // namespace

std::optional<PatternSlots> findGroups(const PatternProgram& program, std::string_view text) {
    return Run(program, text).seek();
}

PatternSlots findGroupsWithin(const PatternProgram& program, std::string_view text, size_t begin, size_t end) {
    return Run(program, text).within(begin, end);
}

}  // namespace glimmer
