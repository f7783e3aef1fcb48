// start_bench NAME COMMAND...: how long each program takes from its start until the picture that it was given is on the
// screen, as a whole process. In a COMMAND "%s" stands for the picture's file, "%w" for its name under Wine. Native;
// looks at the X display, which is the same for all.

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <thread>

#include "common/files.h"
#include "common/text.h"
#include "harness.h"
#include "imaging/png_codec.h"
// Last: they make macros of common words.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#undef Status

namespace glimmer::bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int rounds = 7;
constexpr std::chrono::seconds patience{30};
/// Rows of the screen that are looked at; every program shows the picture in one of them.
constexpr int firstRow = 150;
constexpr int rowDistance = 100;
constexpr int rowCount = 6;
/// So many pixels of the picture in one row, and it is painted.
constexpr int enough = 100;

/// One colour that nothing else on a screen has.
constexpr Colour beacon = rgb(0x37, 0xE1, 0x5A);
constexpr unsigned long beaconPixel = 0x37E15A;

class Screen {
public:
    Screen() : display_(XOpenDisplay(nullptr)) {}
    ~Screen() {
        if (display_ != nullptr) XCloseDisplay(display_);
    }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    Screen(Screen&&) = delete;
    Screen& operator=(Screen&&) = delete;
    explicit operator bool() const { return display_ != nullptr; }

    [[nodiscard]] bool showsPicture() const {
        const int number = DefaultScreen(display_);
        const auto width = static_cast<unsigned>(DisplayWidth(display_, number));
        for (int i = 0; i < rowCount; ++i) {
            const int row = firstRow + i * rowDistance;
            if (row >= DisplayHeight(display_, number)) break;
            XImage* image = XGetImage(display_, RootWindow(display_, number), 0, row, width, 1, AllPlanes, ZPixmap);
            if (image == nullptr) continue;
            int seen = 0;
            for (unsigned x = 0; x < width; ++x)
                seen += (XGetPixel(image, static_cast<int>(x), 0) & 0xFFFFFFU) == beaconPixel ? 1 : 0;
            XDestroyImage(image);
            if (seen >= enough) return true;
        }
        return false;
    }

private:
    Display* display_;
};

/// Only itself is ended later: the services that Wine starts for it serve the next one too.
pid_t start(const std::string& command) {
    const pid_t child = fork();
    if (child != 0) return child;
    const bool quiet = std::freopen("/dev/null", "r", stdin) != nullptr &&
                       std::freopen("/dev/null", "w", stdout) != nullptr &&
                       std::freopen("/dev/null", "w", stderr) != nullptr;
    if (!quiet) _exit(127);
    execl("/bin/sh", "sh", "-c", ("exec " + command).c_str(), nullptr);
    _exit(127);
}

bool waitUntil(const Screen& screen, bool shown) {
    const auto end = Clock::now() + patience;
    while (screen.showsPicture() != shown) {
        if (Clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

/// Milliseconds from the start to the picture; nothing when it did not come.
std::optional<double> once(const Screen& screen, const std::string& command) {
    if (!waitUntil(screen, false)) return std::nullopt;
    const auto begin = Clock::now();
    const pid_t program = start(command);
    const bool shown = waitUntil(screen, true);
    const double time = std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
    kill(program, SIGTERM);
    int status = 0;
    const auto end = Clock::now() + std::chrono::seconds(5);
    while (waitpid(program, &status, WNOHANG) == 0) {
        if (Clock::now() > end) kill(program, SIGKILL);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return shown ? std::optional(time) : std::nullopt;
}

std::string quoted(const std::string& text) {
    std::string all = "'";
    return all.append(text).append("'");
}

int run(int count, char** arguments) {
    const Screen screen;
    if (!screen) {
        std::fprintf(stderr, "start_bench: no display\n");
        return 1;
    }
    const std::filesystem::path picture = std::filesystem::absolute("build/start picture.png");
    TBitmap page = TBitmap::create(1280, 1024, PixelFormat::Bgr24).take();
    page.fill(page.bounds(), beacon);
    const auto file = encodePng(page);
    if (!file || !writeFile(picture, *file)) return 1;
    std::vector<std::vector<double>> times(static_cast<size_t>(count / 2));
    // By turns, so that whatever else the machine does meets all alike; the first round warms up.
    for (int round = 0; round <= rounds; ++round) {
        for (size_t i = 0; i < times.size(); ++i) {
            std::string command = replaceAll(arguments[2 * i + 1], "%s", quoted(picture.string()));
            command = replaceAll(command, "%w", quoted("Z:" + replaceAll(picture.string(), "/", "\\")));
            const auto time = once(screen, command);
            if (time && round > 0) times[i].push_back(*time);
        }
    }
    std::vector<std::vector<std::string>> rows;
    for (size_t i = 0; i < times.size(); ++i) {
        std::vector<double>& all = times[i];
        std::sort(all.begin(), all.end());
        rows.push_back({arguments[2 * i], all.empty() ? "did not show it" : milliseconds(all[all.size() / 2]),
                        all.empty() ? "-" : milliseconds(all.front())});
    }
    printTable("From the start of the program to the picture on the screen, warm (milliseconds)",
               {"program", "median", "best"}, rows);
    std::filesystem::remove(picture);
    return 0;
}

}  // namespace
}  // namespace glimmer::bench

int main(int count, char** arguments) {
    if (count < 3 || count % 2 == 0) return 2;
    return glimmer::bench::run(count - 1, arguments + 1);
}
