#include "settings/cached_mem_ini_file.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <map>
#include <optional>
#include <set>
#include <system_error>
#include <thread>
#include <utility>

// Both are read by the header that follows: plain UTF-8 bytes, and the bodies of its templates here.
#define SI_NO_CONVERSION
#define SI_IMPLEMENTATION
#include <SimpleIni.h>

#include "common/assertion.h"
#include "common/files.h"
#include "common/locked_edit.h"
#include "common/text.h"
#include "settings/encoded_text.h"
#include "settings/file_text.h"

namespace glimmer {

namespace {

constexpr const char* unit = "TCachedMemIniFile";

SettingsFailureHandler failureHandler;

/// Closes section lines that lack their bracket (a damaged file): the parser would take everything that follows for
/// the section's name.
std::string withClosedSections(std::string_view text) {
    std::string out;
    out.reserve(text.size() + 1);
    for (size_t at = 0; at < text.size();) {
        const size_t end = std::min(text.find_first_of("\r\n", at), text.size());
        const std::string_view line = text.substr(at, end - at);
        const size_t first = line.find_first_not_of(" \t");
        out.append(line);
        if (first != std::string_view::npos && line[first] == '[' && line.find(']') == std::string_view::npos)
            out.push_back(']');
        at = std::min(text.find_first_not_of("\r\n", end), text.size());
        out.append(text.substr(end, at - end));
    }
    return out;
}

std::unique_ptr<CSimpleIniA> newIni(std::string_view fileText) {
    const std::string text = withClosedSections(fileText);
    auto ini = std::make_unique<CSimpleIniA>();
    ini->SetUnicode();
    ini->SetMultiKey(false);
    ini->SetMultiLine(false);
    ini->SetSpaces(false);
    ini->LoadData(text.data(), text.size());
    return ini;
}

/// What one object changed since its last save, to be repeated on the file as it stands then.
class Changes {
public:
    struct Value {
        std::string section;  // in the file's form
        std::string key;
        std::optional<std::string> value;  // nothing: removed
    };

    void set(const std::string& section, const std::string& key, std::optional<std::string> value) {
        const auto [place, isNew] = places_.try_emplace({lowerAscii(section), lowerAscii(key)}, values_.size());
        if (isNew) values_.emplace_back();
        values_[place->second] = Value{section, key, std::move(value)};
    }
    void removeSection(const std::string& section) {
        // What was set in it must not come back; removing the keys again does no harm.
        for (Value& value : values_)
            if (equalsIgnoringCase(value.section, section)) value.value = std::nullopt;
        removed_.insert(section);
    }
    void applyTo(CSimpleIniA& ini) const {
        for (const std::string& section : removed_) ini.Delete(section.c_str(), nullptr);
        for (const Value& change : values_) {
            if (change.value) {
                ini.SetValue(change.section.c_str(), change.key.c_str(), change.value->c_str());
            } else {
                ini.Delete(change.section.c_str(), change.key.c_str(), true);
            }
        }
    }
    [[nodiscard]] bool empty() const { return values_.empty() && removed_.empty(); }
    void clear() {
        values_.clear();
        places_.clear();
        removed_.clear();
    }

private:
    std::vector<Value> values_;  // in the order of writing, which new keys keep in the file
    std::map<std::pair<std::string, std::string>, size_t> places_;
    std::set<std::string> removed_;
};

std::vector<std::string> inFileOrder(CSimpleIniA::TNamesDepend& names, IniPlace place) {
    names.sort(CSimpleIniA::Entry::LoadOrder());
    std::vector<std::string> out;
    for (const CSimpleIniA::Entry& name : names) out.push_back(fromIniForm(name.pItem, place));
    return out;
}

/// Another program (a virus scanner, a backup) may hold the file for a moment, or be about to fill it.
template <class Operation>
auto withPatience(bool patient, Operation operation) {
    constexpr int attempts = 6;
    constexpr std::chrono::milliseconds pause{25};
    auto result = operation();
    for (int attempt = 1; patient && !result.ok() && attempt < attempts; ++attempt) {
        std::this_thread::sleep_for(pause);
        result = operation();
    }
    return result;
}

}  // namespace

struct TCachedMemIniFile::Content {
    explicit Content(std::filesystem::path file) : path(std::move(file)) {}

