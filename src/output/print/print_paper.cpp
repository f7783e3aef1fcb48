#include "output/print/print_paper.h"

#include <algorithm>
#include <cmath>

namespace glimmer {

namespace {

constexpr double standardResolution = 600;
constexpr double a4Width = 210 / 25.4;
constexpr double a4Height = 297 / 25.4;

struct Side {
    double length;
    double from;
    double to;
};

/// One direction of the sheet in inches.
Side sideOf(double dots, int32_t physical, int32_t offset, int32_t reached, double standard) {
    double length = physical > 0 ? physical / dots : reached / dots;
    if (length <= 0) length = standard;
    const double from = std::clamp(offset / dots, 0.0, length / 2);
    const double to = reached > 0 ? std::min(from + reached / dots, length) : length - from;
    return {length, from, std::max(to, length / 2)};
}

}  // namespace

PrintPaper paperOf(const PrinterMetrics& metrics) {
    PrintPaper paper;
    paper.dotsPerInchX = metrics.logPixelsX > 0 ? metrics.logPixelsX : standardResolution;
    paper.dotsPerInchY = metrics.logPixelsY > 0 ? metrics.logPixelsY : standardResolution;
    const Side across =
        sideOf(paper.dotsPerInchX, metrics.physicalWidth, metrics.physicalOffsetX, metrics.horzRes, a4Width);
    const Side down =
        sideOf(paper.dotsPerInchY, metrics.physicalHeight, metrics.physicalOffsetY, metrics.vertRes, a4Height);
    paper.width = across.length;
    paper.height = down.length;
    paper.printable = {across.from, down.from, across.to, down.to};
    return paper;
}

Rect dotsOf(const PrintPaper& paper, const InchRect& place) {
    const auto dots = [](double inches, double dotsPerInch) {
        return static_cast<int32_t>(std::lround(inches * dotsPerInch));
    };
    const int32_t left = dots(place.left - paper.printable.left, paper.dotsPerInchX);
    const int32_t top = dots(place.top - paper.printable.top, paper.dotsPerInchY);
    return {left, top, left + dots(place.width(), paper.dotsPerInchX), top + dots(place.height(), paper.dotsPerInchY)};
}

}  // namespace glimmer
