#include "upload/answers/pattern_draft.h"

#include <algorithm>

// Laid out from the end to the start, so that each step knows where it goes on. Only a loop's head is made before its
// body, which leads back to it.

namespace glimmer {

namespace {

using Kind = PatternNode::Kind;
using Op = DraftStep::Op;

class Drafter {
public:
    explicit Drafter(PatternDirection direction) : backward_(direction == PatternDirection::Backward) {}

    Result<PatternDraft> draft(const PatternTree& tree) {
        const uint32_t match = step({.op = Op::Match});
        const uint32_t end = save(1, match);
        draft_.start = save(0, layOut(tree.root, end));
        if (draft_.steps.size() > PatternDraft::limit) return Failure{"pattern too large"};
        return std::move(draft_);
    }

private:
    [[nodiscard]] bool full() const { return draft_.steps.size() > PatternDraft::limit; }

    uint32_t step(DraftStep step) {
        step.depth = depth_;
        draft_.steps.push_back(step);
        return static_cast<uint32_t>(draft_.steps.size() - 1);
    }
    uint32_t save(int slot, uint32_t next) {
        if (backward_) return next;
        return step({.op = Op::Save, .next = next, .other = static_cast<uint32_t>(slot)});
    }
    uint32_t split(uint32_t preferred, uint32_t other) {
        return step({.op = Op::Split, .next = preferred, .other = other});
    }

    uint32_t layOut(const PatternNode& node, uint32_t next);
    uint32_t bytes(const PatternNode& node, uint32_t next);
    uint32_t sequence(const PatternNode& node, uint32_t next);
    uint32_t choice(const PatternNode& node, uint32_t next);
    uint32_t repeat(const PatternNode& node, uint32_t next);
    uint32_t loop(const PatternNode& body, bool once, uint32_t next);

    PatternDraft draft_;
    const bool backward_;
    int depth_ = 0;
};

/// The step at which `node`, followed by `next`, begins.
uint32_t Drafter::layOut(const PatternNode& node, uint32_t next) {
    switch (node.kind) {
        case Kind::Bytes:
            return bytes(node, next);
        case Kind::Start:
            return step({.op = backward_ ? Op::End : Op::Start, .next = next});
        case Kind::End:
            return step({.op = backward_ ? Op::Start : Op::End, .next = next});
        case Kind::WordEdge:
            return step({.op = Op::WordEdge, .next = next});
        case Kind::NoWordEdge:
            return step({.op = Op::NoWordEdge, .next = next});
        case Kind::Sequence:
            return sequence(node, next);
        case Kind::Choice:
            return choice(node, next);
        case Kind::Repeat:
            return repeat(node, next);
        case Kind::Group:
            break;
    }
    const uint32_t body = layOut(node.parts[0], save(2 * node.group + 1, next));
    return save(2 * node.group, body);
}

uint32_t Drafter::bytes(const PatternNode& node, uint32_t next) {
    auto set = std::find(draft_.sets.begin(), draft_.sets.end(), node.bytes);
    if (set == draft_.sets.end()) set = draft_.sets.insert(set, node.bytes);
    return step({.op = Op::Bytes, .next = next, .other = static_cast<uint32_t>(set - draft_.sets.begin())});
}

uint32_t Drafter::sequence(const PatternNode& node, uint32_t next) {
    if (backward_) {
        for (const PatternNode& part : node.parts) next = layOut(part, next);
    } else {
        for (auto part = node.parts.rbegin(); part != node.parts.rend(); ++part) next = layOut(*part, next);
    }
    return next;
}

uint32_t Drafter::choice(const PatternNode& node, uint32_t next) {
    uint32_t entry = layOut(node.parts.back(), next);
    for (size_t i = node.parts.size() - 1; i-- > 0;) {
        const uint32_t preferred = layOut(node.parts[i], next);
        entry = split(preferred, entry);
    }
    return entry;
}

/// X{2,} is XX+, X{2,4} is XX(X(X)?)?.
uint32_t Drafter::repeat(const PatternNode& node, uint32_t next) {
    const PatternNode& body = node.parts[0];
    int copies = node.least;
    if (node.most == PatternNode::unlimited) {
        next = loop(body, node.least > 0, next);
        copies = std::max(0, node.least - 1);
    } else {
        const uint32_t out = next;
        for (int i = node.least; i < node.most && !full(); ++i) next = split(layOut(body, next), out);
    }
    for (int i = 0; i < copies && !full(); ++i) next = layOut(body, next);
    return next;
}

/// X*, or X+ with `once`.
uint32_t Drafter::loop(const PatternNode& body, bool once, uint32_t next) {
    const uint32_t head = split(0, next);
    uint32_t turn = head;
    // Backward only the length of a match counts, for which the order of the ways does not matter.
    if (matchesEmpty(body) && !backward_) {
        ++depth_;
        turn = step({.op = Op::TurnEnd, .next = next, .other = head});
        turn = layOut(body, turn);
        --depth_;
        turn = step({.op = Op::TurnBegin, .next = turn});
    } else {
        turn = layOut(body, turn);
    }
    draft_.steps[head].next = turn;
    return once ? turn : head;
}

}  // namespace

Result<PatternDraft> draftPattern(const PatternTree& tree, PatternDirection direction) {
    return Drafter(direction).draft(tree);
}

}  // namespace glimmer
