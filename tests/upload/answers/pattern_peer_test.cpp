#define PCRE2_CODE_UNIT_WIDTH 8
#include <gtest/gtest.h>
#include <pcre2.h>

#include <cstdlib>
#include <memory>
#include <random>
#include <string>

#include "upload/answers/pattern.h"

namespace glimmer {
namespace {

/// A pattern in our language and the same one in the peer's.
struct Twin {
    std::string ours;
    std::string peers;
    Twin& operator+=(const Twin& other) {
        ours += other.ours;
        peers += other.peers;
        return *this;
    }
};

/// Patterns of all elements of the language, and texts over few letters, so that both often meet.
class Maker {
public:
    explicit Maker(uint32_t seed) : random_(seed) {}

    Twin pattern() { return choice(3); }
    std::string text() {
        std::string text;
        for (int left = below(24); left > 0; --left) text.push_back(one("aaabbcAB01 .-\n\t"));
        return text;
    }

private:
    int below(int limit) { return static_cast<int>(random_() % static_cast<uint32_t>(limit)); }
    char one(std::string_view of) { return of[static_cast<size_t>(below(static_cast<int>(of.size())))]; }

    Twin choice(int depth) {
        Twin twin = sequence(depth);
        for (int more = below(6) / 4; more > 0; --more) (twin += {"|", "|"}) += sequence(depth);
        return twin;
    }
    Twin sequence(int depth) {
        Twin twin;
        for (int left = below(4); left > 0; --left) twin += item(depth);
        return twin;
    }
    Twin item(int depth) {
        if (below(12) == 0) {
            const std::string assertion[] = {"^", "$", "\\b", "\\B"};
            const std::string& chosen = assertion[below(4)];
            return {chosen, chosen};
        }
        Twin twin = atom(depth);
        const int least = below(3);
        const int most = least + below(3);
        const std::string quantifiers[] = {"*",
                                           "+",
                                           "?",
                                           "{" + std::to_string(least) + "}",
                                           "{" + std::to_string(least) + ",}",
                                           "{" + std::to_string(least) + "," + std::to_string(most) + "}"};
        if (below(2) == 0) {
            const std::string& chosen = quantifiers[below(6)];
            twin += {chosen, chosen};
        }
        return twin;
    }
    Twin atom(int depth) {
        const int kind = below(10);
        if (kind < 3 && depth > 0) return ((Twin{"(", "("} += choice(depth - 1)) += {")", ")"});
        if (kind == 3) return {".", "."};
        if (kind == 4) return bytesClass();
        if (kind == 5) return classEscape(false);
        if (kind == 6) {
            const Twin escapes[] = {{"\\.", "\\."}, {"\\n", "\\n"}, {"\\t", "\\t"},
                                    {"\\uA", "A"},  {"\\lB", "b"},  {"\\-", "-"}};
            return escapes[below(6)];
        }
        const std::string letter(1, one("aabbcA0"));
        return {letter, letter};
    }
    Twin classEscape(bool inside) {
        const struct {
            const char* ours;
            const char* bytes;
        } classes[] = {{"a", "a-zA-Z"},    {"w", "0-9a-zA-Z"}, {"s", "\\s"},      {"d", "0-9"},
                       {"x", "0-9a-fA-F"}, {"c", "[:cntrl:]"}, {"p", "[:punct:]"}};
        const auto& chosen = classes[below(7)];
        if (inside) return {std::string("\\") + chosen.ours, chosen.bytes};
        if (below(3) > 0) return {std::string("\\") + chosen.ours, std::string("[") + chosen.bytes + "]"};
        return {std::string("\\") + static_cast<char>(chosen.ours[0] - 'a' + 'A'),
                std::string("[^") + chosen.bytes + "]"};
    }
    Twin bytesClass() {
        const std::string open = below(3) == 0 ? "[^" : "[";
        Twin twin{open, open};
        for (int left = 1 + below(3); left > 0; --left) {
            const std::string member(1, one("abcAB01 *+"));
            if (const int kind = below(4); kind == 0) {
                twin += classEscape(true);
            } else if (kind == 1) {
                twin += {"a-c", "a-c"};
            } else {
                twin += {member, member};
            }
        }
        return twin += {"]", "]"};
    }

    std::mt19937 random_;
};

std::string places(size_t from, size_t to) { return " " + std::to_string(from) + "-" + std::to_string(to); }

/// The whole match and the groups as places, "none" without a match, nothing when the peer's patience ends.
std::optional<std::string> peersAnswer(const std::string& pattern, const std::string& text) {
    int error = 0;
    size_t errorAt = 0;
    const std::unique_ptr<pcre2_code, void (*)(pcre2_code*)> code(
        pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(), PCRE2_DOTALL | PCRE2_DOLLAR_ENDONLY,
                      &error, &errorAt, nullptr),
        pcre2_code_free);
    if (!code) return "refused at " + std::to_string(errorAt);
    const std::unique_ptr<pcre2_match_data, void (*)(pcre2_match_data*)> match(
        pcre2_match_data_create_from_pattern(code.get(), nullptr), pcre2_match_data_free);
    const int count =
        pcre2_match(code.get(), reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), 0, 0, match.get(), nullptr);
    if (count == PCRE2_ERROR_NOMATCH) return "none";
    if (count < 0) return std::nullopt;
    std::string answer;
    const size_t* found = pcre2_get_ovector_pointer(match.get());
    for (uint32_t group = 0; group < pcre2_get_ovector_count(match.get()); ++group, found += 2)
        answer += found[0] == PCRE2_UNSET ? " none" : places(found[0], found[1]);
    return answer;
}

std::string ourAnswer(const Pattern& pattern, std::string_view text) {
    const std::optional<PatternMatch> match = pattern.search(text);
    if (!match) return "none";
    const auto part = [&](std::string_view found) {
        const auto from = static_cast<size_t>(found.data() - text.data());
        return places(from, from + found.size());
    };
    std::string answer = part(match->whole);
    for (const auto& group : match->groups) answer += group ? part(*group) : " none";
    return answer;
}

/// GLIMMERPAD_PATTERN_PAIRS says how many pairs; 100,000 take half a minute under the sanitizers.
TEST(Patterns, FindWhatAnIndependentEngineFinds) {
    const char* wanted = std::getenv("GLIMMERPAD_PATTERN_PAIRS");
    const int pairs = wanted != nullptr ? std::atoi(wanted) : 20000;
    Maker maker(20);
    int matches = 0;
    int groups = 0;
    int impatient = 0;
    for (int i = 0; i < pairs; ++i) {
        const Twin twin = maker.pattern();
        const std::string text = maker.text();
        const Result<Pattern> pattern = Pattern::compile(twin.ours);
        ASSERT_TRUE(pattern) << twin.ours << ": " << pattern.message();
        const std::optional<std::string> expected = peersAnswer(twin.peers, text);
        impatient += expected ? 0 : 1;
        if (!expected) continue;
        ASSERT_EQ(ourAnswer(*pattern, text), *expected) << twin.ours << " on \"" << text << "\", pair " << i;
        matches += *expected != "none" ? 1 : 0;
        groups += expected->find('-') != expected->rfind('-') ? 1 : 0;
    }
    std::printf("%d pairs, %d with a match, %d with a group, %d beyond the peer's patience\n", pairs, matches, groups,
                impatient);
    EXPECT_GT(matches, pairs / 3);
    EXPECT_GT(groups, pairs / 10);
    EXPECT_LT(impatient, pairs / 1000 + 1);
}

}  // namespace
}  // namespace glimmer
