#include "common/command_line.h"

namespace glimmer {

// A backslash only means something else before a quote: there, and before the closing one, it is doubled.
std::string quotedArgument(std::string_view text) {
    std::string quoted = "\"";
    size_t backslashes = 0;
    for (const char c : text) {
        if (c == '"') quoted.append(backslashes + 1, '\\');
        backslashes = c == '\\' ? backslashes + 1 : 0;
        quoted += c;
    }
    return quoted.append(backslashes, '\\') + '"';
}

}  // namespace glimmer
