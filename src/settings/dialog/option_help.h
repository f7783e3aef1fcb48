#pragma once

#include <string_view>

namespace glimmer {

/// One or two sentences on an option, or on a page of the options dialog by its title; empty for one that is not there.
std::string_view optionHelp(std::string_view control);

}  // namespace glimmer
