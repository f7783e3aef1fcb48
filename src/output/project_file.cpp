#include "output/project_file.h"

#include <wx/log.h>
#include <wx/wfstream.h>
#include <wx/zipstrm.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <system_error>

#include "common/assertion.h"
#include "common/files.h"
#include "output/project_lists.h"

namespace glimmer {

namespace {

constexpr std::string_view currentVersion = "1";
constexpr const char* versionEntry = "Version";
constexpr const char* namesEntry = "Editor Names.dat";
constexpr const char* pagesEntry = "Editor Pages.dat";

std::string pictureEntry(size_t index) {
    std::array<char, 24> name{};
    std::snprintf(name.data(), name.size(), "%04u.png", static_cast<unsigned>(index + 1));
    return name.data();
}

std::span<const uint8_t> bytesOf(std::string_view text) {
    return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

/// The toolkit's view of a file under way; keeps the reason of the first failure.
class OutputStream : public wxOutputStream {
public:
    explicit OutputStream(TemporaryOutput& output) : output_(output) {}
    [[nodiscard]] const Status& status() const { return status_; }

protected:
    size_t OnSysWrite(const void* data, size_t size) override {
        if (status_) status_ = output_.write({static_cast<const uint8_t*>(data), size});
        m_lasterror = status_ ? wxSTREAM_NO_ERROR : wxSTREAM_WRITE_ERROR;
        return status_ ? size : 0;
    }

private:
    TemporaryOutput& output_;
    Status status_;
};

bool putEntry(wxZipOutputStream& zip, const std::string& name, std::span<const uint8_t> data, bool packed) {
    auto* entry = new wxZipEntry(wxString::FromUTF8(name.data(), name.size()));  // the stream's from here on
    entry->SetMethod(wxZIP_METHOD_DEFLATE);
    zip.SetLevel(packed ? 9 : 0);
    return zip.PutNextEntry(entry) && zip.WriteAll(data.data(), data.size()) && zip.CloseEntry();
}

/// Reads one entry; nothing when it is damaged or larger than `limit`.
std::optional<std::vector<uint8_t>> readEntry(wxZipInputStream& zip, uint64_t limit) {
    std::vector<uint8_t> data;
    std::vector<uint8_t> piece(size_t{64} * 1024);
    while (true) {
        const size_t got = zip.Read(piece.data(), piece.size()).LastRead();
        if (data.size() + got > limit) return std::nullopt;
        data.insert(data.end(), piece.begin(), piece.begin() + static_cast<ptrdiff_t>(got));
        if (zip.Eof()) return data;  // the checksum was right
        if (got == 0 || !zip.IsOk()) return std::nullopt;
    }
}

using Entries = std::map<std::string, std::vector<uint8_t>>;

/// The archive's entries, unpacked, within the limits. A name that comes twice is damage.
std::optional<Entries> readEntries(const std::filesystem::path& path) {
    const wxLogNull quiet;  // the toolkit would show its own messages
    wxFFileInputStream file(wxString(path.wstring()));
    if (!file.IsOk()) return std::nullopt;
    wxZipInputStream zip(file);
    Entries entries;
    uint64_t left = ProjectLimits::unpackedBytes;
    while (const std::unique_ptr<wxZipEntry> entry{zip.GetNextEntry()}) {
        const std::string name = entry->GetName(wxPATH_UNIX).utf8_string();
        const bool list = !name.ends_with(".png");
        auto data = readEntry(zip, list ? std::min<uint64_t>(left, ProjectLimits::listBytes) : left);
        if (!data || entries.size() > ProjectLimits::captures + 8) return std::nullopt;
        left -= data->size();
        if (!entries.emplace(name, std::move(*data)).second) return std::nullopt;
    }
    return zip.Eof() ? std::optional(std::move(entries)) : std::nullopt;
}

std::string_view textOf(const Entries& entries, const char* name) {
    const auto entry = entries.find(name);
    if (entry == entries.end()) return {};
    return {reinterpret_cast<const char*>(entry->second.data()), entry->second.size()};
}

}  // namespace

Status writeProject(const std::filesystem::path& path, std::span<const CaptureDocument* const> captures,
                    const CaptureEncoder& encode) {
    const wxLogNull quiet;
    TemporaryOutput output(path, {.inherits = true});
    const auto cannotCreate = [&path, &output] {
        return Failure{"Cannot create file: " + utf8FromPath(path) + " for writing." +
                       explained(path, output.trouble())};
    };
    if (!output.open() || captures.size() > ProjectLimits::captures) return cannotCreate();
    OutputStream stream(output);
    OutputStream* const pStream = &stream;
    GLIMMER_ASSERT(pStream != nullptr, "pStream!=NULL", "uSaver");
    std::vector<CaptureInfo> infos;
    for (const CaptureDocument* capture : captures) infos.push_back(capture->info());
    {
        wxZipOutputStream zip(stream, 9);
        bool written = putEntry(zip, versionEntry, bytesOf(currentVersion), true) &&
                       putEntry(zip, namesEntry, bytesOf(projectNames(infos)), true) &&
                       putEntry(zip, pagesEntry, bytesOf(projectPages(infos)), true);
        for (size_t i = 0; written && i < captures.size(); ++i) {
            const Result<std::vector<uint8_t>> png = encode(*captures[i], i);
            if (!png) return png.failure();
            written = putEntry(zip, pictureEntry(i), *png, false);  // packed already
        }
        if (!written || !zip.Close()) return cannotCreate();
    }
    if (!stream.status() || !output.commit()) return cannotCreate();
    removeAbandonedOutputs(path.parent_path());
    return {};
}

Result<std::vector<std::unique_ptr<CaptureDocument>>> readProject(const std::filesystem::path& path,
                                                                  const CaptureDecoder& decode) {
    const std::string name = utf8FromPath(path);
    std::error_code error;
    const uint64_t size = std::filesystem::file_size(path, error);
    if (error) return Failure{"The file " + name + " cannot be read."};
    if (size > ProjectLimits::fileBytes) return Failure{"The file " + name + " is too large."};
    const Failure damaged{"The file " + name + " is damaged or is not a Glimmerpad project."};
    std::optional<Entries> entries = readEntries(path);
    if (!entries || textOf(*entries, versionEntry).empty()) return damaged;
    if (textOf(*entries, versionEntry) != currentVersion)
        return Failure{"The project " + name + " was made by a newer version of the program."};
    std::optional<std::vector<CaptureInfo>> infos =
        projectInfos(textOf(*entries, namesEntry), textOf(*entries, pagesEntry));
    if (!infos || infos->empty() || infos->size() > ProjectLimits::captures) return damaged;

    std::vector<std::unique_ptr<CaptureDocument>> captures;
    for (size_t i = 0; i < infos->size(); ++i) {
        const auto picture = entries->find(pictureEntry(i));
        if (picture == entries->end()) return damaged;
        Result<std::unique_ptr<CaptureDocument>> capture = decode(picture->second, std::move((*infos)[i]));
        if (!capture) return capture.failure();
        entries->erase(picture);  // frees its memory
        (*capture)->markSaved();
        (*capture)->park();
        captures.push_back(capture.take());
    }
    return captures;
}

}  // namespace glimmer
