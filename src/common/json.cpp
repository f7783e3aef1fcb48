#include "common/json.h"

#include <cjson/cJSON.h>

namespace glimmer {

namespace {

/// Whether brackets go no deeper and values are no more than the limits say. Only what stands outside of strings
/// counts; whether it makes sense is the parser's affair. Counted beforehand, since the parser descends one call for
/// each level and allocates each value.
bool within(std::string_view text, const JsonLimits& limits) {
    int depth = 0;
    size_t values = 1;
    bool inString = false;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString) {
            if (c == '\\') {
                ++i;
            } else if (c == '"') {
                inString = false;
            }
        } else if (c == '"') {
            inString = true;
        } else if (c == '{' || c == '[') {
            ++values;
            if (++depth > limits.depth) return false;
        } else if (c == '}' || c == ']') {
            --depth;
        } else if (c == ',') {
            ++values;
        }
    }
    return values <= limits.values;
}

}  // namespace

void JsonDeleter::operator()(cJSON* tree) const { cJSON_Delete(tree); }

JsonTree parseJson(std::string_view text, const JsonLimits& limits) {
    text = text.substr(0, text.find('\0'));
    if (text.size() > limits.bytes || !within(text, limits)) return nullptr;
    const std::string terminated(text);
    // The length includes the zero: only blanks may stand between the value's end and it.
    return JsonTree(cJSON_ParseWithLengthOpts(terminated.c_str(), terminated.size() + 1, nullptr, 1));
}

std::optional<JsonObject> JsonObject::parse(std::string_view text, const JsonLimits& limits) {
    JsonTree tree = parseJson(text, limits);
    if (!tree || cJSON_IsObject(tree.get()) == 0) return std::nullopt;
    return JsonObject(std::move(tree));
}

bool JsonObject::has(const char* name) const { return cJSON_GetObjectItemCaseSensitive(tree_.get(), name) != nullptr; }

std::string_view JsonObject::textView(const char* name) const {
    const cJSON* item = cJSON_GetObjectItemCaseSensitive(tree_.get(), name);
    const char* value = cJSON_IsString(item) != 0 ? item->valuestring : nullptr;
    return value != nullptr ? std::string_view(value) : std::string_view();
}

std::string JsonObject::text(const char* name) const { return std::string(textView(name)); }

int32_t JsonObject::integer(const char* name, int32_t fallback) const {
    const cJSON* item = cJSON_GetObjectItemCaseSensitive(tree_.get(), name);
    if (cJSON_IsNumber(item) != 0) return item->valueint;
    if (cJSON_IsBool(item) != 0) return cJSON_IsTrue(item) != 0 ? 1 : 0;
    return fallback;
}

}  // namespace glimmer
