#include "upload/answers/pattern_syntax.h"

#include <algorithm>

#include "common/text.h"

namespace glimmer {

namespace {

using Kind = PatternNode::Kind;

PatternNode oneOf(const ByteSet& bytes) { return {.kind = Kind::Bytes, .bytes = bytes}; }

PatternNode literal(uint8_t byte) { return oneOf(ByteSet().set(byte)); }

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// What stands behind a backslash, in a class and outside of it.
struct Escape {
    ByteSet bytes;
    bool single = true;  ///< one character and not a class: it can begin or end a range
};

/// Descends by recursion, one call for choice(), sequence() and item() a level of brackets.
class Parser {
public:
    explicit Parser(std::string_view pattern) : pattern_(pattern) {}

    Result<PatternTree> parse() {
        if (pattern_.size() > PatternLimits::length) return Failure{"pattern too large"};
        Result<PatternNode> root = choice();
        if (!root) return root.failure();
        if (!atEnd()) return Failure{"unmatched )"};
        return PatternTree{root.take(), groups_};
    }

private:
    [[nodiscard]] bool atEnd() const { return at_ == pattern_.size(); }
    [[nodiscard]] char peek() const { return pattern_[at_]; }
    [[nodiscard]] bool nextIs(char c) const { return !atEnd() && peek() == c; }
    bool take(char c) {
        const bool there = nextIs(c);
        if (there) ++at_;
        return there;
    }
    [[nodiscard]] bool atQuantifier() const {
        return !atEnd() && std::string_view("*+?{").find(peek()) != std::string_view::npos;
    }

    Result<PatternNode> choice();
    Result<PatternNode> sequence();
    Result<PatternNode> item();
    Result<PatternNode> atom();
    Result<PatternNode> group();
    Result<PatternNode> escaped();
    PatternNode character();
    Result<PatternNode> bytesClass();
    Result<Escape> classMember();
    Result<Escape> escape();
    Result<PatternNode> repeated(PatternNode what);
    Result<int> number();

