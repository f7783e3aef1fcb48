#include "upload/answers/Umd5.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <utility>

namespace glimmer {

namespace {

constexpr size_t blockSize = 64;

/// 2^32 |sin(n)| for n from 1 to 64, cut off (section 3.4).
std::array<uint32_t, 64> makeConstants() {
    std::array<uint32_t, 64> constants{};
    for (size_t i = 0; i < constants.size(); ++i)
        constants[i] = static_cast<uint32_t>(std::floor(std::abs(std::sin(static_cast<double>(i + 1))) * 4294967296.0));
    return constants;
}

constexpr int turns[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

/// F, G, H and I of the RFC. F and G are written so that what waits for the step before, `x`, comes in last.
template <size_t round>
uint32_t mix(uint32_t x, uint32_t y, uint32_t z) {
    if constexpr (round == 0) return z ^ (x & (y ^ z));
    if constexpr (round == 1) return (~z & y) + (z & x);
    if constexpr (round == 2) return x ^ (y ^ z);
    if constexpr (round == 3) return y ^ (x | ~z);
}

template <size_t step>
constexpr size_t wordOf() {
    constexpr size_t factors[4] = {1, 5, 3, 7};
    constexpr size_t offsets[4] = {0, 1, 5, 0};
    return (factors[step / 16] * step + offsets[step / 16]) % 16;
}

template <size_t step>
void oneStep(std::array<uint32_t, 4>& s, const std::array<uint32_t, 16>& words,
             const std::array<uint32_t, 64>& constants) {
    // The four words change places from step to step; counted at compile time, they stay where they are.
    constexpr size_t a = (64 - step) % 4;
    constexpr size_t b = (a + 1) % 4;
    constexpr size_t c = (a + 2) % 4;
    constexpr size_t d = (a + 3) % 4;
    const uint32_t sum = s[a] + words[wordOf<step>()] + constants[step] + mix<step / 16>(s[b], s[c], s[d]);
    s[a] = s[b] + std::rotl(sum, turns[step / 16][step % 4]);
}

template <size_t... step>
void allSteps(std::array<uint32_t, 4>& s, const std::array<uint32_t, 16>& words,
              const std::array<uint32_t, 64>& constants, std::index_sequence<step...> /*steps*/) {
    (oneStep<step>(s, words, constants), ...);
}

void addBlock(std::array<uint32_t, 4>& state, const char* block) {
    static const std::array<uint32_t, 64> constants = makeConstants();
    // Both processors that this runs on are little-endian, as the words of a block are.
    static_assert(std::endian::native == std::endian::little);
    std::array<uint32_t, 16> words{};
    std::memcpy(words.data(), block, blockSize);
    std::array<uint32_t, 4> s = state;
    allSteps(s, words, constants, std::make_index_sequence<64>());
    for (size_t i = 0; i < state.size(); ++i) state[i] += s[i];
}

}  // namespace

void Md5::add(std::string_view bytes) {
    const size_t filled = length_ % blockSize;
    length_ += bytes.size();
    if (filled > 0) {
        const size_t taken = std::min(bytes.size(), blockSize - filled);
        std::copy_n(bytes.data(), taken, block_.data() + filled);
        if (filled + taken < blockSize) return;
        addBlock(state_, block_.data());
        bytes.remove_prefix(taken);
    }
    for (; bytes.size() >= blockSize; bytes.remove_prefix(blockSize)) addBlock(state_, bytes.data());
    std::copy(bytes.begin(), bytes.end(), block_.begin());
}

std::array<uint8_t, 16> Md5::digest() {
    const uint64_t bits = length_ * 8;
    std::array<char, 8> ending{};
    for (size_t i = 0; i < ending.size(); ++i) ending[i] = static_cast<char>(bits >> (8 * i));
    // A one bit, zeros up to eight bytes before a block's end, and the length.
    std::array<char, blockSize> padding{static_cast<char>(0x80)};
    const size_t space = (2 * blockSize - ending.size() - length_ % blockSize - 1) % blockSize + 1;
    add({padding.data(), space});
    add({ending.data(), ending.size()});
    std::array<uint8_t, 16> digest{};
    for (size_t i = 0; i < digest.size(); ++i) digest[i] = static_cast<uint8_t>(state_[i / 4] >> (8 * (i % 4)));
    return digest;
}

std::string md5Hex(std::string_view bytes) {
    Md5 sum;
    sum.add(bytes);
    std::string text;
    for (const uint8_t byte : sum.digest()) {
        constexpr char digits[] = "0123456789abcdef";
        text.push_back(digits[byte >> 4U]);
        text.push_back(digits[byte & 15U]);
    }
    return text;
}

}  // namespace glimmer
