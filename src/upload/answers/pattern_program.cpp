#include "upload/answers/pattern_program.h"

#include <algorithm>
#include <map>
#include <utility>

namespace glimmer {

namespace {

using Op = DraftStep::Op;

/// Makes a program of a draft by giving each step a copy for every state of the turns around it, so that where a turn
/// ends is known beforehand.
///
/// Of d turns around a step those that have taken a byte are the outer ones, since what an inner turn takes its outer
/// ones take, too. So their state is one number, from 0 to d: how many of them, from the outermost, have taken one. A
/// step that takes a byte goes on with all of them.
class Unfolder {
public:
    explicit Unfolder(const PatternDraft& draft) : draft_(draft) {}

    Result<PatternProgram> unfold() {
        PatternProgram program;
        program.sets = draft_.sets;
        program.start = copyOf(draft_.start, 0);
        for (size_t i = 0; i < copies_.size(); ++i) {
            if (copies_.size() > PatternProgram::limit) return Failure{"pattern too large"};
            const auto [index, taken] = copies_[i];
            const DraftStep& step = draft_.steps[index];
            ProgramStep copy{step.op, 0, step.other};
            if (step.op != Op::Match) copy.next = copyOf(step.next, step.op == Op::Bytes ? step.depth : taken);
            if (step.op == Op::Split) copy.other = copyOf(step.other, taken);
            program.steps.push_back(copy);
        }
        return program;
    }

private:
    using Copy = std::pair<uint32_t, int>;  ///< a step of the draft, and how many turns have taken a byte

    uint32_t copyOf(uint32_t index, int taken) {
        const DraftStep* step = &draft_.steps[index];
        for (;; step = &draft_.steps[index]) {
            taken = std::min(taken, step->depth);
            if (step->op == Op::TurnBegin) {
                index = step->next;
            } else if (step->op == Op::TurnEnd) {
                index = taken == step->depth ? step->other : step->next;
            } else {
                break;
            }
        }
        const auto [place, fresh] = numbers_.try_emplace({index, taken}, static_cast<uint32_t>(copies_.size()));
        if (fresh) copies_.emplace_back(index, taken);
        return place->second;
    }

    const PatternDraft& draft_;
    std::vector<Copy> copies_;
    std::map<Copy, uint32_t> numbers_;
};

/// Splits the classes there are into bytes inside and outside of `set`.
void refineClasses(PatternProgram& program, const ByteSet& set) {
    std::map<std::pair<uint8_t, bool>, uint8_t> numbers;
    program.representatives.clear();
    for (unsigned byte = 0; byte < 256; ++byte) {
        uint8_t& number = program.classOf[byte];
        const auto next = static_cast<uint8_t>(numbers.size());
        const auto [place, fresh] = numbers.try_emplace({number, set[byte]}, next);
        if (fresh) program.representatives.push_back(static_cast<uint8_t>(byte));
        number = place->second;
    }
}

void findClasses(PatternProgram& program) {
    refineClasses(program, ByteSet());
    for (const ByteSet& set : program.sets) refineClasses(program, set);
    for (const ProgramStep& step : program.steps) {
        if (step.op == Op::WordEdge || step.op == Op::NoWordEdge) program.hasWordEdges = true;
    }
    if (program.hasWordEdges) refineClasses(program, *classNamed('w'));
}

std::string prefixOf(const PatternProgram& program) {
    std::string prefix;
    for (const ProgramStep* step = &program.steps[program.start];; step = &program.steps[step->next]) {
        if (step->op == Op::Save) continue;
        if (step->op != Op::Bytes || program.sets[step->other].count() != 1) return prefix;
        size_t byte = 0;
        while (!program.sets[step->other][byte]) ++byte;
        prefix.push_back(static_cast<char>(byte));
    }
}

}  // namespace

Result<PatternProgram> compileProgram(const PatternTree& tree, PatternDirection direction) {
    const Result<PatternDraft> draft = draftPattern(tree, direction);
    if (!draft) return draft.failure();
    Result<PatternProgram> program = Unfolder(*draft).unfold();
    if (!program) return program;
    program->direction = direction;
    program->slots = 2 * (static_cast<size_t>(tree.groups) + 1);
    findClasses(*program);
    program->prefix = prefixOf(*program);
    return program;
}

}  // namespace glimmer
