#pragma once

#include <cstdint>
#include <string>

namespace glimmer {

/// What loaded the library. One process-wide value, set by the library's start-up.
enum class HostKind : uint8_t {
    Standalone = 0,
    Firefox = 1,
    InternetExplorer = 2,
    Thunderbird = 3,
    SeaMonkey = 4,
    Chrome = 5,
};

HostKind hostKind();
void setHostKind(HostKind kind);
inline bool isStandalone() { return hostKind() == HostKind::Standalone; }
inline bool isInternetExplorer() { return hostKind() == HostKind::InternetExplorer; }
inline bool isChrome() { return hostKind() == HostKind::Chrome; }
/// The name that the user knows the program by: on its own it is "Glimmerpad", in a browser "Vistrane".
inline const char* productName() { return isStandalone() ? "Glimmerpad" : "Vistrane"; }

/// Asks the host to act: a request name ("openURL", "enableResumeMenu", ...) and its value. Does nothing while no
/// handler is set. The library's start-up sets the handler that calls the host; the standalone program's controller
/// sets one of its own.
void notifyHost(const std::string& name, const std::string& value);
using NotifyHandler = void (*)(const std::string& name, const std::string& value);
void setNotifyHandler(NotifyHandler handler);

}  // namespace glimmer
