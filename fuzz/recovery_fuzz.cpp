// What an earlier run left in the recovery folder: the list of a capture's files, and bands of packed pixels.
// The input: two bytes, the length of the list without its checksum; the list; one band, which serves as each of them.

#include <algorithm>
#include <string_view>

#include "common/assertion.h"
#include "common/bytes.h"
#include "common/files.h"
#include "editor/document/packed_pixels.h"
#include "editor/recovery/recovery_manifest.h"
#include "editor/recovery/recovery_store.h"
#include "fuzz/fuzz.h"
#include "fuzz/painted.h"
#include "support/scratch_folder.h"

namespace {

using namespace glimmer;

void checkBand(std::span<const uint8_t> band) {
    TBitmap picture = TBitmap::create(7, 5, PixelFormat::Bgra32).take();
    if (!inflatePixels(band, picture, 1, 5)) return;
    TBitmap again = TBitmap::create(7, 5, PixelFormat::Bgra32).take();
    FUZZ_CHECK(inflatePixels(deflatePixels(picture, 1, 5), again, 1, 5).ok());
    FUZZ_CHECK(samePixels(picture, again));
}

/// Opens the capture with that band as every band. False where its pictures are too large for many rounds.
void open(RecoveryManifest manifest, std::span<const uint8_t> band) {
    static const test::ScratchFolder folder("recovery fuzz");
    int64_t pixels = 0;
    const auto substitute = [&](StoredPicture& picture) {
        pixels += int64_t{picture.size.width} * picture.size.height;
        for (StoredPicture::Band& one : picture.bands) one = {1, static_cast<uint32_t>(band.size()), checksumOf(band)};
    };
    substitute(manifest.background);
    for (StoredPicture& drawing : manifest.drawings) substitute(drawing);
    constexpr int64_t fewPixels = 65536;
    if (pixels > fewPixels) return;
    FUZZ_CHECK(writeFile(folder.path() / "1.band", band, {.flush = false}).ok());
    FUZZ_CHECK(writeFile(folder.path() / "capture.manifest", encodeManifest(manifest), {.flush = false}).ok());
    try {
        const auto capture = RecoveryStore::open({folder.path(), {}, {}});
        FUZZ_CHECK(capture.ok() || !capture.message().empty());
        if (capture) paintForFuzzer((*capture)->annotations());
    } catch (const AssertionFailure& failure) {
        FUZZ_CHECK(failure.condition == std::string_view("pSL->Count == 3"));  // the answer to other than three strings
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) return 0;
    const std::span<const uint8_t> input(data + 2, size - 2);
    const size_t length = std::min(input.size(), data[0] | size_t{data[1]} << 8U);
    const std::span<const uint8_t> band = input.subspan(length);
    checkBand(band);
    ByteWriter list;
    list.bytes(input.first(length));
    list.u32(checksumOf(input.first(length)));
    static_cast<void>(isUnknownVersion(list.data()));
    const std::optional<RecoveryManifest> manifest = decodeManifest(list.data());
    if (!manifest) return 0;
    FUZZ_CHECK(encodeManifest(*manifest) == list.data());
    open(*manifest, band);
    return 0;
}
