#include "settings/settings.h"

#include <memory>

#include "common/files.h"
#include "common/text.h"
#include "common/worker_thread.h"
#include "settings/settings_path.h"

namespace glimmer {

namespace {

constexpr size_t longestStyleName = 1000;

std::string currentPath;

std::unique_ptr<TCachedMemIniFile>& sharedStore() {
    // Whoever ends a session closes the store. Should it still be open when the process ends, it is saved too, but
    // nobody can be told of a failure: there are no windows any more.
    struct Holder {
        std::unique_ptr<TCachedMemIniFile> store;
        ~Holder() { setSettingsFailureHandler({}); }
    };
    static Holder holder;
    return holder.store;
}

}  // namespace

const std::string& settingsPath() { return currentPath; }

void setSettingsPath(std::string path) {
    closeSettings();
    currentPath = std::move(path);
}

TCachedMemIniFile& settings() {
    GLIMMER_ASSERT_NO_WORKER("settings");
    std::unique_ptr<TCachedMemIniFile>& store = sharedStore();
    if (!store) store = std::make_unique<TCachedMemIniFile>(pathFromUtf8(settingsPath()));
    return *store;
}

void closeSettings() { sharedStore().reset(); }

std::string settingsSection(std::string_view group) { return std::string(settingsRoot).append("\\").append(group); }

std::string styleSection(std::string_view styleName) {
    return settingsSection(group::styles).append("\\").append(styleName);
}

std::vector<std::string> styleNames(const TCachedMemIniFile& store) {
    const std::string key = settingsSection(group::styles);
    std::vector<std::string> names;
    for (const std::string& section : store.readSections()) {
        if (equalsIgnoringCase(section, key)) {
            names.emplace_back();
        } else if (section.size() > key.size() && section[key.size()] == '\\' &&
                   equalsIgnoringCase(section.substr(0, key.size()), key)) {
            names.push_back(firstUnits(std::string_view(section).substr(key.size() + 1), longestStyleName));
        }
    }
    return names;
}

}  // namespace glimmer
