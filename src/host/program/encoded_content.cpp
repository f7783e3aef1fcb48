#include "host/program/encoded_content.h"

#include <algorithm>

#include "common/text.h"
#include "editor/document/document.h"
#include "output/uSaver.h"

namespace glimmer {

Status EncodedContent::encode(TSaver& saver, const CaptureDocument& document, Form form) {
    Result<std::vector<uint8_t>> png = saver.encode(document, PictureFormat::Png);
    if (!png) return png.failure();
    document_ = &document;
    revision_ = document.revision();
    if (form == Form::Text) {
        text_ = base64Encode(*png);
    } else {
        image_ = png.take();
    }
    return {};
}

Status EncodedContent::encodeAgain(TSaver& saver, std::span<CaptureDocument* const> open) {
    if (document_ == nullptr || std::find(open.begin(), open.end(), document_) == open.end()) return {};
    if (document_->revision() == revision_) return {};
    return encode(saver, *document_, text_.empty() ? Form::Image : Form::Text);
}

}  // namespace glimmer
