#include <gtest/gtest.h>

#include <random>

#include "upload/answers/Umd5.h"
#include "upload/answers/query_signature.h"

namespace glimmer {
namespace {

TEST(Md5, GivesTheSumsOfItsDescription) {
    const struct {
        const char* text;
        const char* sum;
    } cases[] = {
        {"", "d41d8cd98f00b204e9800998ecf8427e"},
        {"a", "0cc175b9c0f1b6a831c399e269772661"},
        {"abc", "900150983cd24fb0d6963f7d28e17f72"},
        {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
        {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
        {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789", "d174ab98d277d9f5a5611c2c9f419d9f"},
        {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
         "57edf4a22be3c955ac49da2e2107b67a"},
    };
    for (const auto& c : cases) EXPECT_EQ(md5Hex(c.text), c.sum) << c.text;
    // Of every length around the ends of blocks and cut into pieces anywhere, the sum is that of the whole.
    std::mt19937 random(3);
    for (size_t length = 0; length < 200; ++length) {
        const std::string text(length, 'x');
        Md5 pieces;
        for (size_t at = 0; at < length;) {
            const std::string piece = text.substr(at, 1 + random() % 70);
            pieces.add(piece);
            at += piece.size();
        }
        Md5 whole;
        whole.add(text);
        EXPECT_EQ(pieces.digest(), whole.digest()) << length;
    }
}

TEST(QuerySignatures, AreThoseOfTheSortedParameters) {
    const QueryParameters parameters{{"method", "auth.getToken"}, {"frob", ""}, {"Api_key", "7c3e"}, {"apia", "B"}};
    EXPECT_EQ(querySignature("4f8a", parameters), md5Hex("4f8aApi_key7c3eapiaBfrobmethodauth.getToken"));
    EXPECT_EQ(querySignature("4f8a", {parameters.rbegin(), parameters.rend()}), querySignature("4f8a", parameters));
    EXPECT_EQ(signedQuery(parameters, "0a1b"), "Api_key=7c3e&apia=B&frob=&method=auth.getToken&api_sig=0a1b");
    // The whole entry is compared: "=" stands behind digits.
    EXPECT_EQ(signedQuery({{"a", "x"}, {"a1", "y"}}, ""), "a1=y&a=x&api_sig=");
}

}  // namespace
}  // namespace glimmer
