#include "harness.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>

namespace glimmer::bench {

namespace {

/// Milliseconds that this process has had of a processor. What other programs take from the machine does not count, so
/// that a busy machine gives nearly the times of an idle one; all entrants run on one thread.
double processorTime() {
#ifdef _WIN32
    // The system counts a process's time in steps too long for this.
    using Clock = std::chrono::steady_clock;
    return std::chrono::duration<double, std::milli>(Clock::now().time_since_epoch()).count();
#else
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
#endif
}

/// The rows of the last table.
std::vector<std::vector<std::string>>& goals() {
    static std::vector<std::vector<std::string>> all;
    return all;
}

void addGoal(const std::string& what, double reached, const char* sign, double limit, bool met) {
    goals().push_back({what, ratio(reached), sign + ratio(limit), met ? "yes" : "no"});
}

}  // namespace

std::vector<double> compare(const std::vector<Entrant>& entrants, int rounds) {
    std::vector<std::vector<double>> times(entrants.size());
    for (int round = 0; round <= rounds; ++round) {
        for (size_t i = 0; i < entrants.size(); ++i) {
            if (entrants[i].prepare) entrants[i].prepare();
            const double start = processorTime();
            entrants[i].work();
            if (round > 0) times[i].push_back(processorTime() - start);
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

void goalAtMost(const std::string& what, double reached, double limit) {
    addGoal(what, reached, "≤ ", limit, reached <= limit);
}

void goalAtLeast(const std::string& what, double reached, double limit) {
    addGoal(what, reached, "≥ ", limit, reached >= limit);
}

void printGoals() {
    if (!goals().empty()) printTable("Ratios and goals", {"", "ratio", "goal", "reached"}, goals());
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
