#include "common/host_kind.h"

namespace glimmer {

namespace {
HostKind currentKind = HostKind::Standalone;
NotifyHandler currentHandler = nullptr;
}  // namespace

HostKind hostKind() { return currentKind; }
void setHostKind(HostKind kind) { currentKind = kind; }

void notifyHost(const std::string& name, const std::string& value) {
    if (currentHandler != nullptr) currentHandler(name, value);
}
void setNotifyHandler(NotifyHandler handler) { currentHandler = handler; }

}  // namespace glimmer
