#pragma once

#include <windows.h>

namespace glimmer {

/// A library of the system by its bare name ("dwmapi.dll"), from the system's own folder and nowhere else: a file of
/// that name beside the program or in the current folder is never taken. It stays loaded. Null when the system has
/// none.
HMODULE systemLibrary(const wchar_t* name);

/// A function that not every version of the system has; null where it or its library is missing. The library stays.
/// Ask once and keep the answer: `static const auto flush = systemFunction<decltype(&DwmFlush)>(L"dwmapi.dll",
/// "DwmFlush");`
template <class Function>
Function systemFunction(const wchar_t* library, const char* name) {
    const HMODULE module = systemLibrary(library);
    if (module == nullptr) return nullptr;
    // Through void*: the compiler warns of casts between types of functions.
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

}  // namespace glimmer
