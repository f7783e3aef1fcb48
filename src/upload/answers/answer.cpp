#include "upload/answers/answer.h"

#include <algorithm>

namespace glimmer {

namespace {

template <class Condition>
const AnswerElement* firstWith(const std::vector<AnswerElement>& elements, Condition condition) {
    const auto found = std::find_if(elements.begin(), elements.end(), condition);
    return found != elements.end() ? &*found : nullptr;
}

}  // namespace

std::optional<std::string> AnswerElement::attribute(std::string_view wanted) const {
    for (const auto& [attributeName, value] : attributes) {
        if (attributeName == wanted) return value;
    }
    return std::nullopt;
}

const AnswerElement* Answer::first(std::string_view nameOrPath) const {
    if (nameOrPath.empty()) return nullptr;
    const AnswerElement* there = firstWith(elements, [&](const AnswerElement& e) { return e.path == nameOrPath; });
    if (there != nullptr) return there;
    return firstWith(elements, [&](const AnswerElement& e) { return e.name == nameOrPath; });
}

const AnswerElement* Answer::first(std::string_view name, std::string_view attribute, std::string_view value) const {
    return firstWith(elements,
                     [&](const AnswerElement& e) { return e.name == name && e.attribute(attribute) == value; });
}

std::optional<std::string> Answer::text(std::string_view nameOrPath) const {
    const AnswerElement* element = first(nameOrPath);
    return element != nullptr ? std::optional(element->text) : std::nullopt;
}

std::optional<std::string> Answer::attribute(std::string_view nameOrPath, std::string_view attribute) const {
    const AnswerElement* element = first(nameOrPath);
    return element != nullptr ? element->attribute(attribute) : std::nullopt;
}

}  // namespace glimmer
