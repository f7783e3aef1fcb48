#pragma once

#include <cstdint>
#include <string>

namespace glimmer {

/// Why a request could not be carried out, ready to be shown.
struct ClientFailure {
    std::string step;     ///< "connect failed...", say; empty: nothing failed
    std::string reason;   ///< the system's text for the code, or a sentence of ours
    uint32_t code = 0;    ///< the system's; 407 for a proxy that lets nobody through; 0 when it was not the system
    std::string text;     ///< the whole message
    std::string caption;  ///< of the message
    bool cancelled = false;

    explicit operator bool() const { return !step.empty(); }
};

/// "STEP", "REASON" and "[CODE] - RESPONSE" with blank lines between them.
std::string errorReport(const std::string& step, const std::string& reason, uint32_t code, const std::string& response);

/// Our sentence for a code of the system: where it has none of its own, and where what it says does not tell a person
/// what is the matter (certificates). Empty for any other code.
std::string ownReason(uint32_t code);
/// What to say for a code: the system's text, or ours, or both.
std::string reasonFor(uint32_t code, const std::string& systemText);

}  // namespace glimmer
