#include "settings/hot_key.h"

#include <algorithm>
#include <iterator>

namespace glimmer {

namespace {

struct KeyName {
    uint8_t code;
    const char* name;
};

// Virtual key codes as the system numbers them, with the names on the keys.
constexpr KeyName names[] = {
    {0x03, "Break"},       {0x08, "Backspace"}, {0x09, "Tab"},   {0x0D, "Enter"},
    {0x13, "Pause"},       {0x1B, "Esc"},       {0x20, "Space"}, {0x21, "Page Up"},
    {0x22, "Page Down"},   {0x23, "End"},       {0x24, "Home"},  {0x25, "Left"},
    {0x26, "Up"},          {0x27, "Right"},     {0x28, "Down"},  {0x2C, "Print Screen"},
    {0x2D, "Ins"},         {0x2E, "Del"},       {0x6A, "Num *"}, {0x6B, "Num +"},
    {0x6D, "Num -"},       {0x6E, "Num ."},     {0x6F, "Num /"}, {0xBB, "+"},
    {0xBC, ","},           {0xBD, "-"},         {0xBE, "."},     {0x90, "Num Lock"},
    {0x91, "Scroll Lock"},
};

std::string keyText(uint8_t code) {
    if ((code >= '0' && code <= '9') || (code >= 'A' && code <= 'Z')) return {static_cast<char>(code)};
    if (code >= 0x60 && code <= 0x69) return std::string("Num ").append(std::to_string(code - 0x60));
    if (code >= 0x70 && code <= 0x87) return std::string("F").append(std::to_string(code - 0x6F));
    const auto* known =
        std::find_if(std::begin(names), std::end(names), [code](const KeyName& name) { return name.code == code; });
    return known == std::end(names) ? std::string("Key ").append(std::to_string(code)) : known->name;
}

}  // namespace

bool mayBeGlobal(int32_t hotKey) {
    if ((hotKey & (hotKeyCtrl | hotKeyAlt)) != 0) return true;
    const uint8_t code = hotKeyCode(hotKey);
    constexpr uint8_t pause = 0x13;
    constexpr uint8_t printScreen = 0x2C;
    constexpr uint8_t scrollLock = 0x91;
    const bool function = code >= 0x70 && code <= 0x87;
    const bool media = code >= 0xA6 && code <= 0xB7;
    return function || media || code == pause || code == printScreen || code == scrollLock;
}

std::string hotKeyText(int32_t hotKey) {
    if (hotKeyCode(hotKey) == 0) return "None";
    std::string text;
    if ((hotKey & hotKeyCtrl) != 0) text += "Ctrl+";
    if ((hotKey & hotKeyShift) != 0) text += "Shift+";
    if ((hotKey & hotKeyAlt) != 0) text += "Alt+";
    return text + keyText(hotKeyCode(hotKey));
}

}  // namespace glimmer
