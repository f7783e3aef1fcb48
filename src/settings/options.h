#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "settings/cached_mem_ini_file.h"
#include "settings/option_table.h"

namespace glimmer {

/// The values of all options (option_table.h), addressed by control name. Every value is in its range.
class Options {
public:
    /// The defaults for this process's host kind.
    Options();

    /// Reads each option that the file has; the others get their defaults. A radio group with none or several chosen
    /// gets its default too.
    void load(const TCachedMemIniFile& store);
    void store(TCachedMemIniFile& store) const;

    /// Of a check or radio option.
    [[nodiscard]] bool on(std::string_view control) const { return number(control) != 0; }
    /// Position, index, colour or hot key; on and off are 1 and 0.
    [[nodiscard]] int32_t number(std::string_view control) const;
    [[nodiscard]] const std::string& text(std::string_view control) const;

    /// A number outside the option's range is moved to its nearer end. Choosing a radio option releases the others.
    void setNumber(std::string_view control, int32_t value);
    void setOn(std::string_view control, bool on) { setNumber(control, on ? 1 : 0); }
    void setText(std::string_view control, std::string value);

    bool operator==(const Options&) const = default;

private:
    struct Value {
        int32_t number = 0;
        std::string text;
        bool operator==(const Value&) const = default;
    };
    std::vector<Value> values_;  // in the order of the table
};

/// The current options of the process, read from settings() at first use and after the settings file was changed.
Options& OptionsHolder();
/// Writes the current options to the settings file and tells everyone who asked to be told.
void saveOptions();

/// Has `changed` called after each saveOptions() while the object lives.
class OptionsListener {
public:
    explicit OptionsListener(std::function<void()> changed);
    ~OptionsListener();
    OptionsListener(const OptionsListener&) = delete;
    OptionsListener& operator=(const OptionsListener&) = delete;
    OptionsListener(OptionsListener&&) = delete;
    OptionsListener& operator=(OptionsListener&&) = delete;

private:
    friend void saveOptions();
    std::function<void()> changed_;
};

}  // namespace glimmer
