#include "definitions/content_rows.h"

namespace {

using enum Fate;

constexpr ContentRow kChrome[] = {
    {Trace, R"(%localappdata%\Google\Chrome\User Data\Default\History)"},
    {Trace, R"(%localappdata%\Google\Chrome\User Data\Default\Favicons)"},
    {Trace, R"(%localappdata%\Google\Chrome\User Data\Default\Network\Network Persistent State)"},
    {Trace, R"(%localappdata%\Google\Chrome\User Data\Default\Cache\Cache_Data\data_0)"},
    {Trace, R"(%localappdata%\Google\Chrome\User Data\Profile 5\Visited Links)"},
    {Trace, R"(%localappdata%\Google\Chrome\User Data\Snapshots\120.0.6099.71\Default\History)"},
    {Trace, R"(%localappdata%\Google\Chrome\User Data\Crashpad\reports\a.dmp)"},
    {Chosen, R"(%localappdata%\Google\Chrome\User Data\Default\Network\Cookies)"},
    {Chosen, R"(%localappdata%\Google\Chrome\User Data\Profile 1\Cookies-journal)"},
    {Chosen, R"(%localappdata%\Google\Chrome\User Data\Default\Sessions\Session_13345678901234567)"},
    {Chosen, R"(%localappdata%\Google\Chrome\User Data\Default\Local Storage\leveldb\000003.log)"},
    {Kept, R"(%localappdata%\Google\Chrome\User Data\Local State)"},
    {Kept, R"(%localappdata%\Google\Chrome\User Data\Crashpad\settings.dat)"},
    {Kept, R"(%localappdata%\Google\Chrome\User Data\Default\Login Data)"},
    {Kept, R"(%localappdata%\Google\Chrome\User Data\Default\Web Data)"},
    {Kept, R"(%localappdata%\Google\Chrome\User Data\Default\Bookmarks)"},
    {Kept, R"(%localappdata%\Google\Chrome\User Data\Default\Preferences)"},
    {Kept, R"(%localappdata%\Google\Chrome\User Data\Default\Extension Cookies)"},
    {Chosen, R"(%localappdata%\Google\Chrome\User Data\Default\Top Sites-journal)"},
    {Kept, R"(%localappdata%\Google\Chrome\User Data\Default\Local Extension Settings\abc\000003.log)"},
    {Kept, R"(%localappdata%\Google\Chrome\User Data\Default\Sync Extension Settings\abc\000003.log)"},
    {Kept,
     R"(%localappdata%\Google\Chrome\User Data\Default\IndexedDB\chrome-extension_abc_0.indexeddb.leveldb\1.ldb)"},
    {Kept, R"(%localappdata%\Google\Chrome\User Data\Default\Service Worker\ScriptCache\index)"},
    {Kept, R"(%localappdata%\Google\Chrome\User Data\Snapshots\120.0.6099.71\Default\Bookmarks)"},
};

constexpr ContentRow kVivaldi[] = {
    {Trace, R"(%localappdata%\Vivaldi\User Data\Profile 2\History)"},
    {Chosen, R"(%localappdata%\Vivaldi\User Data\Default\Sessions\Tabs_13345678901234567)"},
    {Kept, R"(%localappdata%\Vivaldi\User Data\Default\Sessions\holiday.bin)"},
    {Kept, R"(%localappdata%\Vivaldi\User Data\Default\Notes)"},
};

constexpr ContentRow kOpera[] = {
    {Trace, R"(%appdata%\Opera Software\Opera Stable\History)"},
    {Trace, R"(%appdata%\Opera Software\Opera Stable\Default\History)"},
    {Trace, R"(%localappdata%\Opera Software\Opera Stable\Default\Cache\Cache_Data\data_1)"},
    {Chosen, R"(%appdata%\Opera Software\Opera Stable\Default\Network\Cookies)"},
    {Kept, R"(%appdata%\Opera Software\Opera Stable\Default\Login Data)"},
    {Kept, R"(%appdata%\Opera Software\Opera Stable\Local State)"},
};

constexpr char kProfilesIni[] =
    "[Install308046B0AF4A39CB]\r\nDefault=Profiles/ab12.default-release\r\n"
    "[Profile1]\r\nName=default\r\nIsRelative=1\r\nPath=Profiles/cd34.default\r\n"
    "[Profile0]\r\nName=default-release\r\nIsRelative=1\r\nPath=Profiles/ab12.default-release\r\n";

constexpr ContentRow kFirefox[] = {
    {Kept, R"(%appdata%\Mozilla\Firefox\profiles.ini)", kProfilesIni},
    {Trace, R"(%localappdata%\Mozilla\Firefox\Profiles\ab12.default-release\cache2\entries\0A1B)"},
    {Trace, R"(%localappdata%\Mozilla\Firefox\Profiles\ab12.default-release\thumbnails\a.png)"},
    {Trace, R"(%appdata%\Mozilla\Firefox\Profiles\ab12.default-release\favicons.sqlite)"},
    {Trace, R"(%appdata%\Mozilla\Firefox\Profiles\cd34.default\favicons.sqlite-wal)"},
    {Trace, R"(%appdata%\Mozilla\Firefox\Crash Reports\pending\a.dmp)"},
    {Chosen, R"(%appdata%\Mozilla\Firefox\Profiles\ab12.default-release\cookies.sqlite)"},
    {Chosen, R"(%appdata%\Mozilla\Firefox\Profiles\cd34.default\formhistory.sqlite)"},
    {Chosen, R"(%appdata%\Mozilla\Firefox\Profiles\ab12.default-release\sessionstore.jsonlz4)"},
    {Chosen,
     R"(%appdata%\Mozilla\Firefox\Profiles\ab12.default-release\sessionstore-backups\recovery.jsonlz4)"},
    {Kept, R"(%appdata%\Mozilla\Firefox\Profiles\ab12.default-release\places.sqlite)"},
    {Kept, R"(%appdata%\Mozilla\Firefox\Profiles\ab12.default-release\bookmarkbackups\b.jsonlz4)"},
    {Kept, R"(%appdata%\Mozilla\Firefox\Profiles\ab12.default-release\logins.json)"},
    {Kept, R"(%appdata%\Mozilla\Firefox\Profiles\ab12.default-release\key4.db)"},
    {Kept, R"(%appdata%\Mozilla\Firefox\Profiles\ab12.default-release\prefs.js)"},
    {Kept, R"(%appdata%\Mozilla\Firefox\Profiles\ab12.default-release\permissions.sqlite)"},
    {Kept, R"(%appdata%\Mozilla\Firefox\Profiles\ab12.default-release\extensions\a@b.xpi)"},
    {Kept, R"(%appdata%\Mozilla\Firefox\Profiles\ab12.default-release\storage-sync-v2.sqlite)"},
    {Kept,
     R"(%appdata%\Mozilla\Firefox\Profiles\ab12.default-release\storage\default\moz-extension+++a\idb\1.sqlite)"},
};

constexpr ContentRow kThunderbird[] = {
    {Kept, R"(%appdata%\Thunderbird\profiles.ini)",
     "[Profile0]\r\nIsRelative=1\r\nPath=Profiles/ef.default\r\n"},
    {Trace, R"(%localappdata%\Thunderbird\Profiles\ef.default\cache2\entries\0A)"},
    {Chosen, R"(%appdata%\Thunderbird\Profiles\ef.default\global-messages-db.sqlite)"},
    {Chosen, R"(%appdata%\Thunderbird\Profiles\ef.default\session.json)"},
    {Kept, R"(%appdata%\Thunderbird\Profiles\ef.default\Mail\Local Folders\Inbox)"},
    {Kept, R"(%appdata%\Thunderbird\Profiles\ef.default\calendar-data\local.sqlite)"},
};

constexpr ContentRow kExplorer[] = {
    {Trace, R"(%history%\History.IE5\MSHist012026112320261124\container.dat)"},
    {Trace, R"(%internetcache%\IE\A1B2C3D4\page[1].htm)"},
    {Chosen, R"(%cookies%\A1B2.txt)"},
    {Chosen, R"(%localappdata%\Microsoft\Windows\WebCache\WebCacheV01.dat)"},
    {Kept, R"(%localappdata%\Microsoft\Credentials\0A1B2C)"},
};

constexpr ContentRow kTeams[] = {
    {Trace,
     R"(%localappdata%\Packages\MSTeams_8wekyb3d8bbwe\LocalCache\Microsoft\MSTeams\EBWebView\WV2Profile_tfw\Cache\Cache_Data\data_0)"},
    {Trace,
     R"(%localappdata%\Packages\MSTeams_8wekyb3d8bbwe\LocalCache\Microsoft\MSTeams\Logs\MSTeams_1.log)"},
    {Trace, R"(%localappdata%\Packages\MSTeams_8wekyb3d8bbwe\TempState\a.tmp)"},
    {Chosen,
     R"(%localappdata%\Packages\MSTeams_8wekyb3d8bbwe\LocalCache\Microsoft\MSTeams\EBWebView\WV2Profile_tfw\Network\Cookies)"},
    {Kept,
     R"(%localappdata%\Packages\MSTeams_8wekyb3d8bbwe\LocalCache\Microsoft\MSTeams\Backgrounds\Uploads\me.png)"},
    {Kept,
     R"(%localappdata%\Packages\MSTeams_8wekyb3d8bbwe\LocalCache\Microsoft\MSTeams\EBWebView\Local State)"},
};

constexpr ContentRow kDiscord[] = {
    {Trace, R"(%appdata%\discord\Cache\Cache_Data\f_000001)"},
    {Trace, R"(%appdata%\discord\logs\renderer.log)"},
    {Chosen, R"(%appdata%\discord\Local Storage\leveldb\000005.ldb)"},
    {Kept, R"(%appdata%\discord\Preferences)"},
};

constexpr ContentRow kSignal[] = {
    {Trace, R"(%appdata%\Signal\Cache\Cache_Data\f_000001)"},
    {Trace, R"(%appdata%\Signal\logs\app.log)"},
    {Kept, R"(%appdata%\Signal\sql\db.sqlite)"},
    {Kept, R"(%appdata%\Signal\config.json)"},
    {Kept, R"(%appdata%\Signal\attachments.noindex\ab\abcd)"},
    {Kept, R"(%appdata%\Signal\IndexedDB\file__0.indexeddb.leveldb\000003.log)"},
};

constexpr ContentRow kTelegram[] = {
    {Trace, R"(%appdata%\Telegram Desktop\tdata\user_data\media_cache\0\A1)"},
    {Trace, R"(%appdata%\Telegram Desktop\tdata\user_data#2\cache\0\B2)"},
    {Trace, R"(%appdata%\Telegram Desktop\log.txt)"},
    {Kept, R"(%appdata%\Telegram Desktop\tdata\key_datas)"},
    {Kept, R"(%appdata%\Telegram Desktop\tdata\D877F783D5D3EF8C\maps)"},
};

constexpr ContentRow kDrive[] = {
    {Trace, R"(%localappdata%\Google\DriveFS\Logs\drive_fs.txt)"},
    {Kept, R"(%localappdata%\Google\DriveFS\112233445566778899001\content_cache\d1\file)"},
};

constexpr ContentRow kObsidian[] = {
    {Trace, R"(%appdata%\obsidian\GPUCache\data_0)"},
    {Chosen, R"(%appdata%\obsidian\Service Worker\CacheStorage\a\index.txt)"},
    {Kept, R"(%appdata%\obsidian\obsidian.json)"},
    {Kept, R"(%appdata%\obsidian\Local Storage\leveldb\000003.log)"},
};

constexpr ContentCase kCases[] = {
    {"Google Chrome", kChrome},  {"Vivaldi", kVivaldi},         {"Opera", kOpera},
    {"Firefox", kFirefox},       {"Thunderbird", kThunderbird}, {"Internet Explorer", kExplorer},
    {"Microsoft Teams", kTeams}, {"Discord", kDiscord},         {"Signal", kSignal},
    {"Telegram", kTelegram},     {"Google Drive", kDrive},      {"Obsidian", kObsidian},
};

}  // namespace

std::span<const ContentCase> WebContent() {
    return kCases;
}
