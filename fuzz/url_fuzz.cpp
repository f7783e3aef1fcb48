// An address that the user typed, a settings file brought, or a server sends a request on to.

#include <algorithm>

#include "fuzz/fuzz.h"
#include "upload/http/log_mask.h"
#include "upload/http/redirect.h"

namespace {

bool isVisibleAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < 0x7F; });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace glimmer;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (const Result<Url> url = parseUrl(text)) {
        FUZZ_CHECK(url->port != 0 && !url->host.empty());
        FUZZ_CHECK(url->path.starts_with('/') && isVisibleAscii(url->path));
        FUZZ_CHECK(url->host.find_first_of("\r\n/@ ") == std::string::npos);
        // What is built of the parts is read as the same parts.
        Url again = *url;
        again.user.clear();
        again.password.clear();
        const Result<Url> reread = parseUrl(serverOf(again) + again.path);
        FUZZ_CHECK(reread.ok() && *reread == again);
        const std::string who = percentEncoded(url->user) + ":" + percentEncoded(url->password) + "@";
        const std::string server = serverOf(*url);
        const Result<Url> whole = parseUrl(server.substr(0, server.find("://") + 3) + who + url->host + "/");
        FUZZ_CHECK(whole.ok() && whole->user == url->user && whole->password == url->password);
        const Result<std::optional<Url>> target = redirectTarget(*url, false, 302, text);
        FUZZ_CHECK(!target || !*target || url->protocol != Protocol::Https || (*target)->protocol == Protocol::Https);
    }
    const Url secure{Protocol::Https, "a.b", 443, "/c/d?e"};
    const Result<std::optional<Url>> target = redirectTarget(secure, true, 303, text);
    FUZZ_CHECK(!target || !*target || (*target)->protocol == Protocol::Https);
    // A line of the log that was masked has nothing left to mask, and no more lines.
    const std::string masked = maskedForLog(text);
    FUZZ_CHECK(maskedForLog(masked) == masked);
    FUZZ_CHECK(std::count(masked.begin(), masked.end(), '\n') == std::count(text.begin(), text.end(), '\n'));
    return 0;
}
