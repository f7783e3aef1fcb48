#include "output/files/project_file.h"

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
#include "output/files/project_lists.h"

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
    OutputStream(TemporaryOutput& output, uint64_t limit) : output_(output), left_(limit) {}
    [[nodiscard]] const Status& status() const { return status_; }
    [[nodiscard]] bool full() const { return full_; }

protected:
    size_t OnSysWrite(const void* data, size_t size) override {
        if (size > left_) full_ = true;
        if (full_) status_ = Failure{};
        left_ -= std::min<uint64_t>(left_, size);
        if (status_) status_ = output_.write({static_cast<const uint8_t*>(data), size});
        m_lasterror = status_ ? wxSTREAM_NO_ERROR : wxSTREAM_WRITE_ERROR;
        return status_ ? size : 0;
    }

private:
    TemporaryOutput& output_;
    uint64_t left_;
    bool full_ = false;
    Status status_;
};

bool putEntry(wxZipOutputStream& zip, const std::string& name, std::span<const uint8_t> data, bool packed) {
    auto* entry = new wxZipEntry(wxString::FromUTF8(name.data(), name.size()));  // the stream's from here on
    entry->SetMethod(wxZIP_METHOD_DEFLATE);
    zip.SetLevel(packed ? 9 : 0);
    return zip.PutNextEntry(entry) && zip.WriteAll(data.data(), data.size()) && zip.CloseEntry();
}

/// An archive of which one entry at a time is unpacked: all of them together need not fit into memory.
class Archive {
public:
    /// Looks for the entries only. False when it is damaged, has more of them than a project may have, or one twice.
    bool open(const std::filesystem::path& path, const ProjectLimits& limits) {
        file_.emplace(wxString(path.wstring()));
        if (!file_->IsOk()) return false;
        zip_.emplace(*file_);
        while (std::unique_ptr<wxZipEntry> entry{zip_->GetNextEntry()}) {
            std::string name = entry->GetName(wxPATH_UNIX).utf8_string();
            if (entries_.size() > limits.captures + 8 || !entries_.emplace(std::move(name), std::move(entry)).second)
                return false;
        }
        return zip_->Eof();
    }
    [[nodiscard]] bool has(const std::string& name) const { return entries_.contains(name); }
    /// Bytes of an entry that is there, as the archive's list says.
    [[nodiscard]] uint64_t size(const std::string& name) const {
        return static_cast<uint64_t>(entries_.at(name)->GetSize());
    }
    /// The entry, unpacked; nothing when it is not there, damaged, not as long as the list says, or beyond `limit`.
    std::optional<std::vector<uint8_t>> read(const std::string& name, uint64_t limit) {
        if (!has(name) || size(name) > limit || !zip_->OpenEntry(*entries_.at(name))) return std::nullopt;
        const uint64_t size = this->size(name);
        std::vector<uint8_t> data;
        data.reserve(static_cast<size_t>(size));
        std::vector<uint8_t> piece(size_t{64} * 1024);
        while (true) {
            const size_t got = zip_->Read(piece.data(), piece.size()).LastRead();
            if (data.size() + got > size) return std::nullopt;
            data.insert(data.end(), piece.begin(), piece.begin() + static_cast<ptrdiff_t>(got));
            if (zip_->Eof()) break;  // the checksum was right
            if (got == 0 || !zip_->IsOk()) return std::nullopt;
        }
        return data.size() == size ? std::optional(std::move(data)) : std::nullopt;
    }
    std::optional<std::string> readText(const std::string& name, uint64_t limit) {
        const std::optional<std::vector<uint8_t>> data = read(name, limit);
        return data ? std::optional<std::string>(std::in_place, data->begin(), data->end()) : std::nullopt;
    }

private:
    const wxLogNull quiet_;                  // the toolkit would show its own messages
    std::optional<wxFileInputStream> file_;  // counts in 64 bits wherever it runs
    std::optional<wxZipInputStream> zip_;
    std::map<std::string, std::unique_ptr<wxZipEntry>> entries_;
};

/// Why these captures cannot be one project; nothing when they can.
std::optional<Failure> refused(size_t captures, const std::string& names, const std::string& pages,
                               const ProjectLimits& limits) {
    if (captures > limits.captures)
        return Failure{"A project holds at most " + std::to_string(limits.captures) +
                       " captures. Please save these in several projects."};
    if (names.size() > limits.listBytes) return Failure{"The names of the captures are too long for one project."};
    if (pages.size() > limits.listBytes)
        return Failure{"The addresses and titles of the captures are too long for one project."};
    return std::nullopt;
}

}  // namespace

