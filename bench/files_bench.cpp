// Picture files: whole processes that read one file and write another, ours beside vips, and joining tiles of a page.

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "capture/tile_join.h"
#include "harness.h"
#include "program_times.h"
#include "support/paths.h"

namespace glimmer::bench {

namespace {

constexpr int rounds = 11;
/// The level at which PNG files are compared.
constexpr const char* pngLevel = "[compression=6]";

/// Files of one run; removed at its end.
class WorkFolder {
public:
    WorkFolder() : path_(std::filesystem::path("build") / "bench-files") { std::filesystem::create_directories(path_); }
    ~WorkFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    WorkFolder(WorkFolder&&) = delete;
    WorkFolder& operator=(WorkFolder&&) = delete;
    [[nodiscard]] std::string file(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

/// A program with its arguments, and the file that it writes.
struct Command {
    std::string program;
    std::vector<std::string> arguments;
    std::string output;
};

struct Measured {
    double wall = 0;
    double processor = 0;
    double bytes = 0;
};

/// The commands by turns, and of each the shortest times: what other programs took from the machine at the same time
/// then counts least. Nothing for a command that fails.
std::vector<std::optional<Measured>> measure(const std::vector<Command>& commands) {
    std::vector<std::optional<Measured>> result(commands.size());
    for (int round = 0; round < rounds; ++round) {
        for (size_t i = 0; i < commands.size(); ++i) {
            std::error_code ignored;
            std::filesystem::remove(commands[i].output, ignored);
            const std::optional<ProcessTimes> times = runProgram(commands[i].program, commands[i].arguments);
            const auto bytes = static_cast<double>(std::filesystem::file_size(commands[i].output, ignored));
            if (!times || ignored) continue;
            if (!result[i]) result[i] = Measured{times->wall, times->processor, bytes};
            result[i]->wall = std::min(result[i]->wall, times->wall);
            result[i]->processor = std::min(result[i]->processor, times->processor);
        }
    }
    return result;
}

void fileTable() {
    const WorkFolder folder;
    const std::string ours = ownProgram("bench_convert");
    const bool peer = runProgram("vips", {"--version"}).has_value();
    const std::vector<std::string> columns = {"picture",  "task",         "ms",         "processor ms",
                                              "vips, ms", "processor ms", "time ratio", "processor ratio",
                                              "bytes",    "size ratio"};
    std::vector<std::vector<std::string>> rows;
    for (const std::string name : {"shop-1920x1080", "table-1280x10000", "article-1280x1024"}) {
        const std::string png = (std::filesystem::path(test::samplesFolder) / (name + ".png")).string();
        // Made by the rows before.
        const std::string jpeg = folder.file(name + ".jpg");
        const struct {
            const char* task;
            std::string input;
            const char* extension;      ///< of what we write
            const char* peerExtension;  ///< of what vips writes; null where it writes no such file
            const char* peerOptions;
            bool sizes;  ///< whether the sizes say anything
        } tasks[] = {
            {"read PNG, write PNG", png, ".png", ".png", pngLevel, true},
            {"read PNG, write plain pixels", png, ".bmp", ".ppm", "", false},
            {"read PNG, write JPEG", png, ".jpg", ".jpg", "[Q=80]", true},
            {"read JPEG, write plain pixels", jpeg, ".bmp", ".ppm", "", false},
            {"read PNG, write PDF", png, ".pdf", nullptr, "", true},
        };
        for (const auto& task : tasks) {
            const std::string output = folder.file(name + task.extension);
            std::vector<Command> commands = {{ours, {task.input, output}, output}};
            if (peer && task.peerExtension != nullptr) {
                const std::string other = folder.file(name + "-vips" + task.peerExtension);
                commands.push_back({"vips", {"copy", task.input, other + task.peerOptions}, other});
            }
            const std::vector<std::optional<Measured>> measured = measure(commands);
            std::vector<std::string> row = {name, task.task};
            if (!measured[0]) {
                row.emplace_back("failed");
                row.resize(columns.size());
                rows.push_back(row);
                continue;
            }
            const Measured& own = *measured[0];
            row.insert(row.end(), {milliseconds(own.wall), own.processor > 0 ? milliseconds(own.processor) : ""});
            const bool both = measured.size() > 1 && measured[1];
            if (both)
                row.insert(row.end(),
                           {milliseconds(measured[1]->wall), milliseconds(measured[1]->processor),
                            ratio(own.wall / measured[1]->wall), ratio(own.processor / measured[1]->processor)});
            else
                row.insert(row.end(), {"", "", "", ""});
            row.push_back(task.sizes ? std::to_string(static_cast<int64_t>(own.bytes)) : "");
            row.push_back(task.sizes && both ? ratio(own.bytes / measured[1]->bytes) : "");
            rows.push_back(row);
            if (both && std::strcmp(task.peerOptions, pngLevel) == 0) {
                goalAtMost("writing PNG, " + name + ": time of vips", own.wall / measured[1]->wall, 1);
                goalAtMost("writing PNG, " + name + ": bytes of vips", own.bytes / measured[1]->bytes, 1.05);
            }
        }
    }
    printTable("Picture files, whole processes", columns, rows);
}

/// A long page of one column, beside a plain copy of the same bytes, once into memory that is in use already and once
/// into fresh memory, which a page that is joined needs.
void tileTable() {
    constexpr int32_t tileCount = 40;
    constexpr Size tile{1280, 750};
    PageTiles page;
    page.width = page.cw = tile.width;
    page.ch = tile.height;
    page.height = tile.height * tileCount;
    page.rows = tileCount;
    page.cols = 1;
    const TBitmap source = noisePicture({page.width, page.height}, PixelFormat::Bgra32);
    std::vector<TBitmap> tiles;
    const auto cut = [&] {
        tiles.clear();
        for (int32_t i = 0; i < tileCount; ++i)
            tiles.push_back(source.cropped({0, i * tile.height, tile.width, (i + 1) * tile.height}).take());
    };
    TBitmap copy = source.clone().take();
    const auto copyInto = [&](TBitmap& target) {
        std::memcpy(target.bytes().data(), source.bytes().data(), source.byteCount());
    };
    const std::vector<double> times = compare({
        {"joining", [&] { copy = joinTiles(page, std::move(tiles), 0).take(); }, cut},
        {"memcpy", [&] { copyInto(copy); }},
        {"memcpy into fresh memory",
         [&] {
             TBitmap fresh = TBitmap::create(page.width, page.height, PixelFormat::Bgra32).take();
             copyInto(fresh);
             copy = std::move(fresh);
         }},
    });
    goalAtLeast("joining 40 tiles: speed of memcpy into fresh memory", times[2] / times[0], 0.5);
    printTable("Joining 40 tiles to a page of 1280 x 30000, 32 bits",
               {"", "ms", "memcpy, ms", "speed of memcpy", "memcpy into fresh memory, ms", "speed of that"},
               {{"joining", milliseconds(times[0]), milliseconds(times[1]), ratio(times[1] / times[0]),
                 milliseconds(times[2]), ratio(times[2] / times[0])}});
}

}  // namespace

void files() {
    fileTable();
    tileTable();
}

}  // namespace glimmer::bench
