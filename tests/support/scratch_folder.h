#pragma once

#include <filesystem>
#include <random>
#include <string>

#include "support/not_copied.h"

namespace glimmer::test {

/// An empty folder for one test, removed with everything in it afterwards. Its name has a number of its own, so that
/// checkouts that are tested at the same time do not meet.
class ScratchFolder : NotCopied {
public:
    explicit ScratchFolder(const std::string& name)
        : path_(std::filesystem::temp_directory_path() /
                ("glimmer " + name + " " + std::to_string(std::random_device{}()))) {
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] size_t entries() const {
        return static_cast<size_t>(
            std::distance(std::filesystem::directory_iterator(path_), std::filesystem::directory_iterator()));
    }

private:
    std::filesystem::path path_;
};

}  // namespace glimmer::test
