#pragma once

#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

// facts.exe asks the system what the program has to know of it and cannot be sure of: one question a source file or
// two. It changes nothing that stays, and needs about twenty seconds.

namespace glimmer::facts {

/// The answers: lines "key = value", printed as they come and kept for the file.
class Report {
public:
    void heading(const char* text);
    void set(const std::string& key, const std::string& value);
    [[nodiscard]] const std::string& text() const { return text_; }

private:
    std::string text_;
};

void askSystem(Report& report);
void askFiles(Report& report);
void askFileTimes(Report& report);
void askRichEdit(Report& report);
/// Before anything else has made a common control.
void askControlClasses(Report& report);
void askIconView(Report& report);
void askScreenCopies(Report& report);
void askFading(Report& report);
void askHotKeys(Report& report);
void askClipboard(Report& report);
/// Gives the user that many seconds to scroll.
void askWheel(Report& report, int seconds);

// --- what several questions need ----------------------------------------------------------------------------------

/// A plain window of ours with that caption, filled with the colour, not yet shown. Destroyed at the end.
class Window {
public:
    Window(const wchar_t* caption, const RECT& place, COLORREF colour, DWORD style = WS_OVERLAPPEDWINDOW);
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    Window(Window&&) = delete;
    Window& operator=(Window&&) = delete;

    [[nodiscard]] HWND handle() const { return handle_; }
    /// On the screen, in front of all others, without the keyboard.
    void show() const;
    /// Called for each message before the window has it; true: it is done with.
    std::function<bool(UINT message, WPARAM wParam, LPARAM lParam)> filter;

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    HBRUSH brush_;
    HWND handle_;
};

/// Lets this thread's windows live for that long.
void pumpFor(DWORD milliseconds);

/// A bitmap with its own context: 32 bits a pixel, rows from the top, 0 everywhere at first.
class Canvas {
public:
    Canvas(int width, int height);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    Canvas(Canvas&&) = delete;
    Canvas& operator=(Canvas&&) = delete;

    [[nodiscard]] HDC dc() const { return dc_; }
    void fill(uint32_t pixel);
    /// 0xRRGGBB.
    [[nodiscard]] uint32_t pixel(int x, int y) const;
    /// How many are not of that colour.
    [[nodiscard]] int othersThan(uint32_t colour) const;

private:
    int width_;
    int height_;
    HDC dc_;
    HBITMAP bitmap_;
    HGDIOBJ former_;
    uint32_t* pixels_ = nullptr;
};

/// "#FF0000".
std::string colourText(uint32_t pixel);

/// The activation context of our own manifest: common controls of version 6.
class OwnControls {
public:
    OwnControls();
    ~OwnControls();
    OwnControls(const OwnControls&) = delete;
    OwnControls& operator=(const OwnControls&) = delete;
    OwnControls(OwnControls&&) = delete;
    OwnControls& operator=(OwnControls&&) = delete;

    [[nodiscard]] bool active() const { return cookie_ != 0; }

private:
    HANDLE context_;
    ULONG_PTR cookie_ = 0;
};

}  // namespace glimmer::facts
