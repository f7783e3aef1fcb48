#pragma once

namespace glimmer {

/// The vendor's web site, without a slash at its end.
inline constexpr const char* vendorSite = "https://www.glimmerpad.example";

}  // namespace glimmer
