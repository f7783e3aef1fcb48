#include "output/files/project_lists.h"

#include <charconv>

namespace glimmer {

namespace {

std::string escaped(std::string_view text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '\\':
                out += "\\\\";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            default:
                out += c;
        }
    }
    return out;
}

std::optional<std::string> unescaped(std::string_view text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            out += text[i];
            continue;
        }
        if (++i == text.size()) return std::nullopt;
        switch (text[i]) {
            case '\\':
                out += '\\';
                break;
            case 'n':
                out += '\n';
                break;
            case 'r':
                out += '\r';
                break;
            case 't':
                out += '\t';
                break;
            default:
                return std::nullopt;
        }
    }
    return out;
}

/// The text up to `separator`, which goes too. All of it when there is none.
std::string_view takeUntil(std::string_view& text, char separator) {
    const size_t end = text.find(separator);
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return part;
}

bool readPage(std::string_view line, CaptureInfo& info) {
    const std::string_view time = takeUntil(line, '\t');
    const auto [end, error] = std::from_chars(time.data(), time.data() + time.size(), info.captured);
    const std::optional<std::string> url = unescaped(takeUntil(line, '\t'));
    const std::optional<std::string> title = unescaped(line);
    if (error != std::errc() || end != time.data() + time.size() || !url || !title) return false;
    info.url = *url;
    info.title = *title;
    return true;
}

}  // namespace

std::string projectNames(const std::vector<CaptureInfo>& captures) {
    std::string text;
    for (const CaptureInfo& info : captures) text += escaped(info.name) + "\n";
    return text;
}

std::string projectPages(const std::vector<CaptureInfo>& captures) {
    std::string text;
    for (const CaptureInfo& info : captures) {
        text += std::to_string(info.captured);
        text.append(1, '\t').append(escaped(info.url)).append(1, '\t').append(escaped(info.title)).append(1, '\n');
    }
    return text;
}

std::optional<std::vector<CaptureInfo>> projectInfos(std::string_view names, std::string_view pages) {
    const bool withPages = !pages.empty();
    std::vector<CaptureInfo> infos;
    while (!names.empty()) {
        CaptureInfo info;
        std::optional<std::string> name = unescaped(takeUntil(names, '\n'));
        if (!name || (withPages && (pages.empty() || !readPage(takeUntil(pages, '\n'), info)))) return std::nullopt;
        info.name = std::move(*name);
        infos.push_back(std::move(info));
    }
    if (!pages.empty()) return std::nullopt;
    return infos;
}

}  // namespace glimmer
