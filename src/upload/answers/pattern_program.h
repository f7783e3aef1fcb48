#pragma once

#include <array>
#include <string>
#include <vector>

#include "upload/answers/pattern_draft.h"

namespace glimmer {

/// A step of a program: those of a draft without TurnBegin and TurnEnd.
struct ProgramStep {
    DraftStep::Op op = DraftStep::Op::Match;
    uint32_t next = 0;
    uint32_t other = 0;
};

/// A pattern ready to be run. From no step do steps that take no byte lead back to it.
struct PatternProgram {
    static constexpr size_t limit = 4000;  ///< steps

    PatternDirection direction = PatternDirection::Forward;
    std::vector<ProgramStep> steps;
    std::vector<ByteSet> sets;
    uint32_t start = 0;
    size_t slots = 0;  ///< two for the whole match and for each group

    /// Bytes that no step tells apart have the same class, from 0 on.
    std::array<uint8_t, 256> classOf{};
    std::vector<uint8_t> representatives;  ///< one byte of each class
    bool hasWordEdges = false;

    /// Every match begins with these bytes; may be empty.
    std::string prefix;
};

/// Fails with "pattern too large".
Result<PatternProgram> compileProgram(const PatternTree& tree, PatternDirection direction);

}  // namespace glimmer
