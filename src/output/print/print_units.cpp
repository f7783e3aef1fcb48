#include "output/print/print_units.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "common/text.h"

namespace glimmer {

namespace {

constexpr PrintUnitRow units[] = {{"in", 1}, {"cm", 2.54}, {"mm", 25.4}, {"pt", 72}, {"pc", 6}};
constexpr double mostInches = 1000;
constexpr double leastScale = 0.1;
constexpr double mostScale = 100000;

std::optional<double> numberFrom(std::string_view text, std::string_view suffix) {
    std::string number = trimmed(text);
    if (!suffix.empty() && number.size() >= suffix.size() &&
        equalsIgnoringCase(std::string_view(number).substr(number.size() - suffix.size()), suffix))
        number = trimmed(std::string_view(number).substr(0, number.size() - suffix.size()));
    std::replace(number.begin(), number.end(), ',', '.');
    double value = 0;
    const char* const end = number.data() + number.size();
    const auto [stop, error] = std::from_chars(number.data(), end, value, std::chars_format::fixed);
    if (error != std::errc() || stop != end || !std::isfinite(value)) return std::nullopt;
    return value;
}

}  // namespace

std::span<const PrintUnitRow> printUnits() { return units; }

std::string lengthText(double inches, PrintUnit unit) {
    // In thousandths, so that it is rounded once and no locale takes part.
    const long long thousandths = std::llround(inches * units[static_cast<size_t>(unit)].perInch * 1000);
    std::string text = thousandths < 0 ? "-" : "";
    const long long most = std::llabs(thousandths);
    text += std::to_string(most / 1000);
    std::string decimals = std::to_string(1000 + most % 1000).substr(1);
    decimals.erase(decimals.find_last_not_of('0') + 1);
    return decimals.empty() ? text : text + "." + decimals;
}

std::optional<double> lengthFrom(std::string_view text, PrintUnit unit, double current) {
    const PrintUnitRow& row = units[static_cast<size_t>(unit)];
    const auto number = numberFrom(text, row.name);
    if (!number || std::abs(*number / row.perInch) > mostInches) return std::nullopt;
    return trimmed(text) == lengthText(current, unit) ? current : *number / row.perInch;
}

std::string scaleText(double percent) { return std::to_string(std::lround(percent)) + "%"; }

std::optional<double> scaleFrom(std::string_view text, double current) {
    const auto number = numberFrom(text, "%");
    if (trimmed(text) == scaleText(current)) return current;
    if (!number || *number < leastScale || *number > mostScale) return std::nullopt;
    return number;
}

}  // namespace glimmer
