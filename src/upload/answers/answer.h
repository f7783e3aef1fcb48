#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace glimmer {

/// An element of a server's answer, in XML or in JSON.
struct AnswerElement {
    std::string name = {};
    /// JSON: how it is reached from the outermost value, as "data.link" or "files[0].url". XML: empty.
    std::string path = {};
    std::string text = {};
    std::vector<std::pair<std::string, std::string>> attributes = {};  ///< name and value, as they stood

    [[nodiscard]] std::optional<std::string> attribute(std::string_view wanted) const;
};

/// What a server answered, as a list of its elements in the order of the text. Text is UTF-8 when the answer was.
struct Answer {
    std::vector<AnswerElement> elements;

    /// The element at that path, or else the first one of that name; null when there is none. Case counts.
    [[nodiscard]] const AnswerElement* first(std::string_view nameOrPath) const;
    /// The first one of that name whose attribute has that value.
    [[nodiscard]] const AnswerElement* first(std::string_view name, std::string_view attribute,
                                             std::string_view value) const;

    /// The text of first(nameOrPath); nothing when there is none.
    [[nodiscard]] std::optional<std::string> text(std::string_view nameOrPath) const;
    /// That attribute of first(nameOrPath).
    [[nodiscard]] std::optional<std::string> attribute(std::string_view nameOrPath, std::string_view attribute) const;
};

/// What is read at most; beyond it an answer is refused. Nobody's answer about a picture comes near.
struct AnswerLimits {
    size_t bytes = size_t{8} * 1024 * 1024;
    int depth = 64;           ///< elements, or objects and arrays, inside one another
    size_t elements = 50000;  ///< and as many attributes; JSON: values
};

}  // namespace glimmer
