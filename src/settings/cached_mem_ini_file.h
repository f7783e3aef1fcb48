#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/result.h"

namespace glimmer {

/// The settings file in memory: sections with registry-style names, keys and values, all UTF-8. Names are compared
/// without regard to the case of A to Z. The file is parsed once, when the object is made; save() puts this object's
/// changes into the file as it stands then, so that two objects or two processes that work on one file keep each
/// other's values. The destructor saves too.
///
/// A missing file reads as empty. Any text can be stored; what would break the syntax is written in another form
/// (encoded_text.h).
class TCachedMemIniFile {
public:
    /// The largest file that is read. A larger one, or one that cannot be read, is never overwritten: every read
    /// returns its default and save() fails.
    static constexpr uint64_t sizeLimit = 16U << 20U;

    /// An empty path makes a store that lives in memory only.
    explicit TCachedMemIniFile(std::filesystem::path path);
    ~TCachedMemIniFile();
    TCachedMemIniFile(const TCachedMemIniFile&) = delete;
    TCachedMemIniFile& operator=(const TCachedMemIniFile&) = delete;
    TCachedMemIniFile(TCachedMemIniFile&&) noexcept;
    TCachedMemIniFile& operator=(TCachedMemIniFile&&) = delete;

    /// A store in memory with the content of a settings file. Takes any bytes.
    static TCachedMemIniFile parse(std::span<const uint8_t> bytes);

    [[nodiscard]] const std::filesystem::path& path() const;

    /// Typed reads. The default is returned when the key is absent or its text is not of that type; a number is moved
    /// into `least`..`most`, and so is a default.
    [[nodiscard]] std::string readString(std::string_view section, std::string_view key,
                                         std::string_view fallback = {}) const;
    [[nodiscard]] int32_t readInteger(std::string_view section, std::string_view key, int32_t fallback,
                                      int32_t least = std::numeric_limits<int32_t>::min(),
                                      int32_t most = std::numeric_limits<int32_t>::max()) const;
    /// Written as 1 and 0; true/false, yes/no and on/off are understood too.
    [[nodiscard]] bool readBool(std::string_view section, std::string_view key, bool fallback) const;

    void writeString(std::string_view section, std::string_view key, std::string_view value);
    void writeInteger(std::string_view section, std::string_view key, int32_t value);
    void writeBool(std::string_view section, std::string_view key, bool value);

    /// Names of all sections of the underlying file as it stands now, with this object's unsaved changes, in the
    /// file's order.
    [[nodiscard]] std::vector<std::string> readSections() const;
    /// The keys of a section, in the file's order.
    [[nodiscard]] std::vector<std::string> readKeys(std::string_view section) const;
    [[nodiscard]] bool sectionExists(std::string_view section) const;
    [[nodiscard]] bool keyExists(std::string_view section, std::string_view key) const;
    void removeKey(std::string_view section, std::string_view key);
    void removeSection(std::string_view section);

    /// Writes the changes back, if there are any: to a temporary file that then replaces the old one. On failure the
    /// file is as it was and the changes stay for the next attempt; the failure handler is told of the first failure
    /// in a row.
    Status save();

private:
    struct Content;
    std::unique_ptr<Content> content_;
};

/// Called with one English sentence when a settings file cannot be written. Until it is set, nobody is told.
using SettingsFailureHandler = std::function<void(const std::string& message)>;
void setSettingsFailureHandler(SettingsFailureHandler handler);

}  // namespace glimmer
