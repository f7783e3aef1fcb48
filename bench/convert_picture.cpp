// bench_convert IN OUT: reads a picture file and writes it in the format that OUT's extension names: what the product
// does between "Open" and "Save", as a program of its own beside others that do the same. Like theirs, its files are
// not flushed to the disk.

#include <cstdio>
#include <fstream>

#include "common/files.h"
#include "imaging/picture_file.h"
#include "output/files/pdf_writer.h"

namespace {

using namespace glimmer;

Status convert(const std::filesystem::path& from, const std::filesystem::path& to) {
    const std::optional<PictureFormat> format = formatOfName(utf8FromPath(to));
    if (!format) return Failure{"The name of the second file ends in no known extension."};
    const Result<std::vector<uint8_t>> file = readFile(from, PngLimits::fileBytes);
    if (!file) return file.failure();
    const Result<TBitmap> bitmap = readPicture(*file);
    if (!bitmap) return bitmap.failure();
    std::ofstream output(to, std::ios::binary);
    const ByteSink sink = [&output](std::span<const uint8_t> data) {
        output.write(reinterpret_cast<const char*>(data.data()), static_cast<std::streamsize>(data.size()));
        return output ? Status() : Status(Failure{"The second file cannot be written."});
    };
    if (*format == PictureFormat::Pdf) return SaveBitmapAsPdf(sink, *bitmap);
    if (*format == PictureFormat::Png) return writePng(*bitmap, {}, sink);
    const Result<std::vector<uint8_t>> encoded = encodePicture(*bitmap, *format);
    return encoded ? sink(*encoded) : Status(encoded.failure());
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::fprintf(stderr, "usage: bench_convert IN OUT\n");
        return 2;
    }
    const Status done = convert(pathFromUtf8(arguments[1]), pathFromUtf8(arguments[2]));
    if (done) return 0;
    std::fprintf(stderr, "%s\n", done.message().c_str());
    return 1;
}
