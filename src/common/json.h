#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct cJSON;

namespace glimmer {

/// A JSON text that holds one object, read with bounds on its length and its nesting. A member that is missing or of
/// another type than asked for reads as the default.
class JsonObject {
public:
    struct Limits {
        size_t bytes = size_t{64} * 1024 * 1024;
        int depth = 32;  ///< arrays and objects inside one another, the outermost counts as 1
    };

    /// Nothing when the text is malformed, goes beyond a limit, has something behind the object, or holds no object.
    /// A zero byte ends the text.
    static std::optional<JsonObject> parse(std::string_view text, Limits limits);
    static std::optional<JsonObject> parse(std::string_view text) { return parse(text, Limits()); }

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
    struct Deleter {
        void operator()(cJSON* tree) const;
    };
    explicit JsonObject(cJSON* tree) : tree_(tree) {}
    std::unique_ptr<cJSON, Deleter> tree_;
};

}  // namespace glimmer
