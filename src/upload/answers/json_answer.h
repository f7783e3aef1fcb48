#pragma once

#include <string_view>

#include "common/result.h"
#include "upload/answers/answer.h"

namespace glimmer {

/// Reads a JSON text. Every member of an object is an element of its name, every value of an array one of the array's
/// name; what they hold follows them. The text of a string is the string, of a number its shortest digits (whole ones
/// up to 2^53 without an exponent), of true and false their words, of null, objects and arrays empty. The attributes of
/// an object are those of its members that are no objects or arrays. The outermost value is an element without a name.
/// Fails with a sentence.
Result<Answer> readJsonAnswer(std::string_view text, const AnswerLimits& limits = {});

}  // namespace glimmer
