#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/geometry.h"
#include "settings/cached_mem_ini_file.h"

namespace glimmer {

/// The kinds of control whose state is kept.
enum class ControlClass : uint8_t {
    UpDown,       ///< its position; track bars too
    CheckBox,     ///< its checked state
    RadioButton,  ///< its checked state
    ComboBox,     ///< its selection
    ColorBox,     ///< its selected colour
    HotKey,       ///< its hot key
    Other,        ///< nothing is kept
};

/// A control of a form, as the store sees it.
class FormControl {
public:
    virtual ~FormControl() = default;
    [[nodiscard]] virtual std::string name() const = 0;  ///< key of its state
    [[nodiscard]] virtual ControlClass controlClass() const = 0;
    /// Position, selection, colour or hot key; 1 and 0 for checked and not.
    [[nodiscard]] virtual int32_t value() const = 0;
    /// Only values between least() and most().
    virtual void setValue(int32_t value) = 0;
    [[nodiscard]] virtual int32_t least() const = 0;
    [[nodiscard]] virtual int32_t most() const = 0;
};

/// Writes a control's state into its form's section, by its class, under its name. No control is a programming error
/// ("pControl!=NULL", "uFormOptions").
void saveControl(TCachedMemIniFile& store, std::string_view section, const FormControl* pControl);
/// Gives a control the stored state, moved into the control's range; without one it stays as it is.
void restoreControl(const TCachedMemIniFile& store, std::string_view section, FormControl* pControl);

/// Where a window stands: its bounds when it is neither maximised nor minimised, in screen pixels, and the scale that
/// its size belongs to.
struct WindowGeometry {
    Rect bounds;
    bool maximized = false;
    int32_t dotsPerInch = 96;
    bool operator==(const WindowGeometry&) const = default;
};

/// What a monitor has for windows.
struct WorkArea {
    Rect area;
    int32_t dotsPerInch = 96;
};

/// Writes "isMaximized", only of a form, and then "Left", "Top", "Width" and "Height"; where the scale is not 96 dots
/// per inch, "DotsPerInch" as well.
void saveGeometry(TCachedMemIniFile& store, std::string_view section, const WindowGeometry& geometry, bool isForm);
/// The stored geometry, what is missing taken from `standard`, brought onto the screen: the window is as large as it
/// was to the eye, but not larger than the work area it lies on, and so much of its title bar can be seen that it can
/// be dragged. A window that lies on none of `workAreas` (a monitor that is gone) comes to the nearest one. The
/// answer's scale is that of its monitor.
WindowGeometry restoreGeometry(const TCachedMemIniFile& store, std::string_view section, const WindowGeometry& standard,
                               std::span<const WorkArea> workAreas);

}  // namespace glimmer