Status writeProject(const std::filesystem::path& path, std::span<const CaptureDocument* const> captures,
                    const CaptureEncoder& encode, const ProjectLimits& limits) {
    const wxLogNull quiet;
    std::vector<CaptureInfo> infos;
    for (const CaptureDocument* capture : captures) infos.push_back(capture->info());
    const std::string names = projectNames(infos);
    const std::string pages = projectPages(infos);
    if (const std::optional<Failure> reason = refused(captures.size(), names, pages, limits)) return *reason;
    TemporaryOutput output(path, {.inherits = true});
    const auto cannotCreate = [&path, &output] {
        return Failure{"Cannot create file: " + utf8FromPath(path) + " for writing." +
                       explained(path, output.trouble())};
    };
    if (!output.open()) return cannotCreate();
    OutputStream stream(output, limits.fileBytes);
    OutputStream* const pStream = &stream;
    GLIMMER_ASSERT(pStream != nullptr, "pStream!=NULL", "uSaver");
    {
        wxZipOutputStream zip(stream, 9);
        bool written = putEntry(zip, versionEntry, bytesOf(currentVersion), true) &&
                       putEntry(zip, namesEntry, bytesOf(names), true) &&
                       putEntry(zip, pagesEntry, bytesOf(pages), true);
        for (size_t i = 0; written && i < captures.size(); ++i) {
            const Result<std::vector<uint8_t>> png = encode(*captures[i], i);
            if (!png) return png.failure();
            if (png->size() > limits.pictureBytes)
                return Failure{"The capture \"" + infos[i].name + "\" is too large for a project."};
            written = putEntry(zip, pictureEntry(i), *png, false);  // packed already
        }
        const bool closed = zip.Close() && written;
        if (stream.full())
            return Failure{"The project would be larger than " + std::to_string(limits.fileBytes >> 20U) +
                           " MB and could not be opened again. Please save the captures in several projects."};
        if (!closed) return cannotCreate();
    }
    if (!stream.status() || !output.commit()) return cannotCreate();
    removeAbandonedOutputs(path.parent_path());
    return {};
}

Result<std::vector<std::unique_ptr<CaptureDocument>>> readProject(const std::filesystem::path& path,
                                                                  const CaptureDecoder& decode,
                                                                  const ProjectLimits& limits) {
    const std::string name = utf8FromPath(path);
    std::error_code error;
    const uint64_t size = std::filesystem::file_size(path, error);
    if (error) return Failure{"The file " + name + " cannot be read."};
    if (size > limits.fileBytes) return Failure{"The file " + name + " is too large."};
    const Failure damaged{"The file " + name + " is damaged or is not a Glimmerpad project."};
    Archive archive;
    if (!archive.open(path, limits)) return damaged;
    const std::string version = archive.readText(versionEntry, limits.listBytes).value_or("");
    if (version.empty()) return damaged;
    if (version != currentVersion)
        return Failure{"The project " + name + " was made by a newer version of the program."};
    const std::optional<std::string> names = archive.readText(namesEntry, limits.listBytes);
    const std::optional<std::string> pages =
        archive.has(pagesEntry) ? archive.readText(pagesEntry, limits.listBytes) : std::string();
    if (!names || !pages) return damaged;
    std::optional<std::vector<CaptureInfo>> infos = projectInfos(*names, *pages);
    if (!infos || infos->empty() || infos->size() > limits.captures) return damaged;

    std::vector<std::unique_ptr<CaptureDocument>> captures;
    for (size_t i = 0; i < infos->size(); ++i) {
        const std::string entry = pictureEntry(i);
        if (archive.has(entry) && archive.size(entry) > limits.pictureBytes)
            return Failure{"The project " + name + " holds a picture that is too large."};
        std::optional<std::vector<uint8_t>> picture = archive.read(entry, limits.pictureBytes);
        if (!picture) return damaged;
        Result<std::unique_ptr<CaptureDocument>> capture = decode(*picture, std::move((*infos)[i]));
        if (!capture) return capture.failure();
        (*capture)->markSaved();
        (*capture)->park();
        captures.push_back(capture.take());
    }
    return captures;
}

}  // namespace glimmer
