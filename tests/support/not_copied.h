#pragma once

namespace glimmer::test {

/// Base of what owns something for as long as it lives: neither copied nor moved.
struct NotCopied {
    NotCopied() = default;
    NotCopied(const NotCopied&) = delete;
    NotCopied& operator=(const NotCopied&) = delete;
};

}  // namespace glimmer::test
