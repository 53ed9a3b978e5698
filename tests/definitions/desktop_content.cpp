#include "definitions/content_rows.h"

namespace {

using enum Fate;

constexpr ContentRow kExplorer[] = {
    {Trace, R"(%recentdocs%\letter.docx.lnk)"},
    {Chosen, R"(%recentdocs%\AutomaticDestinations\9b9cdc69c1c24e2b.automaticDestinations-ms)"},
    {Chosen, R"(%recentdocs%\AutomaticDestinations\f18460fded109990.automaticDestinations-ms)"},
    {Chosen, R"(%recentdocs%\CustomDestinations\28c8b86deab549a1.customDestinations-ms)"},
    {Chosen, R"(%localappdata%\Microsoft\Windows\Explorer\thumbcache_256.db)"},
    {Chosen, R"(%localappdata%\Microsoft\Windows\Explorer\iconcache_16.db)"},
    {Kept, R"(%recentdocs%\AutomaticDestinations\f01b4d95cf55d32a.automaticDestinations-ms)"},
    {Kept, R"(%recentdocs%\desktop.ini)"},
};

constexpr ContentRow kTemporaryFiles[] = {
    {Trace, R"(%localappdata%\Microsoft\CLR_v4.0_32\UsageLogs\setup.exe.log)"},
    {Trace, R"(%localappdata%\Microsoft\Windows\Notifications\wpnidm\1a2b.jpg)"},
    {Chosen, R"(%temp%\is-1AB2C.tmp\setup.tmp)"},
    {Chosen, R"(%windir%\Temp\service.log)"},
};

constexpr ContentRow kErrorReports[] = {
    {Trace, R"(%localappdata%\Microsoft\Windows\WER\ReportArchive\AppCrash_a.exe_1\Report.wer)"},
    {Trace, R"(%localappdata%\CrashDumps\a.exe.1234.dmp)"},
    {Chosen, R"(%commonappdata%\Microsoft\Windows\WER\ReportQueue\Kernel_1\Report.wer)"},
    {Chosen, R"(%windir%\LiveKernelReports\WATCHDOG\WATCHDOG-1.dmp)"},
};

constexpr ContentRow kTimeline[] = {
    {Chosen, R"(%localappdata%\ConnectedDevicesPlatform\L.me\ActivitiesCache.db)"},
    {Chosen, R"(%localappdata%\ConnectedDevicesPlatform\0a1b2c3d\ActivitiesCache.db-wal)"},
    {Kept, R"(%localappdata%\ConnectedDevicesPlatform\L.me.cdpresource)"},
};

constexpr ContentRow kPowerShell[] = {
    {Trace, R"(%localappdata%\Microsoft\Windows\PowerShell\ModuleAnalysisCache)"},
    {Chosen, R"(%appdata%\Microsoft\Windows\PowerShell\PSReadLine\ConsoleHost_history.txt)"},
    {Kept, R"(%localappdata%\Microsoft\Windows\PowerShell\profile.ps1)"},
};

constexpr ContentRow kPhotos[] = {
    {Trace, R"(%localappdata%\Packages\Microsoft.Windows.Photos_8wekyb3d8bbwe\TempState\a.jpg)"},
    {Kept, R"(%localappdata%\Packages\Microsoft.Windows.Photos_8wekyb3d8bbwe\LocalState\MediaDb.v1.sqlite)"},
};

constexpr ContentRow kOffice[] = {
    {Trace, R"(%appdata%\Microsoft\Office\Recent\letter.LNK)"},
    {Trace, R"(%localappdata%\Microsoft\Office\16.0\MruServiceCache\1_LiveId\Word\Documents_en-US)"},
    {Chosen, R"(%localappdata%\Microsoft\Office\16.0\Wef\AppCommands\a)"},
    {Kept, R"(%localappdata%\Microsoft\Office\UnsavedFiles\draft.asd)"},
    {Kept, R"(%localappdata%\Microsoft\Office\16.0\OfficeFileCache\0\a.FSD)"},
    {Kept, R"(%localappdata%\Microsoft\Office\16.0\Licensing\1)"},
};

constexpr ContentRow kLibreOffice[] = {
    {Trace, R"(%appdata%\LibreOffice\4\cache\skia.log)"},
    {Trace, R"(%appdata%\LibreOffice\4\crash\a.dmp)"},
    {Kept, R"(%appdata%\LibreOffice\4\crash\dump.ini)"},
    {Kept, R"(%appdata%\LibreOffice\4\user\backup\letter.odt_0.odt)"},
    {Kept, R"(%appdata%\LibreOffice\4\user\wordbook\standard.dic)"},
    {Kept, R"(%appdata%\LibreOffice\4\user\registrymodifications.xcu)"},
};

constexpr ContentRow kSpotify[] = {
    {Kept, R"(%appdata%\Spotify\prefs)"},
    {Trace, R"(%localappdata%\Spotify\Data\0a\0a1b.file)"},
    {Chosen, R"(%localappdata%\Spotify\Storage\0a\0a1b.file)"},
};

constexpr ContentRow kCode[] = {
    {Trace, R"(%appdata%\Code\Cache\Cache_Data\data_0)"},
    {Trace, R"(%appdata%\Code\CachedData\0a1b\chrome\js\index)"},
    {Trace, R"(%appdata%\Code\logs\20260101T000000\main.log)"},
    {Chosen, R"(%appdata%\Code\User\History\-1a2b\entries.json)"},
    {Kept, R"(%appdata%\Code\Backups\workspaces.json)"},
    {Kept, R"(%appdata%\Code\User\settings.json)"},
    {Kept, R"(%appdata%\Code\User\globalStorage\state.vscdb)"},
    {Kept, R"(%appdata%\Code\User\workspaceStorage\0a1b\state.vscdb)"},
};

constexpr ContentRow kJetBrains[] = {
    {Trace, R"(%localappdata%\JetBrains\IntelliJIdea2024.1\log\idea.log)"},
    {Chosen, R"(%localappdata%\JetBrains\PyCharmCE2023.3\index\stubs\a)"},
    {Kept, R"(%localappdata%\JetBrains\IntelliJIdea2024.1\LocalHistory\changes.storageData)"},
    {Kept, R"(%localappdata%\JetBrains\IntelliJIdea2024.1\caches\records.dat)"},
};

constexpr ContentRow kFileZilla[] = {
    {Chosen, R"(%appdata%\FileZilla\recentservers.xml)"},
    {Kept, R"(%appdata%\FileZilla\sitemanager.xml)"},
    {Kept, R"(%appdata%\FileZilla\trustedcerts.xml)"},
};

constexpr ContentRow kCargo[] = {
    {Chosen, R"(%userprofile%\.cargo\registry\cache\index.crates.io-1\a-1.0.0.crate)"},
    {Kept, R"(%userprofile%\.cargo\credentials.toml)"},
    {Kept, R"(%userprofile%\.cargo\bin\tool.exe)"},
};

constexpr ContentRow kPoetry[] = {
    {Chosen, R"(%localappdata%\pypoetry\Cache\artifacts\0a\a.whl)"},
    {Kept, R"(%localappdata%\pypoetry\Cache\virtualenvs\project-py3\pyvenv.cfg)"},
};

constexpr ContentRow kMinecraft[] = {
    {Chosen, R"(%appdata%\.minecraft\logs\latest.log)"},
    {Trace, R"(%appdata%\.minecraft\assets\skins\0a\0a1b)"},
    {Chosen, R"(%appdata%\.minecraft\command_history.txt)"},
    {Kept, R"(%appdata%\.minecraft\saves\World\level.dat)"},
    {Kept, R"(%appdata%\.minecraft\servers.dat)"},
};

constexpr ContentRow kBlender[] = {
    {Chosen, R"(%appdata%\Blender Foundation\Blender\4.2\config\recent-files.txt)"},
    {Kept, R"(%appdata%\Blender Foundation\Blender\4.2\config\bookmarks.txt)"},
    {Kept, R"(%appdata%\Blender Foundation\Blender\4.2\config\userpref.blend)"},
};

constexpr ContentRow kAnyDesk[] = {
    {Trace, R"(%appdata%\AnyDesk\thumbnails\123456789.png)"},
    {Chosen, R"(%appdata%\AnyDesk\connection_trace.txt)"},
    {Chosen, R"(%commonappdata%\AnyDesk\ad_svc.trace)"},
    {Kept, R"(%appdata%\AnyDesk\user.conf)"},
};

constexpr ContentCase kCases[] = {
    {"Explorer", kExplorer},
    {"Temporary files", kTemporaryFiles},
    {"Error reports", kErrorReports},
    {"Timeline", kTimeline},
    {"PowerShell", kPowerShell},
    {"Photos", kPhotos},
    {"Microsoft Office", kOffice},
    {"LibreOffice", kLibreOffice},
    {"Spotify", kSpotify},
    {"Visual Studio Code", kCode},
    {"JetBrains IDEs", kJetBrains},
    {"FileZilla", kFileZilla},
    {"Cargo", kCargo},
    {"Poetry", kPoetry},
    {"Minecraft", kMinecraft},
    {"Blender", kBlender},
    {"AnyDesk", kAnyDesk},
};

}  // namespace

std::span<const ContentCase> DesktopContent() {
    return kCases;
}
