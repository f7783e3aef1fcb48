#pragma once

#include <limits>
#include <optional>
#include <string_view>
#include <vector>

#include "upload/answers/pattern_program.h"

namespace glimmer {

/// Places of the text by slot: 2n is where group n begins, 2n + 1 where it ends.
using PatternSlots = std::vector<size_t>;
/// In the slots of a group that took no part in the match.
constexpr size_t noPlace = std::numeric_limits<size_t>::max();

/// Runs all ways through a program that was compiled forward side by side, each with its own slots, in a time that
/// grows with steps x bytes. The match begins first and is the preferred one of those that begin there.
std::optional<PatternSlots> findGroups(const PatternProgram& program, std::string_view text);

/// The same where it is known that the match is that from `begin` to `end`.
PatternSlots findGroupsWithin(const PatternProgram& program, std::string_view text, size_t begin, size_t end);

}  // namespace glimmer
