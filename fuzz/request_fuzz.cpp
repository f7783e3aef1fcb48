// Names and values of a request's fields: whatever they are, a body has the parts that were asked for and no line more.

#include <vector>

#include "fuzz/fuzz.h"
#include "upload/http/request_body.h"
#include "upload/http/request_fields.h"
#include "upload/http/url.h"

namespace {

using namespace glimmer;

constexpr const char* boundary = "----------BoUnDaRy";

size_t count(std::string_view text, std::string_view what) {
    size_t found = 0;
    for (size_t at = text.find(what); at != std::string_view::npos; at = text.find(what, at + 1)) ++found;
    return found;
}

void checkMultipart(const std::vector<HttpArgument>& arguments, MultipartKind kind) {
    const Result<MultipartBody> plan = MultipartBody::plan(arguments, kind, boundary);
    if (!plan) return;
    const Result<std::vector<uint8_t>> body = plan->write();
    FUZZ_CHECK(body.ok() && body->size() == plan->size());
    const std::string text(body->begin(), body->end());
    size_t given = 0;
    size_t lines = 0;
    for (const HttpArgument& argument : arguments) {
        FUZZ_CHECK(checkFieldName(argument.name).ok());
        given += count(argument.value, boundary) + count(argument.name, boundary);
        lines += count(argument.value, "\r\n");
    }
    FUZZ_CHECK(count(text, boundary) == arguments.size() + 1 + given);
    // A part's boundary, its head's line, the empty line and its content: four ends; one after the last boundary.
    FUZZ_CHECK(count(text, "\r\n") <= arguments.size() * 4 + 1 + lines + arguments.size());
    FUZZ_CHECK(count(text, "\r\n") >= arguments.size() * 4 + 1 + lines);
}

/// Back from the form in which they were sent.
void checkUrlEncoded(const std::vector<HttpArgument>& arguments) {
    std::string_view rest;
    const std::string body = urlEncodedBody(arguments);
    rest = body;
    for (const HttpArgument& argument : arguments) {
        const std::string_view pair = rest.substr(0, rest.find('&'));
        const size_t sign = pair.find('=');
        FUZZ_CHECK(sign != std::string_view::npos);
        FUZZ_CHECK(percentDecoded(pair.substr(0, sign)) == argument.name);
        FUZZ_CHECK(percentDecoded(pair.substr(sign + 1)) == argument.value);
        rest.remove_prefix(std::min(pair.size() + 1, rest.size()));
    }
    FUZZ_CHECK(rest.empty());
}

}  // namespace

/// The input's pieces, between bytes 255: names and values by turns.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    std::vector<std::string> pieces;
    while (pieces.size() < 32) {
        const size_t end = text.find('\xFF');
        pieces.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos) break;
        text.remove_prefix(end + 1);
    }
    if (pieces.size() % 2 != 0) pieces.emplace_back();
    std::vector<HttpArgument> arguments;
    for (size_t i = 0; i < pieces.size(); i += 2) arguments.push_back({pieces[i], pieces[i + 1], false});
    checkMultipart(arguments, MultipartKind::FormData);
    checkMultipart(arguments, MultipartKind::Related);
    checkUrlEncoded(arguments);
    for (const HttpArgument& argument : arguments) {
        const auto oneLine = [](std::string_view line) {
            return line.find_first_of({"\r\n\0", 3}) == std::string_view::npos;
        };
        if (const Result<std::string> header = checkedHeader(argument.name)) FUZZ_CHECK(oneLine(*header));
        if (checkCookie(argument.name, argument.value)) FUZZ_CHECK(oneLine(argument.name + argument.value));
        FUZZ_CHECK(quotedName(argument.name).find('"') == std::string::npos);
        FUZZ_CHECK(mimeType(argument.value).find('/') != std::string_view::npos);
    }
    return 0;
}
