#include "upload/answers/json_answer.h"

#include <gtest/gtest.h>

namespace glimmer {
namespace {

Answer read(std::string_view text) {
    Result<Answer> answer = readJsonAnswer(text);
    EXPECT_TRUE(answer) << text << ": " << answer.message();
    return answer ? answer.take() : Answer();
}

TEST(JsonAnswers, AreReadByPathAndByName) {
    const Answer answer = read(R"({
        "from": {"id": "7", "name": "A\u00e9"}, "id": 10150146071791, "ok": true, "gone": null, "share": 0.25,
        "data": {"link": "http://a/?x=1&y", "a.b": "dotted", "": "nameless"},
        "files": [{"url": "u0"}, {"url": "u1", "size": [1, 2e3]}], "error": {"type": "T", "code": 190, "more": {}}})");
    const struct {
        const char* wanted;
        const char* text;
    } cases[] = {
        {"id", "10150146071791"},  // the outer one, although another one of that name comes first
        {"from.id", "7"},
        {"name", "A\xC3\xA9"},
        {"ok", "true"},
        {"share", "0.25"},
        {"data.link", "http://a/?x=1&y"},
        {"link", "http://a/?x=1&y"},
        {"a.b", "dotted"},
        {"files[1].url", "u1"},
        {"url", "u0"},
        {"files[1].size[1]", "2000"},
        {"gone", ""},
        {"data", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(answer.text(c.wanted), c.text) << c.wanted;
    for (const char* none : {"", "ID", "files[2].url", "files[].url", "data.link.x", ".id", "data."})
        EXPECT_FALSE(answer.text(none) && answer.text(none) != "nameless") << none;
    EXPECT_EQ(answer.attribute("error", "type"), "T");
    EXPECT_EQ(answer.attribute("error", "code"), "190");
    EXPECT_FALSE(answer.attribute("error", "more"));
    EXPECT_EQ(answer.first("files", "url", "u1")->path, "files[1]");
    EXPECT_EQ(read("[[\"x\"],5]").text("[0][0]"), "x");
    EXPECT_EQ(read("\"x\"").elements[0].text, "x");
}

TEST(JsonAnswers, HaveBounds) {
    for (const char* bad : {"", "{", "{\"a\":}", "[1,]", "{} {}", "\xFF", "nul", "{\"a\":\"b}"})
        EXPECT_FALSE(readJsonAnswer(bad)) << bad;
    const auto nested = [](size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
    EXPECT_TRUE(readJsonAnswer(nested(64)));
    EXPECT_FALSE(readJsonAnswer(nested(65)));
    EXPECT_FALSE(readJsonAnswer(nested(4000000)));
    const auto many = [](size_t count) {
        std::string text = "[0";
        while (--count > 0) text += ",0";
        return text + "]";
    };
    EXPECT_EQ(read(many(49998)).elements.size(), 49999U);
    EXPECT_FALSE(readJsonAnswer(many(50000)));
    std::string text(8388608, 'x');
    text.front() = text.back() = '"';
    EXPECT_TRUE(readJsonAnswer(text));
    EXPECT_FALSE(readJsonAnswer(text + " "));
    // A long name is part of the path of all that it holds, which would be gigabytes here.
    const std::string name = "{\"" + std::string(1000000, 'n') + "\":";
    EXPECT_TRUE(readJsonAnswer(name + many(2) + "}"));
    EXPECT_FALSE(readJsonAnswer(name + many(40000) + "}"));
}

}  // namespace
}  // namespace glimmer
