#include "upload/answers/pattern.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "upload/answers/pattern_threads.h"

namespace glimmer {
namespace {

/// The whole match and the groups in brackets; "none", or what the compiler says.
std::string found(const std::string& pattern, std::string_view text) {
    const Result<Pattern> compiled = Pattern::compile(pattern);
    if (!compiled) return compiled.message();
    const std::optional<PatternMatch> match = compiled->search(text);
    if (!match) return "none";
    std::string answer(match->whole);
    for (const auto& group : match->groups) answer.append("(").append(group ? *group : "none").append(")");
    return answer;
}

TEST(Patterns, SayWhatIsWrongWithThem) {
    const struct {
        std::string pattern;
        const char* message;
    } cases[] = {
        {"a\\l", "letter expected"},
        {"\\u1", "letter expected"},
        {"[]", "empty class"},
        {"[^]a]", "empty class"},
        {"[b-a]", "invalid range"},
        {"[\\d-z]", "invalid range"},
        {"[a-\\d]", "invalid range"},
        {"a{3,2}", "invalid range"},
        {"a{", "number expected"},
        {"a{,3}", "number expected"},
        {"a{2,x}", "number expected"},
        {"a{2", "} expected"},
        {"a{1001}", "number too large"},
        {"a{99999999999}", "number too large"},
        {"[a", "] expected"},
        {"[a-", "] expected"},
        {"(a", ") expected"},
        {"a)", "unmatched )"},
        {"*a", "nothing to repeat"},
        {"a|?", "nothing to repeat"},
        {"a*?", "nothing to repeat"},
        {"^*", "nothing to repeat"},
        {"\\b+", "nothing to repeat"},
        {"a\\", "character expected"},
        {"\\y", "unknown escape"},
        {"[\\b]", "unknown escape"},
        {"[\xC3\xA9]", "ASCII character expected"},
        {"(((a{100}){100}){100}){1000}", "pattern too large"},
        {std::string(10001, 'a'), "pattern too large"},
        {std::string(101, '(') + std::string(101, ')'), "too many groups"},
    };
    for (const auto& c : cases) EXPECT_EQ(found(c.pattern, ""), c.message) << c.pattern;
}

// What the comparison with another engine cannot show, since there it is different or has another name.
TEST(Patterns, KnowTheElementsThatOthersDoNot) {
    const struct {
        const char* pattern;
        std::string text;
        const char* found;
    } cases[] = {
        {"\\w+", "_ab_", "ab"},                                   // an underscore is no letter
        {"a\\b", "a_", "a"},                                      // and ends a word
        {"[\\lX\\u\x79]+", "yxYz", "xY"},                         // \l and \u in a class
        {"\\x+", "xyzBEEf0g", "BEEf0"},                           // hexadecimal digits, not a number
        {"[]-]", "-", "empty class"},                             // "]" does not stand for itself at the first place
        {"a.b", "a\nb", "a\nb"},                                  // "." is a line end, too
        {"a$", "a\n", "none"},                                    // and "$" only the end
        {"a]}", "a]}", "a]}"},                                    // what opens nothing stands for itself
        {"\xC3\xA9{2}", "\xC3\xA9\xC3\xA9", "\xC3\xA9\xC3\xA9"},  // a character of two bytes is repeated whole
        {"^(.)", "\xC3\xA9", "\xC3(\xC3)"},                       // and is two for "."
        {"[^a]\\A\\P", "\xE2\x82\xAC", "\xE2\x82\xAC"},
        {"()", "", "()"},
        {"(a)|(b)", "b", "b(none)(b)"},
        {"\"link\":\"([^\"]*)\"", R"({"id":1,"link":"http://a/b"})", "\"link\":\"http://a/b\"(http://a/b)"},
    };
    for (const auto& c : cases) EXPECT_EQ(found(c.pattern, c.text), c.found) << c.pattern;
    EXPECT_EQ(found("a(.*)b", std::string("a\0\xFF", 3) + "b"),
              std::string("a\0\xFF", 3) + "b(" + std::string("\0\xFF", 2) + ")");
}

/// A pattern whose automaton has 2^16 states, so that it gives up, and a text that makes it need them.
TEST(Patterns, FindTheSameWhenTheAutomatonGivesUp) {
    std::mt19937 random(5);
    std::string text;
    for (int i = 0; i < 60000; ++i) text.push_back("ab"[random() % 2]);
    const std::string pattern = "\\B(a|b)*a((a|b){15})c";
    const std::string end = "a" + std::string(15, 'b') + "c";
    EXPECT_EQ(found(pattern, text), "none");
    // The group takes last what stands before the sixteenth byte from the end; a blank keeps the match from the text's
    // start.
    EXPECT_EQ(found(pattern, text + " aa" + end + "c"), "a" + end + "(a)(" + std::string(15, 'b') + ")(b)");
}

/// Where another engine doubles its time with each byte: all must be read, and nothing found.
TEST(Patterns, TakeALongTextHoweverTheyLoop) {
    const std::string text(300000, 'a');
    for (const char* pattern :
         {"(a*)*b", "((a+)+)+b", "(a|a)*b", "(a|aa)+$b", "(.*)(.*)(.*)(.*)(.*)[^a]", "((((a*)*)*)*)*b"})
        EXPECT_EQ(found(pattern, text), "none") << pattern;
    EXPECT_EQ(found("(a*)*", text), text + "()");
}

}  // namespace
}  // namespace glimmer
