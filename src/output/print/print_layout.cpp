#include "output/print/print_layout.h"

#include <algorithm>

#include "common/assertion.h"

namespace glimmer {

namespace {

constexpr double leastLength = 0.02;  // of a picture's side, inches: it can still be found and grasped
constexpr double mostLength = 1000;
constexpr double leastArea = 0.25;    // margins that leave less are cut
constexpr double keptOnSheet = 0.25;  // of a picture that is moved off the sheet
constexpr double footHeight = 0.16;   // a line of 8 points
constexpr double footGap = 0.08;
constexpr double mostOverlap = 2;

/// From..to between the margins of a side where the printer reaches; both margins give way where nothing is left.
std::pair<double, double> inside(double first, double last, double length, double reachFrom, double reachTo) {
    const double from = std::max(first, reachFrom);
    const double to = std::min(length - last, reachTo);
    if (to - from >= leastArea) return {from, to};
    const double middle = std::clamp((from + to) / 2, reachFrom + leastArea / 2, reachTo - leastArea / 2);
    return {middle - leastArea / 2, middle + leastArea / 2};
}

}  // namespace

PrintLayout::PrintLayout(Size picture, const PrintPaper& paper, const PrintWishes& wishes)
    : picture_(picture), paper_(paper), wishes_(wishes) {
    GLIMMER_ASSERT(picture.width > 0 && picture.height > 0, "!pBitmap->Empty", "uPrintDialog");
    setMargins(wishes.margins);
    setOverlap(wishes.overlap);
    resize(naturalWidth() * wishes.scale / 100, naturalHeight() * wishes.scale / 100);
}

void PrintLayout::setPaper(const PrintPaper& paper) {
    paper_ = paper;
    update();
}

void PrintLayout::setMargins(const PrintMargins& margins) {
    wishes_.margins = {std::max(margins.top, 0.0), std::max(margins.bottom, 0.0), std::max(margins.left, 0.0),
                       std::max(margins.right, 0.0)};
    update();
}

void PrintLayout::setCentre(bool centre) {
    wishes_.centre = centre;
    update();
}

void PrintLayout::setFit(bool fit) {
    wishes_.fit = fit;
    update();
}

void PrintLayout::setSplit(bool split) {
    wishes_.split = split;
    update();
}

void PrintLayout::setFootLine(bool footLine) {
    wishes_.footLine = footLine;
    update();
}

void PrintLayout::setOverlap(double inches) { wishes_.overlap = std::clamp(inches, 0.0, mostOverlap); }

void PrintLayout::setPlace(double left, double top) {
    wishes_.centre = false;
    wishes_.left = left;
    wishes_.top = top;
    update();
}

void PrintLayout::setWidth(double inches) {
    const double wanted = std::clamp(inches, leastLength, mostLength);
    setSize(wanted, height_ * wanted / width_);
}

void PrintLayout::setHeight(double inches) {
    const double wanted = std::clamp(inches, leastLength, mostLength);
    setSize(width_ * wanted / height_, wanted);
}

void PrintLayout::setSize(double width, double height) {
    wishes_.fit = false;
    resize(width, height);
}

void PrintLayout::setScale(double percent) { setSize(naturalWidth() * percent / 100, naturalHeight() * percent / 100); }

double PrintLayout::scale() const { return width_ / naturalWidth() * 100; }

InchRect PrintLayout::area() const {
    const InchRect& reach = paper_.printable;
    const PrintMargins& margins = wishes_.margins;
    const auto [left, right] = inside(margins.left, margins.right, paper_.width, reach.left, reach.right);
    const double foot = wishes_.footLine ? footHeight + footGap : 0;
    const auto [top, bottom] = inside(margins.top, margins.bottom, paper_.height, reach.top, reach.bottom - foot);
    return {left, top, right, bottom};
}

InchRect PrintLayout::place() const {
    return {wishes_.left, wishes_.top, wishes_.left + width_, wishes_.top + height_};
}

/// In the middle of what the bottom margin leaves, but not in the edge that the printer does not reach.
InchRect PrintLayout::footPlace() const {
    const InchRect inner = area();
    const double end = paper_.printable.bottom;
    const double top = std::max(inner.bottom + footGap, (inner.bottom + end - footHeight) / 2);
    return {inner.left, top, inner.right, top + footHeight};
}

void PrintLayout::resize(double width, double height) {
    width_ = std::clamp(width, leastLength, mostLength);
    height_ = std::clamp(height, leastLength, mostLength);
    update();
}

void PrintLayout::update() {
    if (width_ <= 0) return;  // while it is being made
    const InchRect inner = area();
    const double own = naturalHeight() / naturalWidth();
    if (wishes_.split) {
        const double width = wishes_.fit ? inner.width() : std::min(width_, inner.width());
        height_ = wishes_.fit ? width * own : height_ * width / width_;
        width_ = width;
    } else if (wishes_.fit) {
        width_ = std::min(inner.width(), inner.height() / own);
        height_ = width_ * own;
    }
    if (wishes_.centre) {
        wishes_.left = inner.left + (inner.width() - width_) / 2;
        wishes_.top = inner.top + (inner.height() - height_) / 2;
    }
    if (wishes_.split && height_ > inner.height()) wishes_.top = inner.top;
    wishes_.left = std::clamp(wishes_.left, keptOnSheet - width_, paper_.width - keptOnSheet);
    wishes_.top = std::clamp(wishes_.top, keptOnSheet - height_, paper_.height - keptOnSheet);
    wishes_.scale = scale();
}

}  // namespace glimmer
