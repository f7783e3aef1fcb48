#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace glimmer {

/// A line for each entry, each after `before`; of many the first ten, and how many more there are: more would not fit
/// on a message box.
std::string linesOf(const std::vector<std::string>& entries, std::string_view before = "\n  \xE2\x80\xA2 ");

}  // namespace glimmer
