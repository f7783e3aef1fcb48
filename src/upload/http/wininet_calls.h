#pragma once

// What several of the functions around WinInet need.

// clang-format off
#include <windows.h>
#include <wininet.h>
// clang-format on

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "upload/http/internet.h"

namespace glimmer {

/// Since when a connection is being made, for those that share the number of a session; the system tells of it on any
/// of its threads, also after the session has ended.
class ConnectWatch {
public:
    ConnectWatch();
    ~ConnectWatch();
    ConnectWatch(const ConnectWatch&) = delete;
    ConnectWatch& operator=(const ConnectWatch&) = delete;
    ConnectWatch(ConnectWatch&&) = delete;
    ConnectWatch& operator=(ConnectWatch&&) = delete;

    /// For the calls that take a context.
    [[nodiscard]] DWORD_PTR context() const { return number_; }
    /// Milliseconds for which a connection has been coming about; 0 when none is.
    [[nodiscard]] uint64_t connectingFor() const;
    static void CALLBACK told(HINTERNET handle, DWORD_PTR context, DWORD status, void* information, DWORD length);

private:
    DWORD_PTR number_;
};

/// What the server said to this thread's last call.
std::string lastServerResponse();
/// Why an FTP server does not keep the file that was just closed; empty when it does.
std::string ftpObjection();
/// The form of a server's name for the system: names in other scripts in their ASCII form.
std::wstring systemHostName(const std::string& host);
DWORD infoFlag(AnswerField field);
std::optional<uint32_t> answerLength(HINTERNET request, AnswerField field);
std::optional<std::string> answerText(HINTERNET request, AnswerField field);
std::string wininetText(uint32_t code);

}  // namespace glimmer
