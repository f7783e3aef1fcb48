#pragma once

#include <string_view>

#include "common/result.h"
#include "upload/answers/answer.h"

namespace glimmer {

/// Reads an XML text with the system's reader, up to the end of its outermost element. An element's name has its prefix
/// and is ASCII; its text is what stands directly in it, also in CDATA sections, without blanks at both ends. Nothing
/// but the five entities of XML and character references is resolved, and a text with a document type is refused, so it
/// can neither grow nor reach for anything. xml_text.h says which encodings are known. Fails with a sentence.
Result<Answer> readXmlAnswer(std::string_view bytes, const AnswerLimits& limits = {});

}  // namespace glimmer
