#include "output/files/whole_file.h"

#include "common/files.h"

namespace glimmer {

Result<std::filesystem::path> writeWholeFile(const std::filesystem::path& path,
                                             const std::function<Result<std::vector<uint8_t>>()>& encode,
                                             const Progress& progress,
                                             const std::function<std::filesystem::path()>& otherName) {
    TemporaryOutput output(path, {.overwrite = !otherName, .inherits = true});
    const auto cannotCreate = [&output] {
        return Failure{"Cannot create file: " + utf8FromPath(output.target()) + " for writing" +
                       explained(output.target(), output.trouble())};
    };
    if (!output.open()) return cannotCreate();
    const Result<std::vector<uint8_t>> data = encode();
    if (!data) return data.failure();
    if (progress && !progress(1)) return cancelled();
    if (!output.write(*data)) return cannotCreate();
    while (!output.commit()) {
        const std::filesystem::path other =
            otherName && output.trouble() == FileTrouble::Exists ? otherName() : std::filesystem::path();
        if (other.empty() || other == output.target()) return cannotCreate();
        output.rename(utf8FromPath(other.filename()));
    }
    return output.target();
}

}  // namespace glimmer
