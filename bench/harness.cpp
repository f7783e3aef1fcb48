#include "harness.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace glimmer::bench {

std::vector<double> compare(const std::vector<Entrant>& entrants, int rounds) {
    using Clock = std::chrono::steady_clock;
    std::vector<std::vector<double>> times(entrants.size());
    for (int round = 0; round <= rounds; ++round) {
        for (size_t i = 0; i < entrants.size(); ++i) {
            if (entrants[i].prepare) entrants[i].prepare();
            const Clock::time_point start = Clock::now();
            entrants[i].work();
            const std::chrono::duration<double, std::milli> time = Clock::now() - start;
            if (round > 0) times[i].push_back(time.count());
        }
    }
    std::vector<double> medians;
    for (std::vector<double>& all : times) {
        const auto middle = all.begin() + static_cast<std::ptrdiff_t>(all.size() / 2);
        std::nth_element(all.begin(), middle, all.end());
        medians.push_back(*middle);
    }
    return medians;
}

void printTable(const std::string& title, const std::vector<std::string>& columns,
                const std::vector<std::vector<std::string>>& rows) {
    std::printf("\n### %s\n\n", title.c_str());
    const auto line = [](const std::vector<std::string>& cells) {
        for (const std::string& cell : cells) std::printf("| %s ", cell.c_str());
        std::printf("|\n");
    };
    line(columns);
    for (size_t i = 0; i < columns.size(); ++i) std::printf(i == 0 ? "|---" : "|---:");
    std::printf("|\n");
    for (const std::vector<std::string>& row : rows) line(row);
    std::fflush(stdout);
}

std::string milliseconds(double time) {
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", time < 10 ? 2 : time < 100 ? 1 : 0, time);
    return text;
}

std::string ratio(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

}  // namespace glimmer::bench
