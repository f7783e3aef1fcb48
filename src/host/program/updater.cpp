#include "host/program/updater.h"

#include "settings/message_box.h"

namespace glimmer {

namespace {

constexpr const char* howUpdatesCome = "Updates of this program come with the updates of the browser add-on.";

/// The add-on's own update mechanism brings the library; nothing is to be fetched from here.
class AddonUpdater : public Updater {
public:
    bool isUpdateAvailable(bool silent) override {
        if (!silent) showInformation(howUpdatesCome);
        return false;
    }
    bool download() override { return false; }
    Outcome install(const std::string&) override { return {false, howUpdatesCome}; }
};

}  // namespace

Updater& updater() {
    static AddonUpdater theUpdater;
    return theUpdater;
}

}  // namespace glimmer
