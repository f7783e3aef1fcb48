#include <random>

#include "harness.h"
#include "upload/answers/Umd5.h"
#include "upload/answers/pattern.h"
#ifdef GLIMMER_HAVE_RE2
#include <re2/re2.h>
#endif
#ifdef GLIMMER_HAVE_OPENSSL
#include <openssl/evp.h>
#endif

namespace glimmer::bench {

namespace {

constexpr size_t mebibyte = size_t{1} << 20U;

/// A long answer, half page and half JSON, with the link near its end. The same every time.
std::string longAnswer() {
    std::mt19937 random(4);
    const char* const words[] = {"image",  "status", "uploaded", "http", "title",
                                 "\"ok\"", "thumb",  "size",     "x12",  "page"};
    std::string text = "<html><body>\n";
    while (text.size() < mebibyte) {
        const std::string word = words[random() % 10];
        const std::string number = std::to_string(random() % 100000);
        switch (random() % 4) {
            case 0:
                text += "<p class=\"" + word + "\">" + number + "</p>\n";
                break;
            case 1:
                text += "{\"" + word + "\":\"" + number + "\"},\n";
                break;
            case 2:
                text += word + " = " + number + ", see " + words[random() % 10] + ".\n";
                break;
            default:
                text += "  <!-- " + word + "-" + number + " -->\n";
        }
    }
    return text +
           "<a href=\"http://pictures.example/i/4f8a2c6e.png\">see</a> <url>http://short.example/Qx7</url> "
           "\"link\":\"http://pictures.example/v/77\" id: 2024-11-24 #END#\n";
}

/// One and the same search as a pattern of ours and of the peer's.
struct Search {
    const char* ours;
    const char* peers;
};
constexpr Search searches[] = {
    {"<url>(.*)</url>", "<url>(.*)</url>"},
    {"\"link\":\"([^\"]*)\"", "\"link\":\"([^\"]*)\""},
    {"<a href=\"([^\"]+\\.png)\"", "<a href=\"([^\"]+\\.png)\""},
    {"(http://[\\w.]+/v/\\d+)", "(http://[0-9A-Za-z.]+/v/[0-9]+)"},
    {"(\\d{4}-\\d{2}-\\d{2})", "([0-9]{4}-[0-9]{2}-[0-9]{2})"},
    {"([0-9a-f]{8})\\.(png|jpg|gif)", "([0-9a-f]{8})\\.(png|jpg|gif)"},
    {"(short|long|tiny)\\.\\w+/(\\w+)", "(short|long|tiny)\\.[0-9A-Za-z]+/([0-9A-Za-z]+)"},
    {"\\bid:\\s*(\\S+)", "\\bid:\\s*(\\S+)"},
    {"#(\\uEND)#\\s*$", "#(END)#\\s*$"},
    {"<error>(.*)</error>", "<error>(.*)</error>"},
};

void ordinaryPatterns() {
    const std::string text = longAnswer();
    std::vector<std::vector<std::string>> rows;
    double worst = 0;
    for (const Search& search : searches) {
        const Pattern ours = Pattern::compile(search.ours).take();
        std::optional<PatternMatch> match;
        std::vector<Entrant> entrants{{"ours", [&] { match = ours.search(text); }}};
#ifdef GLIMMER_HAVE_RE2
        RE2::Options options;
        options.set_dot_nl(true);
        options.set_encoding(RE2::Options::EncodingLatin1);
        const RE2 peer(search.peers, options);
        std::string group;
        bool found = false;
        entrants.push_back({"RE2", [&] { found = RE2::PartialMatch(text, peer, &group); }});
#endif
        const std::vector<double> times = compare(entrants, 9);
        std::vector<std::string> row{std::string("`") + search.ours + "`", match ? "yes" : "no",
                                     milliseconds(times[0])};
#ifdef GLIMMER_HAVE_RE2
        row.insert(row.end(), {milliseconds(times[1]), ratio(times[0] / times[1])});
        if (found != match.has_value() || (found && group != match->groups[0])) row.push_back("DIFFERENT");
        worst = std::max(worst, times[0] / times[1]);
#endif
        rows.push_back(row);
    }
    printTable("Patterns over 1 MiB, the match at its end", {"", "found", "ms", "RE2, ms", "ratio"}, rows);
    if (worst > 0) goalAtMost("ten patterns, the worst: time of RE2's", worst, 3);
}

/// Patterns over which engines that try one way after the other do not end.
void loopingPatterns() {
    const struct {
        const char* pattern;
        bool random;  ///< over a random text of a and b, else over nothing but a
    } cases[] = {{"(a*)*b", false},    {"((a+)+)+b", false},
                 {"(a|aa)+$b", false}, {"(.*)(.*)(.*)(.*)[^a]", false},
                 {"((a*)*)*$", false}, {"(a|b)*a(a|b){20}c", true}};
    std::vector<std::vector<std::string>> rows;
    for (const auto& c : cases) {
        const Pattern pattern = Pattern::compile(c.pattern).take();
        std::mt19937 random(8);
        std::vector<std::string> texts;
        for (const size_t size : {1U, 2U, 4U}) {
            texts.emplace_back(size * mebibyte, 'a');
            if (!c.random) continue;
            for (char& byte : texts.back()) byte = "ab"[random() % 2];
        }
        std::vector<Entrant> entrants;
        for (const std::string& text : texts)
            entrants.push_back({"", [&] { static_cast<void>(pattern.search(text)); }});
        const std::vector<double> times = compare(entrants, 3);
        rows.push_back({std::string("`") + c.pattern + "`", milliseconds(times[0]), milliseconds(times[1]),
                        milliseconds(times[2]), ratio(times[2] / times[0])});
        goalAtMost(std::string("`") + c.pattern + "` over 4 MiB: time of that over 1 MiB", times[2] / times[0], 5);
    }
    printTable("Patterns that loop", {"", "1 MiB, ms", "2 MiB, ms", "4 MiB, ms", "4 : 1"}, rows);
}

void sums() {
    const std::string text(16 * mebibyte, 'm');
    std::string ours;
    std::vector<Entrant> entrants{{"ours", [&] { ours = md5Hex(text); }}};
#ifdef GLIMMER_HAVE_OPENSSL
    unsigned char digest[EVP_MAX_MD_SIZE];
    entrants.push_back({"OpenSSL", [&] { EVP_Digest(text.data(), text.size(), digest, nullptr, EVP_md5(), nullptr); }});
#endif
    const std::vector<double> times = compare(entrants, 5);
    std::vector<std::vector<std::string>> rows;
    for (size_t i = 0; i < entrants.size(); ++i) rows.push_back({entrants[i].name, milliseconds(times[i])});
    printTable("MD5 of 16 MiB", {"", "ms"}, rows);
#ifdef GLIMMER_HAVE_OPENSSL
    goalAtMost("MD5: time of OpenSSL's", times[0] / times[1], 1.5);
#endif
}

}  // namespace

void answers() {
    ordinaryPatterns();
    loopingPatterns();
    sums();
}

}  // namespace glimmer::bench
