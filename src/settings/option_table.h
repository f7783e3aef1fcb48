#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "common/host_kind.h"

namespace glimmer {

/// What control an option is, which also says how its value is kept.
enum class OptionKind : uint8_t {
    Check,   ///< on or off
    Radio,   ///< on or off, one of a group
    Combo,   ///< index into a fixed list of texts
    Spin,    ///< a number in a range
    Colour,  ///< 0x00BBGGRR
    HotKey,  ///< shortcut value, see hot_key.h
    Text,    ///< any text; also a choice from a list that each machine fills differently
};

/// One option: a control of the options form, kept under its name.
struct Option {
    std::string_view page;     ///< of the options dialog; empty for an option that is not shown there
    std::string_view control;  ///< name of the control and key of the stored value
    OptionKind kind;
    std::string_view caption;
    int32_t standard = 0;  ///< value when nothing is stored
    int32_t least = 0;     ///< range of a number; a stored one outside it is moved to its nearer end
    int32_t most = 0;
    std::span<const std::string_view> texts{};  ///< of a Combo
    std::string_view standardText{};            ///< of a Text
};

/// Every option, page by page in the order of the dialog.
std::span<const Option> optionTable();

/// Place of an option in the table. An unknown control is a programming error ("pControl!=NULL", "uFormOptions").
size_t optionIndex(std::string_view control);

/// The default file name template: each of the two products has its own. The standalone program is the one, a host's
/// add-on the other.
std::string_view standardFilenameTemplate(HostKind kind);

}  // namespace glimmer
