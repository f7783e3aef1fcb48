#include "upload/answers/query_signature.h"

#include <algorithm>

#include "common/text.h"
#include "upload/answers/Umd5.h"

namespace glimmer {

namespace {

/// Small letters stand behind "_", as in the order of bytes by which a service sorts names in small letters.
QueryParameters sorted(QueryParameters parameters) {
    const auto entry = [](const auto& parameter) { return lowerAscii(parameter.first + "=" + parameter.second); };
    std::stable_sort(parameters.begin(), parameters.end(),
                     [&](const auto& a, const auto& b) { return entry(a) < entry(b); });
    return parameters;
}

}  // namespace

std::string querySignature(std::string_view secret, const QueryParameters& parameters) {
    std::string text(secret);
    for (const auto& [name, value] : sorted(parameters)) text += name + value;
    return md5Hex(text);
}

std::string signedQuery(const QueryParameters& parameters, std::string_view signature) {
    std::string text;
    for (const auto& [name, value] : sorted(parameters)) text += name + "=" + value + "&";
    return text + "api_sig=" + std::string(signature);
}

}  // namespace glimmer
