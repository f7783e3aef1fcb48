#pragma once

#include <atomic>
#include <chrono>
#include <memory>

#include "upload/http/internet.h"

namespace glimmer {

/// How long the system may take. What takes longer fails with Internet::timedOut.
struct InternetPatience {
    std::chrono::milliseconds connect{5000};   ///< to reach a server; where the system does not keep to it, we do
    std::chrono::milliseconds call{60000};     ///< any one call: a piece that is sent, the head of an answer
    std::chrono::milliseconds answer{180000};  ///< the whole answer, from the first byte that is read
};

/// The system's Internet functions (WinInet). Each call that may wait for a network runs on a thread of ours (see
/// CallThread), so that a request ends within a tenth of a second when `cancelled` becomes true, whatever the server or
/// the system does; it then fails with Internet::wasCancelled. Null: nobody cancels.
std::unique_ptr<Internet> systemInternet(std::shared_ptr<const std::atomic<bool>> cancelled = {},
                                         InternetPatience patience = {});

}  // namespace glimmer
