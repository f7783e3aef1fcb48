#include "upload/http/request_body.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <new>
#include <random>
#include <system_error>

#include "common/files.h"
#include "upload/http/request_fields.h"
#include "upload/http/url.h"

namespace glimmer {

namespace {

constexpr size_t boundaryLetters = 40;
constexpr size_t pieceSize = size_t{1} << 20U;  // between two questions whether to go on: some milliseconds

std::string disposition(const HttpArgument& argument) {
    return "Content-Disposition: form-data; name=\"" + quotedName(argument.name) + "\"";
}

/// The lines of a part ahead of its content, after the boundary.
std::string headOf(const HttpArgument& argument, MultipartKind kind) {
    const std::string file = argument.isFile ? utf8FromPath(pathFromUtf8(argument.value).filename()) : "";
    const std::string type = "Content-Type: " + std::string(mimeType(file));
    if (kind == MultipartKind::Related)
        return argument.isFile ? type : "Content-Type: " + argument.name + "; charset=utf-8";
    if (!argument.isFile) return disposition(argument);
    return disposition(argument) + "; filename=\"" + quotedName(file) + "\"\r\n" + type;
}

/// Reads exactly `to.size()` bytes, and that must be all of the file.
Status readWhole(const std::string& path, std::span<uint8_t> to, const std::function<bool()>& goOn) {
    std::ifstream file(pathFromUtf8(path), std::ios::binary);
    while (!to.empty() && file) {
        if (goOn && !goOn()) return Failure{"The operation was cancelled."};
        const size_t piece = std::min(to.size(), pieceSize);
        file.read(reinterpret_cast<char*>(to.data()), static_cast<std::streamsize>(piece));
        to = to.subspan(static_cast<size_t>(file.gcount()));
    }
    if (!to.empty() || !file || file.peek() != std::ifstream::traits_type::eof()) return unreadableFile(path);
    return {};
}

}  // namespace

std::string_view contentTypeOf(MultipartKind kind) {
    return kind == MultipartKind::FormData ? "multipart/form-data" : "multipart/related";
}

std::string makeBoundary(const std::function<uint32_t()>& random) {
    std::string boundary(10, '-');
    for (size_t i = 0; i < boundaryLetters; ++i) {
        const uint32_t number = random();
        boundary += static_cast<char>((number % 2 == 0 ? 'A' : 'a') + static_cast<int>(number % 26));
    }
    return boundary;
}

std::string makeBoundary() {
    std::random_device device;
    return makeBoundary([&device] { return static_cast<uint32_t>(device()); });
}

Failure unreadableFile(const std::string& path) { return Failure{"Error reading file " + path}; }

Result<MultipartBody> MultipartBody::plan(std::span<const HttpArgument> arguments, MultipartKind kind,
                                          const std::string& boundary) {
    MultipartBody body;
    body.end_ = "--" + boundary + "--\r\n";
    body.size_ = body.end_.size();
    for (const HttpArgument& argument : arguments) {
        if (Status name = checkFieldName(argument.name); !name) return name.failure();
        Part part{"", argument.value, argument.value.size(), argument.isFile};
        if (argument.isFile) {
            if (Status name = checkFieldName(argument.value); !name) return name.failure();
            std::error_code error;
            part.size = std::filesystem::file_size(pathFromUtf8(argument.value), error);
            if (error) return unreadableFile(argument.value);
        }
        part.head = "--" + boundary + "\r\n" + headOf(argument, kind) + "\r\n\r\n";
        if (part.size > sizeLimit || part.head.size() + part.size + 2 > sizeLimit - body.size_)
            return Failure{"The files are too large to be sent in one request: more than 512 MiB."};
        body.size_ += part.head.size() + part.size + 2;
        body.parts_.push_back(std::move(part));
    }
    return body;
}

Result<std::vector<uint8_t>> MultipartBody::write(const std::function<bool()>& goOn) const {
    std::vector<uint8_t> buffer;
    try {
        buffer.resize(static_cast<size_t>(size_));
    } catch (const std::bad_alloc&) {
        return Failure{"There is not enough memory for the files that are to be sent."};
    }
    std::span<uint8_t> rest(buffer);
    const auto put = [&rest](std::string_view text) {
        std::copy(text.begin(), text.end(), rest.begin());
        rest = rest.subspan(text.size());
    };
    for (const Part& part : parts_) {
        put(part.head);
        if (part.isFile) {
            if (Status read = readWhole(part.text, rest.first(static_cast<size_t>(part.size)), goOn); !read)
                return read.failure();
            rest = rest.subspan(static_cast<size_t>(part.size));
        } else {
            put(part.text);
        }
        put("\r\n");
    }
    put(end_);
    return buffer;
}

std::string urlEncodedBody(std::span<const HttpArgument> arguments) {
    std::string body;
    for (const HttpArgument& argument : arguments) {
        if (!body.empty()) body += '&';
        body += percentEncoded(argument.name) + '=' + percentEncoded(argument.value);
    }
    return body;
}

}  // namespace glimmer
