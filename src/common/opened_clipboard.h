#pragma once

namespace glimmer {

/// The system's clipboard while it is ours. It is one for all programs, and another one holds it for a moment now and
/// then, so it is asked for several times, half a second in all.
class OpenedClipboard {
public:
    OpenedClipboard();
    ~OpenedClipboard();
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;
    OpenedClipboard(OpenedClipboard&&) = delete;
    OpenedClipboard& operator=(OpenedClipboard&&) = delete;
    /// Whether it could be had.
    explicit operator bool() const { return open_; }

private:
    bool open_ = false;
};

/// What a user is told who cannot have it.
constexpr const char* clipboardInUse = "The clipboard is in use by another program.";

}  // namespace glimmer
