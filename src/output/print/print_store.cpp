#include "output/print/print_store.h"

#include <charconv>
#include <cmath>
#include <string_view>

#include "common/text.h"
#include "settings/settings.h"

namespace glimmer {

namespace {

constexpr double units = 1000000;  // of an inch or a percent that a number keeps
constexpr size_t mostSettings = 1U << 20U;

struct LengthRow {
    std::string_view key;
    double PrintWishes::*member;
    double least;
    double most;
};
constexpr LengthRow lengths[] = {
    {"edtScale", &PrintWishes::scale, 0.1, 100000},
    {"edtLeft", &PrintWishes::left, -1000, 1000},
    {"edtTop", &PrintWishes::top, -1000, 1000},
    {"edtOverlap", &PrintWishes::overlap, 0, 2},
};
struct MarginRow {
    std::string_view key;
    double PrintMargins::*member;
};
constexpr MarginRow margins[] = {{"edtTopMargin", &PrintMargins::top},
                                 {"edtBottomMargin", &PrintMargins::bottom},
                                 {"edtLeftMargin", &PrintMargins::left},
                                 {"edtRightMargin", &PrintMargins::right}};
struct SwitchRow {
    std::string_view key;
    bool PrintWishes::*member;
};
constexpr SwitchRow switches[] = {{"chkCenter", &PrintWishes::centre},
                                  {"chkFitToPage", &PrintWishes::fit},
                                  {"chkSplit", &PrintWishes::split},
                                  {"chkFootLine", &PrintWishes::footLine}};

/// With a point whatever the locale, and as many digits as bring the same length back to the eye.
std::string textOf(double value) {
    const long long whole = std::llround(std::abs(value) * units);
    std::string text = value < 0 ? "-" : "";
    text += std::to_string(whole / 1000000);
    std::string decimals = std::to_string(1000000 + whole % 1000000).substr(1);
    decimals.erase(decimals.find_last_not_of('0') + 1);
    if (!decimals.empty()) text.append(".").append(decimals);
    return text;
}

double numberOf(const std::string& text, double fallback, double least, double most) {
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    const bool good = error == std::errc() && end == text.data() + text.size() && value >= least && value <= most;
    return good ? value : fallback;
}

}  // namespace

PrintStore PrintStore::read(const TCachedMemIniFile& store) {
    const std::string section = settingsSection(group::printer);
    PrintStore all;
    for (const LengthRow& row : lengths)
        all.wishes.*row.member =
            numberOf(store.readString(section, row.key), all.wishes.*row.member, row.least, row.most);
    for (const MarginRow& row : margins)
        all.wishes.margins.*row.member = numberOf(store.readString(section, row.key), 1, 0, 100);
    for (const SwitchRow& row : switches)
        all.wishes.*row.member = store.readBool(section, row.key, all.wishes.*row.member);
    all.boundingBox = store.readBool(section, "chkShowBoundingBox", true);
    all.grayscale = store.readBool(section, "chkGrayscale", false);
    all.printer.name = store.readString(section, "Printer");
    const std::string settings = store.readString(section, "PrinterSettings");
    if (settings.size() <= mostSettings) all.printer.settings = base64Decode(settings).value_or(std::vector<uint8_t>());
    return all;
}

void PrintStore::write(TCachedMemIniFile& store) const {
    const std::string section = settingsSection(group::printer);
    for (const LengthRow& row : lengths) store.writeString(section, row.key, textOf(wishes.*row.member));
    for (const MarginRow& row : margins) store.writeString(section, row.key, textOf(wishes.margins.*row.member));
    for (const SwitchRow& row : switches) store.writeBool(section, row.key, wishes.*row.member);
    store.writeBool(section, "chkShowBoundingBox", boundingBox);
    store.writeBool(section, "chkGrayscale", grayscale);
    store.writeString(section, "Printer", printer.name);
    store.writeString(section, "PrinterSettings", base64Encode(printer.settings));
}

}  // namespace glimmer
