#pragma once

#include <cstddef>
#include <string_view>

namespace glimmer {

/// Where `literal`, which is not empty, next stands in `text` at `from` or behind it; npos when it does not. Sixteen
/// places at a time are compared with its first and its last byte.
size_t findLiteral(std::string_view text, std::string_view literal, size_t from);

}  // namespace glimmer
