#pragma once

namespace glimmer {

/// The user's own settings for HTTP/1.1 ("EnableHttp1_1", and for proxies "ProxyHttp1.1"), switched off while a request
/// is opened. All programs of the user see them, so they are off as shortly as can be, one process and one thread at a
/// time, and what has to come back is written down before it goes: whoever finds that note, and nobody at work, puts
/// the switches back.
class Http11Switches {
public:
    Http11Switches() = default;
    ~Http11Switches() { restore(); }
    Http11Switches(const Http11Switches&) = delete;
    Http11Switches& operator=(const Http11Switches&) = delete;
    Http11Switches(Http11Switches&&) = delete;
    Http11Switches& operator=(Http11Switches&&) = delete;

    /// True when at least one was on and is off now. Nothing is changed, and the answer is false, when other processes
    /// are at it for five seconds on end, or when the note cannot be written.
    bool switchOff(bool forProxies);
    /// On the same thread: 1 for each that was changed.
    void restore();

private:
    void* lock_ = nullptr;  // HANDLE of a mutex that this thread owns; null: nothing is changed
};

/// For the start of the program: puts back what a process that was killed left. Waits for nobody.
void restoreHttp11Switches();

}  // namespace glimmer
