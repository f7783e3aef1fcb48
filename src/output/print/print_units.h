#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace glimmer {

/// The units that lengths on paper are shown in; a length itself is always a number of inches.
enum class PrintUnit : uint8_t { Inch, Centimetre, Millimetre, Point, Pica };

struct PrintUnitRow {
    const char* name;
    double perInch;
};
/// All units, in the order of PrintUnit.
std::span<const PrintUnitRow> printUnits();

/// A length as a box shows it: at most three decimals after a point, without zeros at its end.
std::string lengthText(double inches, PrintUnit unit);

/// The inches that a box's text says, a comma taken for a point and the unit's name behind it allowed; nothing when it
/// is no number or not between -1000 and 1000 inches. A text that is what the box shows for `current` is that, so what
/// is only looked at in another unit never drifts.
std::optional<double> lengthFrom(std::string_view text, PrintUnit unit, double current);

/// "87%". The text is rounded, the scale is not.
std::string scaleText(double percent);
/// The scale that a text says, as lengthFrom() reads it; nothing when it is not between 0.1 and 100000.
std::optional<double> scaleFrom(std::string_view text, double current);

}  // namespace glimmer
