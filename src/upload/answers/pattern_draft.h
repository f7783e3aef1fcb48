#pragma once

#include <cstdint>
#include <vector>

#include "common/result.h"
#include "upload/answers/pattern_syntax.h"

namespace glimmer {

/// A step of a draft. Every step but Match goes on to `next`.
struct DraftStep {
    enum class Op : uint8_t {
        Bytes,  ///< takes one byte of `sets[other]`
        Split,  ///< goes on to `next`, or, less preferred, to `other`
        Save,   ///< notes the place in slot `other`: 2n is where group n begins, 2n + 1 where it ends
        Start,
        End,
        WordEdge,
        NoWordEdge,
        Match,
        TurnBegin,  ///< one turn of a loop whose body can match without taking a byte
        TurnEnd,    ///< goes on to `other`, the loop's head, when the turn took a byte, else to `next`, out of the loop
    };
    Op op = Op::Match;
    int depth = 0;  ///< loops with TurnBegin and TurnEnd around this step; a TurnEnd lies inside its own
    uint32_t next = 0;
    uint32_t other = 0;
};

/// A pattern as a machine of steps, laid out from its tree one for one.
///
/// A loop whose body can match nothing has to end somewhere: a turn that took no byte is the last one, as in the
/// engines that try one way after the other. TurnBegin and TurnEnd mark such turns.
struct PatternDraft {
    static constexpr size_t limit = 2000;  ///< steps

    std::vector<DraftStep> steps;
    std::vector<ByteSet> sets;
    uint32_t start = 0;
};

enum class PatternDirection {
    Forward,
    Backward,  ///< for the text read from its end: no groups, and "^" and "$" change places
};

/// Fails with "pattern too large".
Result<PatternDraft> draftPattern(const PatternTree& tree, PatternDirection direction);

}  // namespace glimmer
