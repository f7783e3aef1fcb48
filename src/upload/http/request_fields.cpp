#include "upload/http/request_fields.h"

#include <algorithm>

#include "common/text.h"

namespace glimmer {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view lineBreakers = "\r\n\0"sv;

bool breaksLines(std::string_view text) { return text.find_first_of(lineBreakers) != std::string_view::npos; }

/// A name of a header or a cookie: visible ASCII without separators.
bool isWord(std::string_view text) {
    constexpr std::string_view separators = "()<>@,;:\\\"/[]?={}";
    return !text.empty() && std::all_of(text.begin(), text.end(), [&](char c) {
        return c > ' ' && c < 0x7F && separators.find(c) == std::string_view::npos;
    });
}

}  // namespace

std::string_view headerName(std::string_view line) { return line.substr(0, line.find(':')); }

Result<std::string> checkedHeader(std::string_view line) {
    if (line.ends_with("\r\n")) line.remove_suffix(2);
    const std::string_view name = headerName(line);
    if (name.size() == line.size() || !isWord(name))
        return Failure{"A header of the request is not of the form \"Name: value\"."};
    if (breaksLines(line))
        return Failure{"The header \"" + std::string(name) + "\" of the request has a line break or a zero in it."};
    return std::string(line);
}

Status checkCookie(std::string_view name, std::string_view value) {
    if (!isWord(name)) return Failure{"The name of a cookie has to be a word without separators."};
    if (breaksLines(value) || value.find(';') != std::string_view::npos)
        return Failure{"The cookie \"" + std::string(name) + "\" has a line break, a zero or a semicolon in it."};
    return {};
}

Status checkFieldName(std::string_view name) {
    if (!breaksLines(name)) return {};
    return Failure{"The name of a field or of a file has a line break or a zero in it."};
}

std::string quotedName(std::string_view name) { return replaceAll(name, "\"", "%22"); }

std::string basicAuthorization(std::string_view user, std::string_view password) {
    const std::string both = std::string(user) + ":" + std::string(password);
    return "Basic " + base64Encode({reinterpret_cast<const uint8_t*>(both.data()), both.size()});
}

std::string_view mimeType(std::string_view fileName) {
    struct Type {
        std::string_view extension;
        std::string_view contentType;
    };
    static constexpr Type types[] = {
        {".GIF", "image/gif"},  {".PNG", "image/png"},  {".JPG", "image/jpeg"}, {".JPEG", "image/jpeg"},
        {".TXT", "text/plain"}, {".HTML", "text/html"}, {".HTM", "text/html"},  {".XML", "application/xml"},
    };
    const size_t dot = fileName.find_last_of("./\\");
    const std::string extension = dot == std::string_view::npos ? "" : upperAscii(fileName.substr(dot));
    for (const Type& type : types)
        if (type.extension == extension) return type.contentType;
    return "text/plain";
}

}  // namespace glimmer
