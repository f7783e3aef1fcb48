#include "output/files/project_file.h"

#include <wx/log.h>
#include <wx/wfstream.h>
#include <wx/zipstrm.h>

#include <algorithm>
#include <map>
#include <system_error>

#include "common/assertion.h"
#include "common/files.h"
#include "output/files/project_lists.h"

namespace glimmer {

namespace {

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

/// A zip file of which one entry at a time is unpacked: all of them together need not fit into memory.
class Archive final : public ProjectEntries {
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
    [[nodiscard]] std::optional<uint64_t> size(const std::string& name) const override {
        const auto entry = entries_.find(name);
        return entry == entries_.end() ? std::nullopt : std::optional(static_cast<uint64_t>(entry->second->GetSize()));
    }
    std::optional<std::vector<uint8_t>> read(const std::string& name, uint64_t limit) override {
        const std::optional<uint64_t> listed = size(name);
        if (!listed || *listed > limit || !zip_->OpenEntry(*entries_.at(name))) return std::nullopt;
        std::vector<uint8_t> data;
        data.reserve(static_cast<size_t>(*listed));
        std::vector<uint8_t> piece(size_t{64} * 1024);
        while (true) {
            const size_t got = zip_->Read(piece.data(), piece.size()).LastRead();
            if (data.size() + got > *listed) return std::nullopt;
            data.insert(data.end(), piece.begin(), piece.begin() + static_cast<ptrdiff_t>(got));
            if (zip_->Eof()) break;  // the checksum was right
            if (got == 0 || !zip_->IsOk()) return std::nullopt;
        }
        return data.size() == *listed ? std::optional(std::move(data)) : std::nullopt;
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
        bool written = putEntry(zip, projectVersionEntry, bytesOf(projectVersion), true) &&
                       putEntry(zip, projectNamesEntry, bytesOf(names), true) &&
                       putEntry(zip, projectPagesEntry, bytesOf(pages), true);
        for (size_t i = 0; written && i < captures.size(); ++i) {
            const Result<std::vector<uint8_t>> png = encode(*captures[i], i);
            if (!png) return png.failure();
            if (png->size() > limits.pictureBytes)
                return Failure{"The capture \"" + infos[i].name + "\" is too large for a project."};
            written = putEntry(zip, projectPictureEntry(i), *png, false);  // packed already
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
    Archive archive;
    if (!archive.open(path, limits)) return Failure{damagedProject(name)};
    return readProjectEntries(archive, name, decode, limits);
}

}  // namespace glimmer
