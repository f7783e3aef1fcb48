#pragma once

#include <string>
#include <utility>

namespace glimmer {

/// Inside a catch block: shows what went wrong as one sentence. Throws nothing itself.
void reportCurrentException() noexcept;

/// Runs `action` so that no exception leaves it: one becomes a message, and the answer is `failure`. Every entry
/// point, hook and window procedure stands behind this.
template <class Action, class Answer>
Answer guarded(Answer failure, Action&& action) noexcept {
    try {
        return std::forward<Action>(action)();
    } catch (...) {
        reportCurrentException();
        return failure;
    }
}

template <class Action>
void guarded(Action&& action) noexcept {
    try {
        std::forward<Action>(action)();
    } catch (...) {
        reportCurrentException();
    }
}

}  // namespace glimmer
