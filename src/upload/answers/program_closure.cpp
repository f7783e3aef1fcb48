#include "upload/answers/program_closure.h"

namespace glimmer {

using Op = DraftStep::Op;

Holds holds(Op assertion, const PlaceLook& look) {
    if (assertion == Op::Start) return look.atStart ? Holds::Yes : Holds::No;
    if (!look.ahead) return Holds::NotKnownYet;
    bool yes = look.atEnd;
    if (assertion == Op::WordEdge) yes = look.wordBefore != look.wordBehind;
    if (assertion == Op::NoWordEdge) yes = look.wordBefore == look.wordBehind;
    return yes ? Holds::Yes : Holds::No;
}

void ProgramClosure::add(uint32_t step, const PlaceLook& look) {
    waiting_.push_back(step);
    while (!waiting_.empty()) {
        const uint32_t index = waiting_.back();
        waiting_.pop_back();
        if (seen_[index] == reached_) continue;
        seen_[index] = reached_;
        const ProgramStep& at = program_.steps[index];
        switch (at.op) {
            case Op::Bytes:
            case Op::Match:
                steps_.push_back(index);
                break;
            case Op::Split:
                waiting_.push_back(at.other);
                waiting_.push_back(at.next);
                break;
            case Op::Save:
                waiting_.push_back(at.next);
                break;
            default:
                if (const Holds answer = holds(at.op, look); answer == Holds::Yes) {
                    waiting_.push_back(at.next);
                } else if (answer == Holds::NotKnownYet) {
                    steps_.push_back(index);
                }
        }
    }
}

}  // namespace glimmer
