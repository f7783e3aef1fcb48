#pragma once

#include <cstdint>
#include <optional>
#include <string>

// How a second start of the standalone program finds the first and tells it what to do: a mutex says that one runs,
// a mapping holds the file to open, and messages registered under a name reach its main form. What several starts want
// at the same time is handed over one after the other, and a start stays until it was heard.

namespace glimmer {

enum class InstanceClaim : uint8_t {
    First,       ///< this process is the instance until it ends
    Another,     ///< another process is
    OutOfReach,  ///< another is, with rights that this one has not: nothing can be handed to it
};
/// Makes this process the instance unless there is one, both in one step.
InstanceClaim claimInstance();

/// Numbers of the two registered messages.
uint32_t terminateMessage();
uint32_t restoreMessage();

/// Tells every instance to end, and waits until each has taken the message. Programs that hang are passed over.
void sendTerminate();

/// After InstanceClaim::Another: has the instance show itself and open what the text names (nothing: only show
/// itself), and lets it bring its windows to the front. Waits its turn behind other starts, and until the instance has
/// heard. True when it has; false when this process is to go on as an instance of its own: the other one has ended
/// meanwhile and this one has taken its place, or it did not answer within the limit.
bool handOver(const std::optional<std::string>& text, uint32_t limitMilliseconds = 15000);

/// Marks the window (HWND) that takes the messages for other starts to find.
void markReceiver(void* window);
/// Identifier of the process of an instance that takes them; 0 when there is none.
uint32_t instanceProcess();
/// The text of another start, once, and its wish as heard. Nothing when there is none.
std::optional<std::string> takeHandedOver();

}  // namespace glimmer
