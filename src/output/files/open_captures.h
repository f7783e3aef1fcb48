#pragma once

#include <filesystem>
#include <future>
#include <memory>
#include <optional>
#include <vector>

#include "editor/document/document.h"

namespace glimmer {

/// The captures in a file: those of a project (extension ".gmp"), or the picture in any other. A PNG that carries its
/// annotations opens with them; for one that does not, in a project too, `lacksData` is set. Fails with a sentence, and
/// then opens none.
Result<std::vector<std::unique_ptr<CaptureDocument>>> openCaptures(const std::filesystem::path& path,
                                                                   bool* lacksData = nullptr);

/// Reads a file in a thread of its own while the caller has other things to do: the next openCaptures() of the same
/// path takes what was read. One at a time; made, used and destroyed by the same thread. Where there can be no thread,
/// it does nothing. Its end waits for the thread.
class OpeningAhead {
public:
    explicit OpeningAhead(std::filesystem::path path);
    ~OpeningAhead();
    OpeningAhead(const OpeningAhead&) = delete;
    OpeningAhead& operator=(const OpeningAhead&) = delete;
    OpeningAhead(OpeningAhead&&) = delete;
    OpeningAhead& operator=(OpeningAhead&&) = delete;

    struct Opened {
        Result<std::vector<std::unique_ptr<CaptureDocument>>> captures;
        bool lacksData = false;
    };
    /// What was read, once, when it is this file.
    static std::optional<Opened> take(const std::filesystem::path& path);

private:
    std::filesystem::path path_;
    std::future<Opened> opened_;
};

}  // namespace glimmer