    std::string_view pattern_;
    size_t at_ = 0;
    int groups_ = 0;
    int depth_ = 0;
};

Result<PatternNode> Parser::choice() {
    PatternNode node{.kind = Kind::Choice};
    do {
        Result<PatternNode> part = sequence();
        if (!part) return part;
        node.parts.push_back(part.take());
    } while (take('|'));
    if (node.parts.size() == 1) return PatternNode(std::move(node.parts[0]));
    return node;
}

Result<PatternNode> Parser::sequence() {
    PatternNode node{.kind = Kind::Sequence};
    while (!atEnd() && peek() != '|' && peek() != ')') {
        Result<PatternNode> part = item();
        if (!part) return part;
        node.parts.push_back(part.take());
    }
    return node;
}

Result<PatternNode> Parser::item() {
    Result<PatternNode> what = atom();
    if (!what || !atQuantifier()) return what;
    const Kind kind = what->kind;
    if (kind != Kind::Bytes && kind != Kind::Group && kind != Kind::Sequence) return Failure{"nothing to repeat"};
    what = repeated(what.take());
    // Where others have "*?" and "*+", this language has nothing; to read them as something else would surprise.
    if (what && atQuantifier()) return Failure{"nothing to repeat"};
    return what;
}

Result<PatternNode> Parser::atom() {
    if (atQuantifier()) return Failure{"nothing to repeat"};
    if (take('(')) return group();
    if (take('[')) return bytesClass();
    if (take('\\')) return escaped();
    if (take('.')) return oneOf(ByteSet().set());
    if (take('^')) return PatternNode{.kind = Kind::Start};
    if (take('$')) return PatternNode{.kind = Kind::End};
    return character();
}

Result<PatternNode> Parser::group() {
    if (++groups_ > PatternLimits::groups) return Failure{"too many groups"};
    if (++depth_ > PatternLimits::depth) return Failure{"groups nested too deeply"};
    PatternNode node{.kind = Kind::Group, .group = groups_};
    Result<PatternNode> inside = choice();
    if (!inside) return inside;
    if (!take(')')) return Failure{") expected"};
    --depth_;
    node.parts.push_back(inside.take());
    return node;
}

Result<PatternNode> Parser::escaped() {
    if (take('b')) return PatternNode{.kind = Kind::WordEdge};
    if (take('B')) return PatternNode{.kind = Kind::NoWordEdge};
    const Result<Escape> found = escape();
    if (!found) return found.failure();
    return oneOf(found->bytes);
}

/// A character as it stands. One of several bytes is repeated as a whole.
PatternNode Parser::character() {
    const size_t longest = std::min<size_t>(4, pattern_.size() - at_);
    for (size_t length = 2; length <= longest && (peek() & 0x80) != 0; ++length) {
        const std::string_view bytes = pattern_.substr(at_, length);
        if (!isUtf8(bytes)) continue;
        PatternNode node{.kind = Kind::Sequence};
        for (const char byte : bytes) node.parts.push_back(literal(static_cast<uint8_t>(byte)));
        at_ += length;
        return node;
    }
    return literal(static_cast<uint8_t>(pattern_[at_++]));
}

Result<PatternNode> Parser::bytesClass() {
    const bool inverted = take('^');
    if (nextIs(']')) return Failure{"empty class"};
    ByteSet bytes;
    while (!take(']')) {
        if (atEnd()) return Failure{"] expected"};
        const Result<Escape> first = classMember();
        if (!first) return first.failure();
        bytes |= first->bytes;
        // A "-" at the class's end stands for itself.
        if (!nextIs('-') || at_ + 1 == pattern_.size() || pattern_[at_ + 1] == ']') continue;
        ++at_;
        const Result<Escape> last = classMember();
        if (!last) return last.failure();
        size_t from = 0;
        size_t to = 0;
        while (!first->bytes[from]) ++from;
        while (!last->bytes[to]) ++to;
        if (!first->single || !last->single || from > to) return Failure{"invalid range"};
        for (size_t byte = from; byte <= to; ++byte) bytes.set(byte);
    }
    return oneOf(inverted ? ~bytes : bytes);
}

Result<Escape> Parser::classMember() {
    if (take('\\')) return escape();
    const auto byte = static_cast<uint8_t>(pattern_[at_++]);
    // A class takes one byte, which such a character has not.
    if (byte >= 0x80) return Failure{"ASCII character expected"};
    return Escape{ByteSet().set(byte)};
}

/// Behind the backslash.
Result<Escape> Parser::escape() {
    if (atEnd()) return Failure{"character expected"};
    const char c = pattern_[at_++];
    const auto single = [](char of) { return Escape{ByteSet().set(static_cast<uint8_t>(of))}; };
    if (c == 'l' || c == 'u') {
        if (atEnd() || !isLetter(peek())) return Failure{"letter expected"};
        const std::string_view letter = pattern_.substr(at_++, 1);
        return single((c == 'l' ? lowerAscii(letter) : upperAscii(letter))[0]);
    }
    constexpr std::string_view letters = "tnrf";
    constexpr std::string_view meanings = "\t\n\r\f";
    if (const size_t index = letters.find(c); index != std::string_view::npos) return single(meanings[index]);
    if (const std::optional<ByteSet> named = classNamed(c)) return Escape{*named, false};
    if (isLetter(c) || isDigit(c)) return Failure{"unknown escape"};
    if ((c & 0x80) != 0) return Failure{"ASCII character expected"};
    return single(c);
}

/// `what` under the quantifier that stands here.
Result<PatternNode> Parser::repeated(PatternNode what) {
    PatternNode node{.kind = Kind::Repeat, .most = PatternNode::unlimited};
    node.parts.push_back(std::move(what));
    if (take('*')) return node;
    if (take('+')) {
        node.least = 1;
        return node;
    }
    if (take('?')) {
        node.most = 1;
        return node;
    }
    take('{');
    const Result<int> least = number();
    if (!least) return least.failure();
    node.least = node.most = *least;
    if (take(',')) {
        node.most = PatternNode::unlimited;
        if (!nextIs('}')) {
            const Result<int> most = number();
            if (!most) return most.failure();
            if (*most < *least) return Failure{"invalid range"};
            node.most = *most;
        }
    }
    if (!take('}')) return Failure{"} expected"};
    return node;
}

Result<int> Parser::number() {
    if (atEnd() || !isDigit(peek())) return Failure{"number expected"};
    int value = 0;
    while (!atEnd() && isDigit(peek())) {
        value = value * 10 + (pattern_[at_++] - '0');
        if (value > PatternLimits::count) return Failure{"number too large"};
    }
    return value;
}

}  // namespace

Result<PatternTree> parsePattern(std::string_view pattern) { return Parser(pattern).parse(); }

bool matchesEmpty(const PatternNode& node) {
    switch (node.kind) {
        case Kind::Bytes:
            return false;
        case Kind::Sequence:
            return std::all_of(node.parts.begin(), node.parts.end(), matchesEmpty);
        case Kind::Choice:
            return std::any_of(node.parts.begin(), node.parts.end(), matchesEmpty);
        case Kind::Group:
            return matchesEmpty(node.parts[0]);
        case Kind::Repeat:
            return node.least == 0 || matchesEmpty(node.parts[0]);
        default:
            return true;
    }
}

}  // namespace glimmer
