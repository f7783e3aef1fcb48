#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/child_process.h"
#include "support/not_copied.h"
#include "support/scratch_folder.h"

namespace glimmer::test {

/// A copy of a program in a folder with libraries that somebody planted there under names of the system's.
class PlantedLibraries : NotCopied {
public:
    PlantedLibraries(const std::filesystem::path& program, const std::vector<std::wstring>& names) {
        std::filesystem::copy_file(program, this->program());
        for (const std::wstring& name : names) {
            std::filesystem::copy_file(testProgram("planted").replace_extension("dll"), folder_.path() / name);
            // Wine has its own in the place of a file of such a name, wherever it is found, unless told not to.
            const std::wstring value = L"*" + (name.ends_with(L".dll") ? name.substr(0, name.size() - 4) : name);
            const std::wstring order = L"native,builtin";
            RegSetKeyValueW(HKEY_CURRENT_USER, (std::wstring(rules) + L"\\DllOverrides").c_str(), value.c_str(), REG_SZ,
                            order.c_str(), static_cast<DWORD>((order.size() + 1) * sizeof(wchar_t)));
        }
    }
    ~PlantedLibraries() { RegDeleteTreeW(HKEY_CURRENT_USER, rules); }

    [[nodiscard]] const std::filesystem::path& folder() const { return folder_.path(); }
    [[nodiscard]] std::filesystem::path program() const { return folder_.path() / "planted.exe"; }
    /// Those that were loaded by now.
    [[nodiscard]] std::vector<std::string> loaded() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
            if (entry.path().extension() == ".loaded") names.push_back(entry.path().stem().string());
        return names;
    }

private:
    static constexpr const wchar_t* rules = L"Software\\Wine\\AppDefaults\\planted.exe";
    ScratchFolder folder_{"planted"};
};

}  // namespace glimmer::test
