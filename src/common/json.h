#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct cJSON;

namespace glimmer {

struct JsonLimits {
    size_t bytes = size_t{64} * 1024 * 1024;
    int depth = 32;                    ///< arrays and objects inside one another, the outermost counts as 1
    size_t values = size_t{1} << 20U;  ///< of all kinds; each takes some hundred bytes of memory
};

struct JsonDeleter {
    void operator()(cJSON* tree) const;
};
using JsonTree = std::unique_ptr<cJSON, JsonDeleter>;

/// Any JSON value as the parser's tree. Null when the text is malformed, goes beyond a limit or has something behind
/// the value. A zero byte ends the text.
JsonTree parseJson(std::string_view text, const JsonLimits& limits);

/// A JSON text that holds one object, read with bounds. A member that is missing or of another type than asked for
/// reads as the default.
class JsonObject {
public:
    /// Nothing where parseJson() has nothing, or when the text holds no object.
    static std::optional<JsonObject> parse(std::string_view text, const JsonLimits& limits = {});

    [[nodiscard]] bool has(const char* name) const;
    /// UTF-8; bytes of the text that are not UTF-8 are handed on as they are.
    [[nodiscard]] std::string text(const char* name) const;
    /// The same without a copy; valid as long as this object.
    [[nodiscard]] std::string_view textView(const char* name) const;
    /// A number, its fraction cut off, moved into 32 bits; true is 1.
    [[nodiscard]] int32_t integer(const char* name, int32_t fallback = 0) const;
    /// Whether integer(name) is not 0.
    [[nodiscard]] bool flag(const char* name) const { return integer(name) != 0; }

private:
    explicit JsonObject(JsonTree tree) : tree_(std::move(tree)) {}
    JsonTree tree_;
};

}  // namespace glimmer