    /// What is in the file on the disk; nothing when there is none.
    [[nodiscard]] FileContent read() const {
        std::error_code error;
        if (path.empty() || (!std::filesystem::exists(path, error) && !error)) return std::vector<uint8_t>();
        // An editor that writes over the file empties it first. What was in it is known, and goes on.
        bool emptied = false;
        FileContent bytes = withPatience(!failed, [&]() -> FileContent {
            FileContent now = readFile(path, TCachedMemIniFile::sizeLimit);
            emptied = filled && now && now->empty();
            return emptied ? Failure{} : now;
        });
        std::string text;
        if (emptied && ini->Save(text) == SI_OK) return std::vector<uint8_t>(text.begin(), text.end());
        return bytes;
    }

    [[nodiscard]] static Result<std::unique_ptr<CSimpleIniA>> parsed(const FileContent& content) {
        if (!content) return content.failure();
        return newIni(textFromFileBytes(*content));
    }

    /// Whether the user protected the file. Replacing it would work on some systems.
    [[nodiscard]] bool isReadOnly() const {
        namespace fs = std::filesystem;
        std::error_code error;
        const fs::file_status status = fs::status(path, error);
        return !error && fs::exists(status) && (status.permissions() & fs::perms::owner_write) == fs::perms::none;
    }

    [[nodiscard]] Status saveNow() {
        Result<std::unique_ptr<CSimpleIniA>> fresh = Failure{};
        const FileChange apply = [&](const FileContent& now) -> Result<NewContent> {
            if (isReadOnly()) return Failure{"The file " + utf8FromPath(path) + " is read-only."};
            fresh = parsed(now);
            if (!fresh) return fresh.failure();
            changes.applyTo(**fresh);
            std::string text;
            if ((*fresh)->Save(text) != SI_OK) return Failure{"The settings do not fit into memory."};
            return NewContent(std::in_place, text.begin(), text.end());
        };
        LockedEdit edit;
        edit.read = [this] { return read(); };
        edit.write.patient = !failed;
        Status written = editLockedFile(path, apply, edit);
        if (!written) return written;
        ini = fresh.take();
        filled = !ini->IsEmpty();
        changes.clear();
        return {};
    }

