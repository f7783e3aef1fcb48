#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "common/result.h"

namespace glimmer {

struct PatternProgram;

/// A match, with views into the text that was searched.
struct PatternMatch {
    std::string_view whole;
    /// The groups in the order of their opening brackets, the first at 0: what each took last. Nothing for a group that
    /// took no part, as the second in "(a)|(b)" on "a".
    std::vector<std::optional<std::string_view>> groups = {};
};

/// A regular expression over bytes, in the small language of docs/upload.md. Searching takes a time that grows with the
/// length of the text, whatever the pattern, and at most a few megabytes. Never changes; several threads may search.
class Pattern {
public:
    /// Fails with a short text, such as "letter expected".
    static Result<Pattern> compile(std::string_view pattern);

    /// The match that begins first; of those that begin there the one that is found first by trying the left side of
    /// each "|" before the right one and each repetition as often as it can be.
    [[nodiscard]] std::optional<PatternMatch> search(std::string_view text) const;

private:
    Pattern(std::shared_ptr<const PatternProgram> forward, std::shared_ptr<const PatternProgram> backward)
        : forward_(std::move(forward)), backward_(std::move(backward)) {}

    std::shared_ptr<const PatternProgram> forward_;
    std::shared_ptr<const PatternProgram> backward_;
};

}  // namespace glimmer
