#include "host/commands/json_payload.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <random>
#include <string>
#include <vector>

namespace glimmer {
namespace {

std::vector<uint8_t> packed(const std::string& text) {
    uLongf length = compressBound(static_cast<uLong>(text.size()));
    std::vector<uint8_t> out(length);
    compress(out.data(), &length, reinterpret_cast<const Bytef*>(text.data()), static_cast<uLong>(text.size()));
    out.resize(length);
    return out;
}

TEST(CapturePayloads, AreReadWithTheirDefaults) {
    const auto full =
        readCapturePayload(R"({"url":"http://a/","title":"T","action":110,"width":640,"height":480,"image":"AQID"})");
    ASSERT_TRUE(full);
    EXPECT_EQ(full->url, "http://a/");
    EXPECT_EQ(full->title, "T");
    EXPECT_EQ(full->action, 110);
    EXPECT_EQ(full->width, 640);
    EXPECT_EQ(full->height, 480);
    EXPECT_EQ(full->image, (std::vector<uint8_t>{1, 2, 3}));
    const auto empty = readCapturePayload(" {} \n");
    ASSERT_TRUE(empty);
    EXPECT_TRUE(empty->image.empty());
    for (const char* bad : {"", "null", "[]", "\"x\"", "{", "{}x", "{\"image\":\"*\"}", "{\"image\":5}",
                            "{\"image\":\"\"}", "{\"url\":}", "\xFF\xFE{}"}) {
        EXPECT_FALSE(readCapturePayload(bad)) << bad;
    }
}

TEST(CapturePayloads, DeepAndLongTextsAreRefused) {
    const auto nested = [](int depth) {
        return "{\"a\":" + std::string(static_cast<size_t>(depth - 1), '[') +
               std::string(static_cast<size_t>(depth - 1), ']') + "}";
    };
    EXPECT_TRUE(readCapturePayload(nested(32)));
    EXPECT_FALSE(readCapturePayload(nested(33)));
    EXPECT_FALSE(readCapturePayload(std::string(1000000, '[')));
    EXPECT_TRUE(readCapturePayload("{\"url\":\"" + std::string(100, '[') + "\\\"{{\"}")) << "brackets in texts";
    EXPECT_FALSE(readCapturePayload("{\"url\":\"" + std::string(64U << 20U, 'x') + "\"}"));
}

TEST(ZlibPayloads, AreUnpackedWithinTheLimit) {
    const std::string text(3000000, 'x');
    EXPECT_EQ(unpackZlib(packed(text), text.size()), text);
    EXPECT_FALSE(unpackZlib(packed(text), text.size() - 1));
    EXPECT_EQ(unpackZlib(packed(""), 10), "");
    EXPECT_FALSE(unpackZlib({}, 10));
    std::vector<uint8_t> cut = packed(text);
    cut.pop_back();
    EXPECT_FALSE(unpackZlib(cut, text.size()));
    std::mt19937 random(1);
    const std::vector<uint8_t> good = packed("{\"url\":\"http://example.com/\",\"image\":\"AQIDBAUGBwg=\"}");
    for (int i = 0; i < 1000; ++i) {
        std::vector<uint8_t> flipped = good;
        flipped[random() % flipped.size()] ^= static_cast<uint8_t>(1U << random() % 8);
        // The checksum at the end of the stream finds every single flip that is not in the header's free bits.
        const auto unpacked = unpackZlib(flipped, 100000);
        if (unpacked) {
            EXPECT_EQ(*unpacked, *unpackZlib(good, 100000));
        }
    }
}

}  // namespace
}  // namespace glimmer