    std::filesystem::path path;
    std::unique_ptr<CSimpleIniA> ini;
    Changes changes;
    bool filled = false;  ///< there was something in the file
    bool failed = false;  ///< the last save failed and was reported
};

TCachedMemIniFile::TCachedMemIniFile(std::filesystem::path path) : content_(new Content(std::move(path))) {
    Result<std::unique_ptr<CSimpleIniA>> loaded = Content::parsed(content_->read());
    content_->ini = loaded ? loaded.take() : newIni({});
    content_->filled = !content_->ini->IsEmpty();
}

TCachedMemIniFile::TCachedMemIniFile(TCachedMemIniFile&&) noexcept = default;

TCachedMemIniFile::~TCachedMemIniFile() {
    if (!content_) return;
    try {
        save();
    } catch (...) {  // out of memory while a program ends: the file stays as it was
    }
}

TCachedMemIniFile TCachedMemIniFile::parse(std::span<const uint8_t> bytes) {
    TCachedMemIniFile store{std::filesystem::path()};
    store.content_->ini = newIni(textFromFileBytes(bytes));
    return store;
}

const std::filesystem::path& TCachedMemIniFile::path() const { return content_->path; }

std::string TCachedMemIniFile::readString(std::string_view section, std::string_view key,
                                          std::string_view fallback) const {
    const char* stored =
        content_->ini->GetValue(iniForm(section, IniPlace::Section).c_str(), iniForm(key, IniPlace::Key).c_str());
    return stored == nullptr ? std::string(fallback) : fromIniForm(stored, IniPlace::Value);
}

int32_t TCachedMemIniFile::readInteger(std::string_view section, std::string_view key, int32_t fallback, int32_t least,
                                       int32_t most) const {
    const std::string text = readString(section, key);
    const char* begin = text.data();
    const char* end = begin + text.size();
    int64_t value = 0;
    const auto [stop, error] = std::from_chars(begin, end, value);
    if (begin == end || stop != end || error == std::errc::invalid_argument) value = fallback;
    if (stop == end && error == std::errc::result_out_of_range) value = text[0] == '-' ? least : most;
    return static_cast<int32_t>(std::clamp<int64_t>(value, least, most));
}

bool TCachedMemIniFile::readBool(std::string_view section, std::string_view key, bool fallback) const {
    const std::string text = lowerAscii(readString(section, key));
    if (text == "1" || text == "-1" || text == "true" || text == "yes" || text == "on") return true;
    if (text == "0" || text == "false" || text == "no" || text == "off") return false;
    return fallback;
}

void TCachedMemIniFile::writeString(std::string_view section, std::string_view key, std::string_view value) {
    GLIMMER_ASSERT(!section.empty() && !key.empty(), "!section.empty() && !key.empty()", unit);
    const std::string fileSection = iniForm(section, IniPlace::Section);
    const std::string fileKey = iniForm(key, IniPlace::Key);
    const std::string stored = iniForm(value, IniPlace::Value);
    const char* present = content_->ini->GetValue(fileSection.c_str(), fileKey.c_str());
    if (present != nullptr && stored == present) return;
    content_->changes.set(fileSection, fileKey, stored);
    content_->ini->SetValue(fileSection.c_str(), fileKey.c_str(), stored.c_str());
}

void TCachedMemIniFile::writeInteger(std::string_view section, std::string_view key, int32_t value) {
    writeString(section, key, std::to_string(value));
}

void TCachedMemIniFile::writeBool(std::string_view section, std::string_view key, bool value) {
    writeString(section, key, value ? "1" : "0");
}

std::vector<std::string> TCachedMemIniFile::readSections() const {
    CSimpleIniA::TNamesDepend names;
    Result<std::unique_ptr<CSimpleIniA>> fresh = Failure{};
    if (!content_->path.empty()) fresh = Content::parsed(content_->read());
    if (fresh) content_->changes.applyTo(**fresh);
    (fresh ? **fresh : *content_->ini).GetAllSections(names);
    // Values before the first section belong to one without a name, which is none of ours.
    names.remove_if([](const CSimpleIniA::Entry& name) { return *name.pItem == '\0'; });
    return inFileOrder(names, IniPlace::Section);
}

std::vector<std::string> TCachedMemIniFile::readKeys(std::string_view section) const {
    CSimpleIniA::TNamesDepend names;
    content_->ini->GetAllKeys(iniForm(section, IniPlace::Section).c_str(), names);
    return inFileOrder(names, IniPlace::Key);
}

bool TCachedMemIniFile::sectionExists(std::string_view section) const {
    return content_->ini->GetSection(iniForm(section, IniPlace::Section).c_str()) != nullptr;
}

bool TCachedMemIniFile::keyExists(std::string_view section, std::string_view key) const {
    return content_->ini->GetValue(iniForm(section, IniPlace::Section).c_str(), iniForm(key, IniPlace::Key).c_str()) !=
           nullptr;
}

void TCachedMemIniFile::removeKey(std::string_view section, std::string_view key) {
    if (!keyExists(section, key)) return;
    const std::string fileSection = iniForm(section, IniPlace::Section);
    const std::string fileKey = iniForm(key, IniPlace::Key);
    content_->changes.set(fileSection, fileKey, std::nullopt);
    content_->ini->Delete(fileSection.c_str(), fileKey.c_str(), true);
}

void TCachedMemIniFile::removeSection(std::string_view section) {
    const std::string fileSection = iniForm(section, IniPlace::Section);
    content_->changes.removeSection(fileSection);
    content_->ini->Delete(fileSection.c_str(), nullptr);
}

Status TCachedMemIniFile::save() {
    if (content_->path.empty() || content_->changes.empty()) return {};
    Status status = content_->saveNow();
    const bool firstFailure = !status && !content_->failed;
    content_->failed = !status;
    if (firstFailure && failureHandler) failureHandler("The settings cannot be saved. " + status.message());
    return status;
}

void setSettingsFailureHandler(SettingsFailureHandler handler) { failureHandler = std::move(handler); }

}  // namespace glimmer
