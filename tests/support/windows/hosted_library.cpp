#include "support/windows/hosted_library.h"

#include <gtest/gtest.h>

#include <fstream>
#include <utility>

#include "support/windows/test_account.h"

namespace glimmer::test {

namespace {

std::vector<std::wstring> notices;
std::function<void(const std::wstring&)> noticeAction;

void GLIMMERPAD_NOTIFY notify(const char* name, const wchar_t* value) {
    std::wstring text;
    for (const char* at = name; *at != '\0'; ++at) text += static_cast<wchar_t>(*at);
    text += L" ";
    text += value;
    notices.push_back(text);
    if (noticeAction) noticeAction(text);
}

}  // namespace

std::filesystem::path programFolder() { return buildFolder() / "bin"; }

std::filesystem::path libraryPath() { return programFolder() / "glimmerpad.dll"; }

HostedLibrary::HostedLibrary(const std::string& settings, uint8_t kind, const std::filesystem::path& path)
    : module(LoadLibraryW(path.c_str())), settings_(path.parent_path() / "vx_ie_settings.ini") {
    if (module == nullptr) {
        ADD_FAILURE() << path << " cannot be loaded, error " << GetLastError();
        return;
    }
    std::error_code ignored;
    std::filesystem::remove(settings_, ignored);
    if (!settings.empty()) writeSettings(settings);
    GlimmerpadInterface record = {};
    record.version = GLIMMERPAD_INTERFACE_VERSION;
    const auto initLibrary = exportOf<GlimmerpadInitLibrary>(module, "initLibrary");
    if (initLibrary == nullptr || initLibrary(&record, sizeof record) != 1) ADD_FAILURE() << "initLibrary failed";
    hostInit = GLIMMERPAD_ENTRY(GlimmerpadHostInit, record.hostInit);
    hostCapture = GLIMMERPAD_ENTRY(GlimmerpadHostCapture, record.hostCapture);
    hostShutdown = GLIMMERPAD_ENTRY(GlimmerpadHostShutdown, record.hostShutdown);
    hostExecute = GLIMMERPAD_ENTRY(GlimmerpadHostExecute, record.hostExecute);
    hostFinishCapture = GLIMMERPAD_ENTRY(GlimmerpadHostFinishCapture, record.hostFinishCapture);
    notices.clear();
    const GlimmerpadHostRecord host = {notify};
    hostInit(kind, &host);
}

HostedLibrary::~HostedLibrary() {
    if (module == nullptr) return;
    hostShutdown();
    std::error_code ignored;
    std::filesystem::remove(settings_, ignored);
    FreeLibrary(module);
}

int32_t HostedLibrary::json(const wchar_t* function, std::string_view text) const {
    const GlimmerpadPayload payload = {static_cast<uint32_t>(text.size()), text.data()};
    return execute(L"JSONFunction", nullptr, function, &payload);
}

std::vector<uint8_t> HostedLibrary::encodedContent() const {
    GlimmerpadContent content = {};
    EXPECT_EQ(execute(L"getEncodedContent", &content), 1);
    const auto* bytes = static_cast<const uint8_t*>(content.data);
    if (bytes == nullptr) return {};
    return {bytes, bytes + content.length};
}

bool HostedLibrary::resumeAvailable() const {
    uint8_t available = 0xAA;
    EXPECT_EQ(execute(L"getResumeAvailable", &available), 1);
    EXPECT_LE(available, 1);
    return available == 1;
}

void HostedLibrary::writeSettings(const std::string& text) const { std::ofstream(settings_, std::ios::binary) << text; }

std::vector<std::wstring> HostedLibrary::takeNotices() { return std::exchange(notices, {}); }

void HostedLibrary::onNotice(std::function<void(const std::wstring&)> action) { noticeAction = std::move(action); }

}  // namespace glimmer::test
