#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/bitmap.h"
#include "imaging/png_codec.h"

namespace glimmer {

/// One page: an image that fills it.
struct PdfPage {
    std::string head;            ///< the image object up to "stream"
    std::vector<uint8_t> image;  ///< the compressed image
    std::string tail;            ///< from "endstream" to the end of the page's last object
    int32_t imageWidth = 0;
    int32_t imageHeight = 0;
};

/// A document under construction; a pixel of a page is a point.
struct PdfDoc {
    static constexpr size_t maxPages = 256;
    static constexpr size_t objectsPerPage = 5;
    /// Free head, page tree and catalog beside the pages' objects.
    static constexpr size_t maxObjects = maxPages * objectsPerPage + 3;
    /// One entry line of the cross-reference table and its terminator.
    using XrefEntry = std::array<char, 21>;

    std::vector<PdfPage> pages;
    std::string header;
    std::string trailer;
    std::array<XrefEntry, maxObjects> xref{};
    int32_t pageWidth = 0;
    int32_t pageHeight = 0;
    int32_t nextObject = 2;  ///< 0 is the head of the free list, 1 the page tree, which comes last
    int32_t nextImage = 0;   ///< names the images /I0, /I1, ...
    uint64_t offset = 0;     ///< length of everything before the next text in the file
};

/// A document without pages; null when there is no memory.
std::unique_ptr<PdfDoc> CreatePdf(int32_t pageWidth, int32_t pageHeight);

/// Appends a page that shows the image over its whole area. `data` is compressed as `filter` says ("FlateDecode";
/// empty for none), 8 bits for each of three colours or one grey. 1 when the page was added; 0 without memory, when
/// there are 256 pages already (said to the debug channel only) and when the file would pass 2 GiB.
int AddImage(PdfDoc& document, int32_t imageWidth, int32_t imageHeight, std::vector<uint8_t> data, bool colour,
             std::string_view filter);

/// Writes catalog, page tree, cross-reference table and trailer; the file's length, or 0 when it cannot be right.
size_t FinishPdf(PdfDoc& document);

/// Hands the file to `output` piece by piece and frees the document. Always 1: a failing output is the caller's.
int WritePdf(std::unique_ptr<PdfDoc> document, const ByteSink& output);

/// Writes a picture as a document of one page, on white where it is transparent. Nothing is written when it cannot
/// be compressed. Fails with the output's own reason, and when `progress` stops it.
Status SaveBitmapAsPdf(const ByteSink& output, const TBitmap& bitmap, const Progress& progress = {});

}  // namespace glimmer
