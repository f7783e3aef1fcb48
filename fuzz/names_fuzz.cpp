// Names of files out of pages' addresses and titles, and what the program is started with.
// The input's pieces, between bytes 255: template, address, title, then arguments.

#include <algorithm>

#include "common/files.h"
#include "common/text.h"
#include "fuzz/fuzz.h"
#include "host/program/start_rules.h"
#include "output/places/file_name_template.h"

namespace {

using namespace glimmer;

class StoppedClock final : public Clock {
public:
    LocalTime now() override { return {}; }
};

/// A name that leads out of no folder and that Windows takes.
void checkName(const std::string& name, bool oneUnitMore) {
    FUZZ_CHECK(!name.empty() && isUtf8(name));
    FUZZ_CHECK(toUtf16(name).size() <= (oneUnitMore ? 251U : 250U));
    FUZZ_CHECK(name.find_first_of("/\\:*?\"<>|.") == std::string::npos);
    FUZZ_CHECK(std::none_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }));
    FUZZ_CHECK(trimmed(name) == name);
    FUZZ_CHECK(safeFileName(name) == name);
}

void checkStart(const std::vector<std::string>& arguments) {
    const StartRequest request = readArguments(arguments);
    FUZZ_CHECK(!request.file || std::count(arguments.begin(), arguments.end(), *request.file) > 0);
    if (arguments.empty()) return;
    std::string line = "\"C:\\x\\y.exe\"";
    for (const std::string& argument : arguments) line += " \"" + argument + "\"";
    const std::string text = handOverText(line, arguments[0], "C:\\x\\");
    FUZZ_CHECK(toUtf16(text).size() <= 10000 + 5);
    const std::string file = handedOverFile(text);
    FUZZ_CHECK(file.find('"') == std::string::npos);
    const std::string whole = handedOverFile(handOverText(line, arguments[0], "C:\\x\\", "D:\\a b.png"));
    FUZZ_CHECK(whole.starts_with("D:\\a b.png"));
    static_cast<void>(profileFolder(text));
    static_cast<void>(settingsPlace(refinedHostKind(HostKind::Firefox, text)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    std::vector<std::string> pieces;
    while (pieces.size() < 12) {
        const size_t end = text.find('\xFF');
        pieces.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos) break;
        text.remove_prefix(end + 1);
    }
    pieces.resize(std::max<size_t>(pieces.size(), 3));
    StoppedClock clock;
    FileNameTemplate settings;
    settings.text = pieces[0];
    const std::string name = defaultFileName(settings, pieces[1], pieces[2], clock);
    checkName(name, true);
    FUZZ_CHECK(settings.nextNumber >= 1 && settings.nextNumber <= FileNameTemplate::largestNumber);
    FUZZ_CHECK(freePath("C:/x", name, ".png").extension() == ".png");
    FUZZ_CHECK(!safeFileName(pieces[2]).empty() && isUtf8(safeFileName(pieces[2])));
    checkStart({pieces.begin() + 3, pieces.end()});
    return 0;
}
