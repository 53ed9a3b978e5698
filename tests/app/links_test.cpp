#include "app/links.h"

#include <gtest/gtest.h>
#include <windows.h>
// Behind windows.h, which it does not include by itself.
#include <shellapi.h>

#include "support/api_hook.h"
#include "system/registry.h"

namespace {

TEST(Links, TakeTheAffiliateFromTheKeyThatIsNamedByThePattern) {
    EXPECT_EQ(ReadAffiliate(), "0");
    ASSERT_TRUE(RegWriteString(HKEY_CURRENT_USER, "Software\\%s\\%s %s", "AffiliateID", "partner"));
    EXPECT_EQ(ReadAffiliate(), "partner");
    ::RegDeleteTreeA(HKEY_CURRENT_USER, "Software\\%s");
    const tagAPP_LINKS links = BuildLinks("https://www.example.com/", 5, "partner");
    EXPECT_EQ(
        links.urlProduct,
        "https://www.example.com/redirect/?aid=1&vid=31245&pid=5&lid=en&vid=31245&pid=5&lid=en&uid=partner");
}

TEST(Links, AreOpenedOnlyIfTheyLeadToTheWeb) {
    std::string opened;
    auto shell = API_HOOK(ShellExecuteA);
    shell.Replace([&](HWND owner, LPCSTR verb, LPCSTR link, LPCSTR arguments, LPCSTR folder, INT show) {
        EXPECT_TRUE(owner == nullptr && arguments == nullptr && folder == nullptr);
        EXPECT_STREQ(verb, "open");
        EXPECT_EQ(show, SW_SHOWNORMAL);
        opened = link;
        return HINSTANCE{};
    });
    const std::string withoutHost = BuildLinks("", 5, "0").urlHelp;
    for (const char* link :
         {withoutHost.c_str(), "", "https:", "C:\\windows\\notepad.exe", "file:///C:/windows", " http://a",
          "httpx://a", "http://a\" --flag", "http://a\nb"}) {
        OpenLink(link);
        EXPECT_EQ(opened, "");
    }
    OpenLink(nullptr);
    EXPECT_EQ(shell.Calls(), 0);
    for (const char* link : {"http://a", "HttpS://a/?b=1&c=d"}) {
        OpenLink(link);
        EXPECT_EQ(opened, link);
    }
}

}  // namespace
