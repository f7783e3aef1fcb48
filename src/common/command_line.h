#pragma once

#include <string>
#include <string_view>

namespace glimmer {

/// One argument of a command line, in quotes, from which a program that takes its command line apart as
/// CommandLineToArgvW and the run-times of compilers do gets the text back as it is. UTF-8, without zero bytes.
std::string quotedArgument(std::string_view text);

}  // namespace glimmer
