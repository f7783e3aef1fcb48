// The proxy dialog, what it keeps, and what a client gets of that.

#include <gtest/gtest.h>
#include <wx/checkbox.h>
#include <wx/textctrl.h>
// clang-format off
#include <wx/msw/wrapwin.h>
#include <wininet.h>
// clang-format on

#include "settings/settings.h"
#include "settings/settings_path.h"
#include "support/scratch_folder.h"
#include "support/windows/forms.h"
#include "support/windows/test_account.h"
#include "upload/proxy/uProxySettings.h"

using namespace glimmer;
using namespace glimmer::test;

namespace {

/// The settings of one test, in a file of its own.
class OwnSettings : NotCopied {
public:
    OwnSettings() : folder_("proxy settings"), before_(settingsPath()) {
        setSettingsPath((folder_.path() / "settings.ini").string());
    }
    ~OwnSettings() { setSettingsPath(before_); }

private:
    ScratchFolder folder_;
    std::string before_;
};

/// The system's own setting for this process, as it was at the end.
class SystemProxy : NotCopied {
public:
    explicit SystemProxy(const wchar_t* server) {
        set(server != nullptr ? PROXY_TYPE_DIRECT | PROXY_TYPE_PROXY : PROXY_TYPE_DIRECT, server);
    }
    ~SystemProxy() { set(PROXY_TYPE_DIRECT, nullptr); }

private:
    static void set(DWORD flags, const wchar_t* server) {
        INTERNET_PER_CONN_OPTIONW options[2]{};
        options[0].dwOption = INTERNET_PER_CONN_FLAGS;
        options[0].Value.dwValue = flags;
        options[1].dwOption = INTERNET_PER_CONN_PROXY_SERVER;
        options[1].Value.pszValue = const_cast<wchar_t*>(server != nullptr ? server : L"");
        INTERNET_PER_CONN_OPTION_LISTW list{sizeof list, nullptr, 2, 0, options};
        EXPECT_NE(InternetSetOptionW(nullptr, INTERNET_OPTION_PER_CONNECTION_OPTION, &list, sizeof list), FALSE);
    }
};

std::string stored(const char* key) { return settings().readString(settingsSection(group::uploader), key); }

}  // namespace

TEST(ProxySettings, DetectsOnceAndOnAClick) {
    if (!isTestMachine()) GTEST_SKIP() << "changes the system's proxy";
    const OwnSettings own;
    const auto first = std::make_unique<SystemProxy>(L"proxy.example:8080");
    {
        TProxySettings dialog(nullptr);
        EXPECT_EQ(dialog.GetTitle(), "Setup proxy settings");
        EXPECT_TRUE(find<wxCheckBox>(dialog, "chkUseProxyServer")->GetValue());
        EXPECT_EQ(find<wxTextCtrl>(dialog, "edtProxyAddr")->GetValue(), "proxy.example");
        EXPECT_EQ(find<wxTextCtrl>(dialog, "edtProxyPort")->GetValue(), "8080");
        EXPECT_EQ(stored("chkFirstTimeRun"), "0") << "without OK";
        EXPECT_FALSE(find<wxCheckBox>(dialog, "chkFirstTimeRun")->IsShown());
    }
    {
        const SystemProxy second(L"other.example:81");
        TProxySettings dialog(nullptr);
        EXPECT_EQ(find<wxTextCtrl>(dialog, "edtProxyAddr")->GetValue(), "proxy.example") << "only the first time";
        click(*findControl(dialog, "btnDetect"));
        EXPECT_EQ(find<wxTextCtrl>(dialog, "edtProxyAddr")->GetValue(), "other.example");
    }
    Proxy several;
    splitProxyServer("http=other.example:81;https=third.example:82", several);
    EXPECT_EQ(several.address + " " + several.port, "http=other.example 81;https=third.examp");
    const SystemProxy none(nullptr);
    TProxySettings dialog(nullptr);
    click(*findControl(dialog, "btnDetect"));
    EXPECT_FALSE(find<wxCheckBox>(dialog, "chkUseProxyServer")->GetValue());
    EXPECT_FALSE(findControl(dialog, "edtProxyAddr")->IsEnabled());
    EXPECT_EQ(stored("edtProxyAddr"), "proxy.example") << "nothing is kept without OK";
}

TEST(ProxySettings, KeepsWhatOkConfirmsAndNoPasswordInClear) {
    const OwnSettings own;
    settings().writeBool(settingsSection(group::uploader), "chkFirstTimeRun", false);
    {
        TProxySettings dialog(nullptr);
        EXPECT_FALSE(findControl(dialog, "edtProxyAddr")->IsEnabled());
        EXPECT_FALSE(findControl(dialog, "edtProxyUser")->IsEnabled());
        for (const char* box : {"chkUseProxyServer", "chkProxyNeedsAuth"}) click(*findControl(dialog, box));
        for (const auto& [name, text] : {std::pair("edtProxyAddr", "10.0.0.1"), std::pair("edtProxyPort", "3128"),
                                         std::pair("edtProxyUser", "me=x;"),
                                         std::pair("edtProxyPassword",
                                                   "s\xC3\xA4"
                                                   "cret")}) {
            EXPECT_TRUE(findControl(dialog, name)->IsEnabled()) << name;
            find<wxTextCtrl>(dialog, name)->SetValue(wxString::FromUTF8(text));
        }
        const NextModal shown([](wxDialog& open) { click(*open.FindWindow(wxID_OK)); });
        EXPECT_EQ(dialog.ShowModal(), wxID_OK);
    }
    const Proxy expected{true,
                         "10.0.0.1",
                         "3128",
                         true,
                         "me=x;",
                         "s\xC3\xA4"
                         "cret"};
    closeSettings();
    EXPECT_EQ(storedProxy(settings()), expected);
    EXPECT_EQ(stored("edtProxyPassword").find("cret"), std::string::npos);
    EXPECT_EQ(stored("chkUseProxyServer"), "1");
    TProxySettings again(nullptr);
    EXPECT_EQ(find<wxTextCtrl>(again, "edtProxyPassword")->GetValue().utf8_string(), expected.password);
}
