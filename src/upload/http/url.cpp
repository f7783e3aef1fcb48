#include "upload/http/url.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "common/text.h"

namespace glimmer {

namespace {

constexpr size_t longestUrl = 16384;  // tokens of services are long; nobody's address is longer

bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }
bool isAlphanumeric(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

int digitOf(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

/// Letters, digits, dots and hyphens, and names in other scripts, which the system translates.
bool isHostName(std::string_view host) {
    return !host.empty() && host.size() <= 255 && std::all_of(host.begin(), host.end(), [](char c) {
        return isAlphanumeric(c) || c == '-' || c == '.' || c == '_' || static_cast<unsigned char>(c) >= 0x80;
    });
}

bool isBracketed(std::string_view host) {
    return host.size() > 3 && host.front() == '[' && host.back() == ']' &&
           std::all_of(host.begin() + 1, host.end() - 1,
                       [](char c) { return digitOf(c) >= 0 || c == ':' || c == '.'; });
}

Status readHostAndPort(std::string_view text, Url& url) {
    const size_t bracket = text.find(']');
    const size_t colon = text.find(':', bracket == std::string_view::npos ? 0 : bracket);
    url.host = lowerAscii(text.substr(0, colon));
    if (!isHostName(url.host) && !isBracketed(url.host)) return Failure{"The address has no valid name of a server."};
    url.port = defaultPort(url.protocol);
    if (colon == std::string_view::npos || colon + 1 == text.size()) return {};
    uint16_t port = 0;
    const char* const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data() + colon + 1, end, port);
    if (error != std::errc() || last != end)
        return Failure{"The address has no valid port: it is a number up to 65535."};
    if (port != 0) url.port = port;
    return {};
}

}  // namespace

uint16_t defaultPort(Protocol protocol) {
    switch (protocol) {
        case Protocol::Ftp:
            return 21;
        case Protocol::Https:
            return 443;
        case Protocol::Http:
            break;
    }
    return 80;
}

Result<Url> parseUrl(std::string_view text) {
    const std::string whole = trimmed(text);
    if (whole.size() > longestUrl) return Failure{"The address is too long."};
    if (std::any_of(whole.begin(), whole.end(), isControl))
        return Failure{"The address has a line break or another control character in it."};
    const size_t colon = whole.find("://");
    const std::string scheme = colon == std::string::npos ? "" : lowerAscii(whole.substr(0, colon));
    Url url;
    if (scheme == "https")
        url.protocol = Protocol::Https;
    else if (scheme == "ftp")
        url.protocol = Protocol::Ftp;
    else if (scheme != "http")
        return Failure{"The address has to begin with \"http://\", \"https://\" or \"ftp://\"."};
    std::string_view rest = std::string_view(whole).substr(colon + 3);
    rest = rest.substr(0, rest.find('#'));
    const size_t slash = std::min(rest.find_first_of("/?"), rest.size());
    std::string_view server = rest.substr(0, slash);
    if (const size_t at = server.rfind('@'); at != std::string_view::npos) {
        const std::string_view who = server.substr(0, at);
        const size_t separator = who.find(':');
        url.user = percentDecoded(who.substr(0, separator));
        if (separator != std::string_view::npos) url.password = percentDecoded(who.substr(separator + 1));
        server.remove_prefix(at + 1);
    }
    if (Status read = readHostAndPort(server, url); !read) return read.failure();
    constexpr std::string_view keptInPaths = "-._~:/?[]@!$&'()*+,;=%|^`{}";
    const std::string_view path = rest.substr(slash);
    if (path.starts_with('/')) url.path.clear();
    url.path += percentEncoded(path, keptInPaths);
    return url;
}

std::string serverOf(const Url& url) {
    static constexpr std::array<const char*, 3> schemes{"ftp://", "http://", "https://"};
    std::string text = schemes[static_cast<size_t>(url.protocol)] + url.host;
    if (url.port == defaultPort(url.protocol)) return text;
    return text.append(":").append(std::to_string(url.port));
}

std::string percentEncoded(std::string_view text, std::string_view kept) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    encoded.reserve(text.size());
    for (const char c : text) {
        if (isAlphanumeric(c) || kept.find(c) != std::string_view::npos) {
            encoded += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        encoded += '%';
        encoded += digits[byte >> 4U];
        encoded += digits[byte & 15U];
    }
    return encoded;
}

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    for (size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && i + 2 < text.size() ? digitOf(text[i + 1]) : -1;
        const int low = high >= 0 ? digitOf(text[i + 2]) : -1;
        if (low < 0) {
            decoded += text[i];
            continue;
        }
        decoded += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return decoded;
}

}  // namespace glimmer
