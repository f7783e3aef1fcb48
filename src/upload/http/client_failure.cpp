#include "upload/http/client_failure.h"

#include <algorithm>
#include <iterator>

#include "common/text.h"

namespace glimmer {

namespace {

struct Reason {
    uint32_t code;
    bool certificate;
    const char* text;
};

constexpr Reason reasons[] = {
    {12002, false, "The server did not answer in time."},
    {12003, false, "The server refuses the request."},
    {12007, false, "The name of the server is not known."},
    {12014, false, "The server refuses the password."},
    {12015, false, "The server refuses the user name or the password."},
    {12017, false, "The operation was cancelled."},
    {12029, false, "The server cannot be reached."},
    {12030, false, "The connection to the server was broken off."},
    {12031, false, "The connection to the server was broken off."},
    {12037, true, "The server's certificate has expired or is not valid yet."},
    {12038, true, "The server's certificate belongs to another server."},
    {12044, true, "The server asks for a certificate of yours, which this program cannot give."},
    {12045, true, "Nobody whom this system trusts has issued the server's certificate."},
    {12055, true, "The server's certificate is not valid."},
    {12057, true,
     "Whether the server's certificate is valid cannot be found out: it may come from an issuer that this "
     "system does not trust."},
    {12157, true, "No encrypted connection to the server came about."},
    {12169, true, "The server's certificate is not valid."},
    {12170, true, "The server's certificate was revoked."},
    {12175, true, "No encrypted connection to the server came about."},
};

const Reason* reasonOf(uint32_t code) {
    const Reason* const found =
        std::find_if(std::begin(reasons), std::end(reasons), [code](const Reason& r) { return r.code == code; });
    return found == std::end(reasons) ? nullptr : found;
}

constexpr const char* notSent = "Nothing was sent.";

}  // namespace

std::string errorReport(const std::string& step, const std::string& reason, uint32_t code,
                        const std::string& response) {
    return step + "\r\n\r\n" + reason + "\r\n\r\n[" + std::to_string(code) + "] - " + response;
}

std::string ownReason(uint32_t code) {
    const Reason* const reason = reasonOf(code);
    if (reason == nullptr) return {};
    return reason->certificate ? std::string(reason->text) + " " + notSent : reason->text;
}

std::string reasonFor(uint32_t code, const std::string& systemText) {
    const std::string system = trimmed(systemText);
    const Reason* const own = reasonOf(code);
    if (system.empty()) return ownReason(code);
    return own != nullptr && own->certificate ? ownReason(code) + "\r\n\r\n" + system : system;
}

}  // namespace glimmer
