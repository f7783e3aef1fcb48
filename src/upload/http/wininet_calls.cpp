#include "upload/http/wininet_calls.h"

#include <array>
#include <map>
#include <mutex>

#include "common/system_library.h"
#include "common/text.h"
#include "common/wide_text.h"

namespace glimmer {

namespace {

struct Watches {
    std::mutex mutex;
    DWORD_PTR last = 0;
    std::map<DWORD_PTR, ULONGLONG> since;  ///< 0: not connecting
};

Watches& watches() {
    static auto* const all = new Watches;  // never destroyed: the system's threads may come at any time
    return *all;
}

}  // namespace

ConnectWatch::ConnectWatch() : number_(0) {
    const std::lock_guard lock(watches().mutex);
    number_ = ++watches().last;
    watches().since[number_] = 0;
}

ConnectWatch::~ConnectWatch() {
    const std::lock_guard lock(watches().mutex);
    watches().since.erase(number_);
}

uint64_t ConnectWatch::connectingFor() const {
    const std::lock_guard lock(watches().mutex);
    const ULONGLONG since = watches().since[number_];
    return since == 0 ? 0 : GetTickCount64() - since;
}

void CALLBACK ConnectWatch::told(HINTERNET /*handle*/, DWORD_PTR context, DWORD status, void* /*information*/,
                                 DWORD /*length*/) {
    const std::lock_guard lock(watches().mutex);
    const auto found = watches().since.find(context);
    if (found == watches().since.end()) return;
    if (status == INTERNET_STATUS_CONNECTING_TO_SERVER) {
        if (found->second == 0) found->second = GetTickCount64();
    } else if (status == INTERNET_STATUS_CONNECTED_TO_SERVER || status == INTERNET_STATUS_REQUEST_COMPLETE) {
        found->second = 0;
    }
}

std::string lastServerResponse() {
    DWORD code = 0;
    DWORD length = 0;
    InternetGetLastResponseInfoW(&code, nullptr, &length);
    if (length == 0) return {};
    std::wstring text(length + 1, L'\0');
    length = static_cast<DWORD>(text.size());
    if (InternetGetLastResponseInfoW(&code, text.data(), &length) == FALSE) return {};
    return fromWide(text.c_str(), 4096);
}

/// The last line that begins with a number of three digits decides; 4 and 5 are refusals.
std::string ftpObjection() {
    const std::string all = trimmed(lastServerResponse());
    const size_t lineBreak = all.find_last_of("\r\n");
    const std::string last = lineBreak == std::string::npos ? all : all.substr(lineBreak + 1);
    return last.starts_with('4') || last.starts_with('5') ? all : std::string();
}

std::wstring systemHostName(const std::string& host) {
    const std::wstring wide = toWide(host);
    using IdnToAsciiFunction = int(WINAPI*)(DWORD, LPCWSTR, int, LPWSTR, int);
    static const auto convert = systemFunction<IdnToAsciiFunction>(L"kernel32.dll", "IdnToAscii");
    std::array<wchar_t, 512> ascii{};
    if (convert == nullptr || wide.find_first_of(L":[]") != std::wstring::npos ||
        convert(0, wide.c_str(), -1, ascii.data(), static_cast<int>(ascii.size())) <= 0)
        return wide;
    return ascii.data();
}

DWORD infoFlag(AnswerField field) {
    switch (field) {
        case AnswerField::StatusCode:
            return HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER;
        case AnswerField::RawHeaders:
            return HTTP_QUERY_RAW_HEADERS_CRLF;
        case AnswerField::ContentType:
            return HTTP_QUERY_CONTENT_TYPE;
        case AnswerField::ContentLength:
            return HTTP_QUERY_CONTENT_LENGTH;
        case AnswerField::SetCookie:
            return HTTP_QUERY_SET_COOKIE;
        case AnswerField::Location:
            break;
    }
    return HTTP_QUERY_LOCATION;
}

std::optional<uint32_t> answerLength(HINTERNET request, AnswerField field) {
    DWORD length = 0;
    if (HttpQueryInfoW(request, infoFlag(field), nullptr, &length, nullptr) != FALSE) return 0;
    if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) return std::nullopt;
    return length;
}

std::optional<std::string> answerText(HINTERNET request, AnswerField field) {
    const std::optional<uint32_t> length = answerLength(request, field);
    if (!length) return std::nullopt;
    std::wstring text(*length / sizeof(wchar_t) + 1, L'\0');
    auto size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    if (HttpQueryInfoW(request, infoFlag(field), text.data(), &size, nullptr) == FALSE) return std::nullopt;
    text.resize(size / sizeof(wchar_t));
    return fromWide(text);
}

std::string wininetText(uint32_t code) {
    constexpr DWORD flags = FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_FROM_SYSTEM;
    const HMODULE module = GetModuleHandleW(L"wininet.dll");
    std::array<wchar_t, 1024> text{};
    const DWORD length = FormatMessageW(flags | (module != nullptr ? FORMAT_MESSAGE_FROM_HMODULE : 0), module, code, 0,
                                        text.data(), static_cast<DWORD>(text.size()), nullptr);
    return trimmed(fromWide(std::wstring_view(text.data(), length)));
}

}  // namespace glimmer
