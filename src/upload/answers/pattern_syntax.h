#pragma once

#include <string_view>
#include <vector>

#include "common/result.h"
#include "upload/answers/byte_set.h"

// The pattern language as a tree. docs/upload.md has its grammar.

namespace glimmer {

struct PatternNode {
    enum class Kind {
        Bytes,       ///< one byte of `bytes`
        Start,       ///< "^", the start of the text
        End,         ///< "$", its end
        WordEdge,    ///< "\b"
        NoWordEdge,  ///< "\B"
        Sequence,    ///< `parts` one behind the other; may have none
        Choice,      ///< one of `parts`, the earlier one preferred
        Group,       ///< `parts[0]`, captured as number `group`
        Repeat,      ///< `parts[0]` from `least` to `most` times, as often as it can be
    };
    static constexpr int unlimited = -1;

    Kind kind = Kind::Sequence;
    ByteSet bytes = {};
    int group = 0;  ///< from 1 on, by the place of the opening bracket
    int least = 0;
    int most = 0;  ///< or `unlimited`
    std::vector<PatternNode> parts = {};
};

struct PatternTree {
    PatternNode root;
    int groups = 0;
};

/// What a pattern may ask for. A tree is walked one call a level, so its depth has a bound, too.
struct PatternLimits {
    static constexpr size_t length = 10000;  ///< bytes of the pattern
    static constexpr int groups = 99;
    static constexpr int depth = 100;   ///< groups inside one another
    static constexpr int count = 1000;  ///< the numbers in "{n,m}"
};

/// Fails with a short text that says what is wrong, such as "letter expected"; those that exist are in docs/upload.md.
Result<PatternTree> parsePattern(std::string_view pattern);

/// Whether the node can match without taking a byte. An assertion can.
bool matchesEmpty(const PatternNode& node);

}  // namespace glimmer
