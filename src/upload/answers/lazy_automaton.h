#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "upload/answers/program_closure.h"

namespace glimmer {

/// Where a program matches, found by a deterministic automaton whose states are made as the text asks for them: one
/// look into a table a byte. It tells one end of a match and knows nothing of groups. For one search.
class LazyAutomaton {
public:
    explicit LazyAutomaton(const PatternProgram& program);

    struct Answer {
        std::optional<size_t> place = {};
        /// So many states that making them costs more than it brings, which is noticed after a bounded effort for each
        /// byte. Somebody else has to look.
        bool gaveUp = false;
    };
    /// The end of the match that begins first and, of those that begin there, is the preferred one. For a program that
    /// was compiled forward.
    Answer findEnd(std::string_view text);
    /// The first place where a match begins that ends at `end`. For a program that was compiled backward.
    Answer findBeginning(std::string_view text, size_t end);

private:
    /// The steps at which the program waits, the preferred first. What depends on the byte behind a place (a "$", a
    /// match that a "\b" must follow) is decided when that byte is taken, so that a match is noticed one byte late.
    struct State {
        std::vector<uint32_t> steps = {};
        bool seeking = false;  ///< a match may still begin behind this place
        PlaceLook look;
    };

    // An entry of the table is the row of the next state and what else is to be known.
    static constexpr uint32_t unknown = 1U << 31U;
    static constexpr uint32_t matched = 1U << 30U;  ///< a match ends before the byte
    static constexpr uint32_t dead = 1U << 29U;     ///< nothing can match any more
    static constexpr uint32_t resting = 1U << 28U;  ///< no match has begun: the prefix can be looked for
    static constexpr uint32_t rowMask = resting - 1;

    [[nodiscard]] uint32_t column(char byte) const { return program_.classOf[static_cast<uint8_t>(byte)]; }
    uint32_t firstRow(bool seeking, const PlaceLook& look);
    uint32_t entryFor(State state);
    uint32_t makeEntry(uint32_t& row, uint32_t column, size_t taken);
    uint32_t follow(const State& from, uint32_t column);

    const PatternProgram& program_;
    const uint32_t endColumn_;  ///< the column of the text's end, behind those of the classes
    const uint32_t width_;
    std::vector<State> states_;                             ///< state n has the row that begins at n * width_
    std::vector<uint32_t> table_;                           ///< `unknown` until it is asked for
    std::unordered_map<std::u32string, uint32_t> entries_;  ///< by what tells states apart
    size_t memory_ = 0;                                     ///< bytes, nearly
    size_t emptiedAt_ = 0;                                  ///< bytes taken when the states were last thrown away
    bool gaveUp_ = false;
    ProgramClosure resolved_;
    ProgramClosure next_;
};

}  // namespace glimmer
