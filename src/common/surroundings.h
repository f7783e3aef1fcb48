#pragma once

#include <cstdint>

namespace glimmer {

/// While one stands, the thread is set up for our code, whatever the host's manifest says: windows are made of version
/// 6 of the common controls (the activation context of the library's own manifest), and positions are physical pixels
/// on every monitor (the thread's DPI awareness is per monitor, where the system has that). At the end the thread is as
/// it was. They nest, and end in the reverse order on the same thread.
class OwnSurroundings {
public:
    OwnSurroundings() noexcept;
    ~OwnSurroundings();
    OwnSurroundings(const OwnSurroundings&) = delete;
    OwnSurroundings& operator=(const OwnSurroundings&) = delete;
    OwnSurroundings(OwnSurroundings&&) = delete;
    OwnSurroundings& operator=(OwnSurroundings&&) = delete;

private:
    uintptr_t cookie_ = 0;  // 0: nothing was activated
    void* dpi_ = nullptr;   // DPI_AWARENESS_CONTEXT from before; null: not changed
};

/// The reverse, around a call of the host's code: the thread as it was when the host introduced itself.
class HostSurroundings {
public:
    HostSurroundings() noexcept;
    ~HostSurroundings();
    HostSurroundings(const HostSurroundings&) = delete;
    HostSurroundings& operator=(const HostSurroundings&) = delete;
    HostSurroundings(HostSurroundings&&) = delete;
    HostSurroundings& operator=(HostSurroundings&&) = delete;

    /// Keeps what the thread has now, before ours are set up, as the host's.
    static void remember() noexcept;

private:
    uintptr_t cookie_ = 0;
    void* dpi_ = nullptr;
};

}  // namespace glimmer
