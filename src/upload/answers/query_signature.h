#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Calls of a web service that are signed with a secret that the program shares with it.

namespace glimmer {

/// Name and value.
using QueryParameters = std::vector<std::pair<std::string, std::string>>;

/// The MD5 sum, in hexadecimal digits, of the secret followed by name and value of every parameter, with nothing
/// between them, in the order of the texts "name=value" without regard to the case of A to Z. An empty value adds its
/// name.
std::string querySignature(std::string_view secret, const QueryParameters& parameters);

/// "name=value&" for each in the same order, then "api_sig=" and the signature. Names and values go in as they are:
/// what has other characters than letters, digits and "-._~" comes encoded, and the signature is that of the plain
/// values.
std::string signedQuery(const QueryParameters& parameters, std::string_view signature);

}  // namespace glimmer
