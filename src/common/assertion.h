#pragma once

#include <stdexcept>
#include <string>

namespace glimmer {

/// A programming error was found. The operation that throws it stops and leaves the state as it was.
class AssertionFailure : public std::logic_error {
public:
    AssertionFailure(const char* condition, const char* unit, int line)
        : std::logic_error(std::string("Assertion failed: ") + condition + ", unit " + unit + ", line " +
                           std::to_string(line)),
          condition(condition),
          unit(unit),
          line(line) {}

    const char* condition;  ///< text of the failed condition, e.g. "pSelection != NULL"
    const char* unit;       ///< unit that found it, e.g. "uEditor"
    int line;
};

}  // namespace glimmer

/// Throws AssertionFailure with the given condition text and unit name unless `truth` holds. The text is given
/// apart from the expression since it is part of what a user may see and report.
#define GLIMMER_ASSERT(truth, conditionText, unitName)                                      \
    do {                                                                                    \
        if (!(truth)) throw ::glimmer::AssertionFailure(conditionText, unitName, __LINE__); \
    } while (false)
