#include "common/shell_start.h"

#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>

#include "common/wide_text.h"

namespace glimmer {

namespace {

class SystemShellStart : public ShellStart {
public:
    bool open(const std::string& target, const std::string& parameters) override {
        const std::wstring file = toWide(target);
        const std::wstring arguments = toWide(parameters);
        SHELLEXECUTEINFOW info{};
        info.cbSize = sizeof info;
        info.fMask = SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
        info.lpVerb = L"open";
        info.lpFile = file.c_str();
        info.lpParameters = arguments.empty() ? nullptr : arguments.c_str();
        info.nShow = SW_SHOWNORMAL;
        return ShellExecuteExW(&info) != FALSE;
    }
};

ShellStart* replacement = nullptr;

}  // namespace

ShellStart& shellStart() {
    static SystemShellStart start;
    if (replacement != nullptr) return *replacement;
    return start;
}

void setShellStart(ShellStart* start) { replacement = start; }

bool showInFolder(const std::string& path) { return shellStart().open("explorer", "/select,\"" + path + "\""); }

}  // namespace glimmer
