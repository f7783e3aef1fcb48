#include "main_window/lines_of_names.h"

#include <algorithm>

namespace glimmer {

std::string linesOf(const std::vector<std::string>& entries, std::string_view before) {
    constexpr size_t most = 10;
    std::string text;
    for (size_t i = 0; i < std::min(entries.size(), most); ++i) text.append(before).append(entries[i]);
    if (entries.size() > most)
        text.append(before).append("and ").append(std::to_string(entries.size() - most)).append(" more");
    return text;
}

}  // namespace glimmer
