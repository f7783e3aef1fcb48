// The entries of a project's archive, as they come out of it. The input: for each entry a byte that says which it is,
// three for its length, its bytes.

#include <algorithm>
#include <map>

#include "common/assertion.h"
#include "fuzz/fuzz.h"
#include "fuzz/painted.h"
#include "output/files/project_lists.h"
#include "output/files/project_reader.h"

namespace {

using namespace glimmer;

class Entries final : public ProjectEntries {
public:
    explicit Entries(std::span<const uint8_t> input) {
        while (input.size() >= 4) {
            const size_t length =
                std::min(input.size() - 4, input[1] | size_t{input[2]} << 8U | size_t{input[3]} << 16U);
            const std::span<const uint8_t> bytes = input.subspan(4, length);
            entries_[nameOf(input[0])].assign(bytes.begin(), bytes.end());
            input = input.subspan(4 + length);
        }
    }
    [[nodiscard]] std::optional<uint64_t> size(const std::string& name) const override {
        const auto entry = entries_.find(name);
        return entry == entries_.end() ? std::nullopt : std::optional<uint64_t>(entry->second.size());
    }
    std::optional<std::vector<uint8_t>> read(const std::string& name, uint64_t limit) override {
        if (size(name).value_or(limit + 1) > limit) return std::nullopt;
        return entries_.at(name);
    }

private:
    static std::string nameOf(uint8_t which) {
        if (which == 0) return projectVersionEntry;
        if (which == 1) return projectNamesEntry;
        return which == 2 ? projectPagesEntry : projectPictureEntry(which - 3U);
    }
    std::map<std::string, std::vector<uint8_t>> entries_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Entries entries({data, size});
    bool lacksData = false;
    const CaptureDecoder decode = [&lacksData](std::span<const uint8_t> png, CaptureInfo info) {
        return editableCapture(png, std::move(info), lacksData);
    };
    ProjectLimits limits;
    limits.captures = 8;
    limits.listBytes = size_t{1} << 16U;
    const auto captures = readProjectEntries(entries, "x.gmp", decode, limits);
    FUZZ_CHECK(captures.ok() ? !captures->empty() && captures->size() <= limits.captures : !captures.message().empty());
    if (!captures) return 0;
    std::vector<CaptureInfo> infos;
    for (const auto& capture : *captures) {
        FUZZ_CHECK(!capture->modified() && capture->size().width > 0);
        paintForFuzzer(capture->annotations());
        infos.push_back(capture->info());
        infos.back().notes.clear();  // of the picture
    }
    FUZZ_CHECK(projectInfos(projectNames(infos), projectPages(infos)) == infos);
    return 0;
}
