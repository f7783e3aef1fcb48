#pragma once

#include <cstdint>
#include <vector>

#include "upload/answers/pattern_program.h"

namespace glimmer {

/// What lies around a place of the text, as far as a program asks for it.
struct PlaceLook {
    bool atStart = false;     ///< nothing before it
    bool wordBefore = false;  ///< the byte before it is one of a word
    /// The rest says something only when `ahead` is set; else the byte behind the place is not known yet.
    bool ahead = false;
    bool atEnd = false;
    bool wordBehind = false;
};

/// The steps that can be reached without taking a byte, each once, those of higher preference first. Only steps at
/// which a program waits are listed: Bytes, Match and, where what is behind the place is not known yet, assertions.
class ProgramClosure {
public:
    explicit ProgramClosure(const PatternProgram& program) : program_(program), seen_(program.steps.size()) {}

    void clear() {
        ++reached_;
        steps_.clear();
    }
    /// Adds what `step` reaches, less preferred than all that is there.
    void add(uint32_t step, const PlaceLook& look);
    [[nodiscard]] const std::vector<uint32_t>& steps() const { return steps_; }

private:
    const PatternProgram& program_;
    std::vector<uint64_t> seen_;  ///< `reached_` where the step has been reached since clear()
    uint64_t reached_ = 1;
    std::vector<uint32_t> steps_;
    std::vector<uint32_t> waiting_;
};

/// Whether a program goes on at an assertion.
enum class Holds { Yes, No, NotKnownYet };
Holds holds(DraftStep::Op assertion, const PlaceLook& look);

}  // namespace glimmer
