#pragma once

#include <cstdint>

namespace glimmer {

/// The keys that the canvas knows. Letters and digits are themselves in upper case.
enum class Key : uint16_t {
    Escape = 256,
    Enter,
    Tab,
    Backspace,
    Insert,
    Delete,
    Left,
    Right,
    Up,
    Down,
    Space,
};
constexpr Key letter(char c) { return static_cast<Key>(static_cast<unsigned char>(c)); }

/// Which of Shift, Ctrl and Alt are held.
struct Modifiers {
    bool shift = false;
    bool ctrl = false;
    bool alt = false;
    bool operator==(const Modifiers&) const = default;
};

/// What menus, buttons and shortcuts ask the canvas to do.
enum class EditCommand : uint8_t {
    Fill = 1,  // 1 to 8 are the tags of the selection toolbar's operations
    Crop,
    Annotate,
    Blur,
    Grayscale,
    Invert,
    Glow,
    Interlace,
    NewSelection,
    InvertSelection,
    AddAnnotation,
    DeleteAnnotation,
    Renumber,
    Copy,
    Cut,
    Paste,
    BringToFront,
    SendToBack,
    Undo,
    Redo,
    ToggleShape,
    ToggleText,
    ToggleLine,
    ToggleNumber,
    EditText,
};

}  // namespace glimmer
