#include "common/file_holders.h"

#include <algorithm>
#include <array>

#include "common/system_library.h"
#include "common/wide_text.h"

namespace glimmer {

namespace {

constexpr const wchar_t* library = L"rstrtmgr.dll";
/// More names than this are of no use to anybody.
constexpr size_t mostNamed = 3;

/// A session of the Restart Manager, of which the system has only so many.
class Session {
public:
    explicit Session(const RestartManager& manager) : manager_(manager) {
        std::array<wchar_t, CCH_RM_SESSION_KEY + 1> key{};
        open_ = manager_.start != nullptr && manager_.add != nullptr && manager_.list != nullptr &&
                manager_.end != nullptr && manager_.start(&handle_, 0, key.data()) == ERROR_SUCCESS;
    }
    ~Session() {
        if (open_) manager_.end(handle_);
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    Session(Session&&) = delete;
    Session& operator=(Session&&) = delete;

    std::vector<RM_PROCESS_INFO> holders(const std::filesystem::path& path) const {
        const wchar_t* name = path.c_str();
        if (!open_ || manager_.add(handle_, 1, &name, 0, nullptr, 0, nullptr) != ERROR_SUCCESS) return {};
        std::vector<RM_PROCESS_INFO> found(4);
        // Programs come and go between two calls; a list that has grown again is not worth a third.
        for (int attempt = 0; attempt < 3; ++attempt) {
            UINT needed = 0;
            UINT count = static_cast<UINT>(found.size());
            DWORD reasons = 0;
            const DWORD error = manager_.list(handle_, &needed, &count, found.data(), &reasons);
            if (error == ERROR_SUCCESS) {
                found.resize(std::min<size_t>(count, found.size()));
                return found;
            }
            if (error != ERROR_MORE_DATA) break;
            found.resize(needed);
        }
        return {};
    }

private:
    const RestartManager& manager_;
    DWORD handle_ = 0;
    bool open_ = false;
};

}  // namespace

const RestartManager& restartManager() {
    static const RestartManager manager{systemFunction<decltype(&RmStartSession)>(library, "RmStartSession"),
                                        systemFunction<decltype(&RmRegisterResources)>(library, "RmRegisterResources"),
                                        systemFunction<decltype(&RmGetList)>(library, "RmGetList"),
                                        systemFunction<decltype(&RmEndSession)>(library, "RmEndSession")};
    return manager;
}

std::vector<FileHolder> holdersOf(const std::filesystem::path& path, const RestartManager& manager) {
    std::vector<FileHolder> holders;
    const Session session(manager);
    for (const RM_PROCESS_INFO& info : session.holders(path)) {
        FileHolder holder{info.Process.dwProcessId, fromWide(info.strAppName, CCH_RM_MAX_APP_NAME)};
        if (holder.process == GetCurrentProcessId()) holder.name = "this program";
        if (!holder.name.empty()) holders.push_back(std::move(holder));
    }
    return holders;
}

std::string openIn(const std::vector<FileHolder>& holders) {
    std::vector<std::string> names;
    for (const FileHolder& holder : holders)
        if (std::find(names.begin(), names.end(), holder.name) == names.end()) names.push_back(holder.name);
    if (names.empty()) return {};
    std::string sentence = "The file is open in " + names[0];
    const size_t named = std::min(names.size(), mostNamed);
    for (size_t i = 1; i < named; ++i) sentence += (i + 1 == names.size() ? " and " : ", ") + names[i];
    if (names.size() > named) sentence += " and other programs";
    return sentence + ".";
}

}  // namespace glimmer
