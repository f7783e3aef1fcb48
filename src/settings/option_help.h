#pragma once

#include <string_view>

namespace glimmer {

/// One or two sentences on an option for the options dialog; empty for one that is not shown there.
std::string_view optionHelp(std::string_view control);

}  // namespace glimmer
