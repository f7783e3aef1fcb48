#pragma once

#include <utility>

#include "common/surroundings.h"

namespace glimmer {

/// Inside a catch block: shows what went wrong as one sentence. Throws nothing itself.
void reportCurrentException() noexcept;

/// Runs `action` in our surroundings (surroundings.h) and so that no exception leaves it: one becomes a message, and
/// the answer is `failure`. An exception cannot pass through the system's frames, and the thread belongs to a host; so
/// everything that the system or a host calls stands behind this: entry points, hooks, timers, window procedures,
/// enumerations, the methods of COM objects.
template <class Action, class Answer>
Answer guarded(Answer failure, Action&& action) noexcept {
    const OwnSurroundings ours;
    try {
        return std::forward<Action>(action)();
    } catch (...) {
        reportCurrentException();
        return failure;
    }
}

template <class Action>
void guarded(Action&& action) noexcept {
    const OwnSurroundings ours;
    try {
        std::forward<Action>(action)();
    } catch (...) {
        reportCurrentException();
    }
}

}  // namespace glimmer
