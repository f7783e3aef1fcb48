#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/result.h"

namespace glimmer {

/// A field of a request; of a file, `value` is its path and its content is what is sent.
struct HttpArgument {
    std::string name;
    std::string value;
    bool isFile = false;
};

enum class MultipartKind : uint8_t { FormData, Related };
/// "multipart/form-data" or "multipart/related".
std::string_view contentTypeOf(MultipartKind kind);

/// Ten hyphens and 40 letters: for each a number is drawn; an even one gives the upper-case letter, an odd one the
/// lower-case letter, of its remainder by 26.
std::string makeBoundary(const std::function<uint32_t()>& random);
/// The same with numbers that nobody can foretell.
std::string makeBoundary();

/// The body of a multipart request, in one buffer of the computed size. In a related body the name of a plain
/// argument is the content type of its part.
class MultipartBody {
public:
    /// The largest body, bytes: what a 32-bit process can hold beside its pictures.
    static constexpr uint64_t sizeLimit = uint64_t{512} << 20U;

    /// Looks at names and sizes. Fails with a sentence for a name that breaks lines, a body beyond the limit, and with
    /// "Error reading file ..." for a file that is not there.
    static Result<MultipartBody> plan(std::span<const HttpArgument> arguments, MultipartKind kind,
                                      const std::string& boundary);

    [[nodiscard]] uint64_t size() const { return size_; }
    /// Reads the files. `goOn` is asked between pieces; its false ends the work with a Failure. One too for want of
    /// memory, and for a file that cannot be read or has another length now.
    [[nodiscard]] Result<std::vector<uint8_t>> write(const std::function<bool()>& goOn = {}) const;

private:
    struct Part {
        std::string head;
        std::string text;  ///< the value, or the path of the file
        uint64_t size = 0;
        bool isFile = false;
    };
    std::vector<Part> parts_;
    std::string end_;
    uint64_t size_ = 0;
};

/// The failure of a file argument that cannot be read: "Error reading file " and its path.
Failure unreadableFile(const std::string& path);

/// Names and values in order, as "name=value" joined by "&"; bytes other than letters, digits and "-._~" as a percent
/// sign and two digits, so that a value arrives as it was given.
std::string urlEncodedBody(std::span<const HttpArgument> arguments);

}  // namespace glimmer
