#include "output/files/encode_capture.h"

#include "output/files/editable_png.h"
#include "output/files/pdf_writer.h"
#include "output/picture/output_picture.h"

namespace glimmer {

Result<std::vector<uint8_t>> encodeCapture(const CaptureDocument& document, const CaptureFormat& format,
                                           TextPainter& text, const Progress& progress) {
    const Result<TBitmap> picture = outputPicture(document, text);
    if (!picture) return picture.failure();
    if (format.format == PictureFormat::Png) {
        const EditableParts parts{document.background(), document.annotations(), document.background().bounds(),
                                  document.info().notes};
        return encodeEditablePng(*picture, parts, format.editable, progress);
    }
    if (format.format != PictureFormat::Pdf)
        return encodePicture(*picture, format.format, {format.jpegQuality, {}, progress});
    std::vector<uint8_t> file;
    const ByteSink append = [&file](std::span<const uint8_t> data) {
        file.insert(file.end(), data.begin(), data.end());
        return Status();
    };
    if (Status written = SaveBitmapAsPdf(append, *picture, progress); !written) return written.failure();
    return file;
}

}  // namespace glimmer
