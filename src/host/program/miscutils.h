#pragma once

#include <cstdint>
#include <string>

#include "common/host_kind.h"

namespace glimmer {

/// Puts the system's own message boxes, pixel memory and code page behind the core's interfaces. First thing of all.
void connectSystem();

/// Full path of the settings file of a kind of host, in this process, for the library in its folder. Folders of the
/// user are made when they are missing; a file is made where the rule tries whether it can be.
std::string chooseSettingsPath(HostKind kind);

/// Sets the process's host kind and its settings file.
void setHost(HostKind kind);

/// The one routine for named mappings. With a file name the file backs the mapping (it must exist), else the paging
/// file does. `create` makes a mapping of `size` bytes, otherwise an existing one is opened. Answers a writeable view
/// of the whole mapping or null. UnmapViewOfFile is the only release; the handle of a mapping
/// that was made stays with the process.
void* MapSharedView(const wchar_t* fileName, const wchar_t* mappingName, uint32_t size, bool create);

}  // namespace glimmer
