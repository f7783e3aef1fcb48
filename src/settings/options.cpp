#include "settings/options.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "common/worker_thread.h"
#include "settings/settings.h"
#include "settings/settings_path.h"

namespace glimmer {

namespace {

std::string section() { return settingsSection(group::general); }

bool isRadio(size_t index) { return optionTable()[index].kind == OptionKind::Radio; }

std::string standardText(const Option& option) {
    return std::string(option.control == "edtFilenameTemplate" ? standardFilenameTemplate(hostKind())
                                                               : option.standardText);
}

std::vector<OptionsListener*>& listeners() {
    static std::vector<OptionsListener*> list;
    return list;
}

}  // namespace

Options::Options() {
    for (const Option& option : optionTable()) values_.push_back({option.standard, standardText(option)});
}

void Options::load(const TCachedMemIniFile& store) {
    const Options standard;
    *this = standard;
    int chosen = 0;
    for (size_t i = 0; i < values_.size(); ++i) {
        const Option& option = optionTable()[i];
        Value& value = values_[i];
        switch (option.kind) {
            case OptionKind::Text:
                value.text = store.readString(section(), option.control, value.text);
                break;
            case OptionKind::Check:
            case OptionKind::Radio:
                value.number = store.readBool(section(), option.control, value.number != 0) ? 1 : 0;
                break;
            default:
                value.number = store.readInteger(section(), option.control, value.number, option.least, option.most);
        }
        if (isRadio(i)) chosen += value.number;
    }
    // The watermark's source is the only group.
    if (chosen == 1) return;
    for (size_t i = 0; i < values_.size(); ++i)
        if (isRadio(i)) values_[i] = standard.values_[i];
}

void Options::store(TCachedMemIniFile& store) const {
    for (size_t i = 0; i < values_.size(); ++i) {
        const Option& option = optionTable()[i];
        if (option.kind == OptionKind::Text) {
            store.writeString(section(), option.control, values_[i].text);
        } else {
            store.writeInteger(section(), option.control, values_[i].number);
        }
    }
}

int32_t Options::number(std::string_view control) const { return values_[optionIndex(control)].number; }

const std::string& Options::text(std::string_view control) const { return values_[optionIndex(control)].text; }

void Options::setNumber(std::string_view control, int32_t value) {
    const size_t index = optionIndex(control);
    const Option& option = optionTable()[index];
    if (isRadio(index)) {
        for (size_t i = 0; i < values_.size(); ++i)
            if (isRadio(i)) values_[i].number = (i == index) == (value != 0) ? 1 : 0;
        return;
    }
    values_[index].number = std::clamp(value, option.least, option.most);
}

void Options::setText(std::string_view control, std::string value) {
    values_[optionIndex(control)].text = std::move(value);
}

Options& OptionsHolder() {
    GLIMMER_ASSERT_NO_WORKER("uFormOptions");
    static Options options;
    static std::optional<std::string> source;
    if (source != settingsPath()) {
        source = settingsPath();
        options.load(settings());
    }
    return options;
}

void saveOptions() {
    OptionsHolder().store(settings());
    settings().save();
    // A listener may add or remove others while it is called.
    const std::vector<OptionsListener*> called = listeners();
    for (OptionsListener* listener : called) {
        const std::vector<OptionsListener*>& present = listeners();
        if (std::find(present.begin(), present.end(), listener) != present.end()) listener->changed_();
    }
}

OptionsListener::OptionsListener(std::function<void()> changed) : changed_(std::move(changed)) {
    listeners().push_back(this);
}

OptionsListener::~OptionsListener() { std::erase(listeners(), this); }

}  // namespace glimmer
