#pragma once

#include <functional>
#include <string>
#include <vector>

#include "common/bitmap.h"
#include "editor/annotations/shapes_list.h"

// What every benchmark uses: times that can be compared, and Markdown tables.

namespace glimmer::bench {

/// One thing whose time is taken. `prepare` runs before each run of `work` and is not counted.
struct Entrant {
    std::string name;
    std::function<void()> work;
    std::function<void()> prepare = {};
};

/// Runs the entrants by turns, so that whatever else the machine does meets all alike, and answers the median processor
/// time of each in milliseconds, in their order. At least `rounds` rounds; the first, which warms up, does not count.
std::vector<double> compare(const std::vector<Entrant>& entrants, int rounds = 9);

/// A Markdown table on the standard output; the first column is text, the others numbers.
void printTable(const std::string& title, const std::vector<std::string>& columns,
                const std::vector<std::vector<std::string>>& rows);
/// A time in milliseconds, three digits.
std::string milliseconds(double time);
/// A ratio, two decimals.
std::string ratio(double value);

/// A picture of a page to measure with: `samples/NAME` when it can be read, else one that is drawn here.
TBitmap pagePicture(const std::string& name, Size size, PixelFormat format);
/// Every channel random.
TBitmap noisePicture(Size size, PixelFormat format);

/// Two hundred annotations of all styles and kinds, spread over a page of 10000 lines, with the sizes that their
/// labels' texts need.
TShapesList pageAnnotations();

/// Notes what is to be reached, for the table at the end: a ratio that is at most, or at least, `limit`.
void goalAtMost(const std::string& what, double reached, double limit);
void goalAtLeast(const std::string& what, double reached, double limit);
/// All of them as one table.
void printGoals();

// The groups of benchmarks. main.cpp lists them.
void effects();
void files();
void editor();
void screen();
void answers();

}  // namespace glimmer::bench
