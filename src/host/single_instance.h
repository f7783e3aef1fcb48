#pragma once

#include <cstdint>
#include <optional>
#include <string>

// How a second start of the standalone program finds the first and tells it what to do: a mutex says that one runs,
// a mapping holds the file to open, and messages registered under a name reach its main form. Nobody waits for an
// answer.

namespace glimmer {

/// Whether an instance runs: looks for its mark. The handle stays open until the process ends.
bool anotherInstanceRuns();
/// Makes this process the instance until it ends.
void claimInstance();

/// Numbers of the two registered messages.
uint32_t terminateMessage();
uint32_t restoreMessage();

/// Tells every instance to end, and waits until each has taken the message.
void sendTerminate();
/// Tells every instance to show itself, and to open what is handed over.
void postRestore();

/// Puts a text where the first instance finds it, for as long as this process lives.
void handOver(const std::string& text);
/// The text of a second instance, once: it is emptied in its place, since the mapping outlives its maker as soon as
/// it was opened here. Nothing when there is none.
std::optional<std::string> takeHandedOver();

/// Lets the first process named "glimmerpad.exe" bring its windows to the front.
void allowFirstToTakeForeground();

}  // namespace glimmer
