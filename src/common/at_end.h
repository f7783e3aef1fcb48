#pragma once

#include <utility>

#include "common/boundary.h"

namespace glimmer {

/// Does something at the end of its scope, however that is left. What goes wrong in it is told and goes no further.
template <class Action>
class AtEnd {
public:
    explicit AtEnd(Action action) : action_(std::move(action)) {}
    ~AtEnd() { guarded(action_); }
    AtEnd(const AtEnd&) = delete;
    AtEnd& operator=(const AtEnd&) = delete;
    AtEnd(AtEnd&&) = delete;
    AtEnd& operator=(AtEnd&&) = delete;

private:
    Action action_;
};

}  // namespace glimmer
