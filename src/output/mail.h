#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>

#include "common/result.h"

namespace glimmer {

/// Whether a mail program is installed for Simple MAPI.
bool hasMailProgram();

enum class MailOutcome : uint8_t { Handed, GivenUp, Failed };

/// Hands files to the user's mail program as attachments of one new message, whose window stays open for the user.
MailOutcome sendMail(const std::string& subject, const std::string& body,
                     std::span<const std::filesystem::path> attachments);

/// The text below which the user writes.
std::string mailFooter();

}  // namespace glimmer
