#pragma once

namespace glimmer {

/// A small window far outside the screen, at the top of the window order, for a browser whose own windows belong to
/// another process.
class TChromeFGWndPatch {
public:
    TChromeFGWndPatch();
    ~TChromeFGWndPatch();
    TChromeFGWndPatch(const TChromeFGWndPatch&) = delete;
    TChromeFGWndPatch& operator=(const TChromeFGWndPatch&) = delete;
    TChromeFGWndPatch(TChromeFGWndPatch&&) = delete;
    TChromeFGWndPatch& operator=(TChromeFGWndPatch&&) = delete;

    /// To its place, its size kept.
    void moveAway();

private:
    void* window_ = nullptr;  ///< HWND
};

}  // namespace glimmer
