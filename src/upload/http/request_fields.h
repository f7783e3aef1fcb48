#pragma once

#include <string>
#include <string_view>

#include "common/result.h"

// What may stand in the lines of a request. A line break, carriage return or zero in any of it would let whoever chose
// the text write lines of their own, so it is refused with a sentence; the sentence names the field, never its value.

namespace glimmer {

/// One header line, "Name: value", with or without a line end: the line without it.
Result<std::string> checkedHeader(std::string_view line);
/// "Proxy-Authorization", say, of such a line.
std::string_view headerName(std::string_view line);

/// A cookie's name is a word; its value ends at no semicolon.
Status checkCookie(std::string_view name, std::string_view value);
/// The name of a field or of a file.
Status checkFieldName(std::string_view name);

/// A name as it stands between quotes in a part of a multipart body: a quote becomes "%22", as browsers send it.
std::string quotedName(std::string_view name);

/// "Basic" and the base64 form of user and password, the value of an authorization header.
std::string basicAuthorization(std::string_view user, std::string_view password);

/// The content type of a file by the extension of its name, in any case; "text/plain" for one that is not known.
std::string_view mimeType(std::string_view fileName);

}  // namespace glimmer
