#include "upload/http/log_mask.h"

#include <algorithm>
#include <array>

#include "common/text.h"

namespace glimmer {

namespace {

constexpr std::string_view hidden = "***";

bool isNameCharacter(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '-' ||
           c == '.' || c == '[' || c == ']' || c == '%';
}

bool isSecretName(std::string_view name) {
    static constexpr std::array<std::string_view, 12> words{"pass", "pwd",  "token", "sig",  "secret",  "auth",
                                                            "key",  "frob", "login", "user", "session", "captcha"};
    const std::string lower = lowerAscii(name);
    return std::any_of(words.begin(), words.end(),
                       [&lower](std::string_view word) { return lower.find(word) != std::string::npos; });
}

bool isSecretHeader(std::string_view name) {
    const std::string lower = lowerAscii(name);
    return lower.ends_with("cookie") || isSecretName(lower);
}

/// "://user:password@" of one line.
std::string withoutUsers(std::string_view line) {
    std::string out;
    for (size_t start = 0; (start = line.find("://")) != std::string_view::npos;) {
        out += line.substr(0, start + 3);
        line.remove_prefix(start + 3);
        const std::string_view server = line.substr(0, line.find_first_of("/?# \t\"<>"));
        if (const size_t at = server.rfind('@'); at != std::string_view::npos) {
            out += hidden;
            line.remove_prefix(at);
        }
    }
    return out.append(line);
}

std::string withoutValues(std::string_view line) {
    std::string out;
    size_t done = 0;
    for (size_t sign = 0; (sign = line.find('=', sign)) != std::string_view::npos; ++sign) {
        if (sign < done) continue;
        size_t name = sign;
        while (name > 0 && isNameCharacter(line[name - 1])) --name;
        if (!isSecretName(line.substr(name, sign - name))) continue;
        out += line.substr(done, sign + 1 - done);
        out += hidden;
        done = std::min(line.find_first_of("& \t\"<>;", sign + 1), line.size());
    }
    return out.append(line.substr(done));
}

std::string maskedLine(std::string_view line) {
    // A header, with or without words of ours ahead of it ("Headers: Authorization: ...").
    for (size_t colon = 0; (colon = line.find(':', colon)) != std::string_view::npos; ++colon) {
        size_t name = colon;
        while (name > 0 && isNameCharacter(line[name - 1])) --name;
        if (name < colon && !line.substr(colon).starts_with("://") && isSecretHeader(line.substr(name, colon - name)))
            return std::string(line.substr(0, colon + 1)) + " " + std::string(hidden);
    }
    return withoutValues(withoutUsers(line));
}

}  // namespace

std::string maskedForLog(std::string_view text) {
    std::string out;
    for (;;) {
        const size_t end = std::min(text.find_first_of("\r\n"), text.size());
        out += maskedLine(text.substr(0, end));
        if (end == text.size()) return out;
        out += text[end];
        text.remove_prefix(end + 1);
    }
}

}  // namespace glimmer
