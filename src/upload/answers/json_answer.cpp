#include "upload/answers/json_answer.h"

#include <cjson/cJSON.h>

#include <array>
#include <charconv>
#include <cmath>

#include "common/json.h"

namespace glimmer {

namespace {

std::string digits(double number) {
    constexpr double exact = 9007199254740992;  // 2^53
    std::array<char, 32> text{};
    const bool whole = std::abs(number) <= exact && std::trunc(number) == number;
    char* end = text.data() + text.size();
    end = (whole ? std::to_chars(text.data(), end, static_cast<int64_t>(number))
                 : std::to_chars(text.data(), end, number))
              .ptr;
    return {text.data(), end};
}

std::string textOf(const cJSON* value) {
    if (cJSON_IsString(value) != 0) return value->valuestring;
    if (cJSON_IsNumber(value) != 0) return digits(value->valuedouble);
    if (cJSON_IsBool(value) != 0) return cJSON_IsTrue(value) != 0 ? "true" : "false";
    return {};
}

bool holdsOthers(const cJSON* value) { return cJSON_IsObject(value) != 0 || cJSON_IsArray(value) != 0; }

/// Lists the values of a tree, by a call for each level; the depth is bounded before.
class Lister {
public:
    /// `room`: bytes of names and paths. A long name comes again with everything below it.
    explicit Lister(size_t room) : room_(room) {}

    void add(const cJSON* value, const std::string& name, const std::string& path);
    [[nodiscard]] bool full() const { return full_; }
    Answer take() { return std::move(answer_); }

private:
    Answer answer_;
    size_t room_;
    bool full_ = false;
};

void Lister::add(const cJSON* value, const std::string& name, const std::string& path) {
    full_ = full_ || name.size() + path.size() > room_;
    if (full_) return;
    room_ -= name.size() + path.size();
    AnswerElement element{.name = name, .path = path, .text = textOf(value)};
    const bool isObject = cJSON_IsObject(value) != 0;
    for (const cJSON* member = isObject ? value->child : nullptr; member != nullptr; member = member->next) {
        if (!holdsOthers(member)) element.attributes.emplace_back(member->string, textOf(member));
    }
    answer_.elements.push_back(std::move(element));
    if (!holdsOthers(value)) return;
    size_t index = 0;
    for (const cJSON* part = value->child; part != nullptr && !full_; part = part->next, ++index) {
        if (isObject) {
            add(part, part->string, path.empty() ? part->string : path + "." + part->string);
        } else {
            add(part, name, path + "[" + std::to_string(index) + "]");
        }
    }
}

}  // namespace

Result<Answer> readJsonAnswer(std::string_view text, const AnswerLimits& limits) {
    const Failure refused{"The server's answer is not JSON, or too much of it."};
    if (text.size() > limits.bytes) return Failure{"The server's answer is too long."};
    const JsonTree tree = parseJson(text, {limits.bytes, limits.depth, limits.elements});
    if (!tree) return refused;
    Lister lister(limits.bytes);
    lister.add(tree.get(), "", "");
    if (lister.full()) return refused;
    return lister.take();
}

}  // namespace glimmer
