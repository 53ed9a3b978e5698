#include "engine/folder_search.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "engine/recording_sink.h"
#include "support/api_hook.h"
#include "support/folder_link.h"
#include "support/sandbox.h"

namespace {

using Lines = std::vector<std::string>;

std::wstring Wide(const std::string& text) {
    std::wstring wide(text.size(), L'\0');
    const int length = static_cast<int>(text.size());
    wide.resize(static_cast<std::size_t>(
        ::MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), length)));
    return wide;
}

// Makes a file whose path may be too long for the A calls.
void MakeLongFile(const std::string& path) {
    const HANDLE file = ::CreateFileW((L"\\\\?\\" + Wide(path)).c_str(), GENERIC_WRITE, 0, nullptr,
                                      CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE) << path;
    ::CloseHandle(file);
}

void MakeLongFolder(const std::string& path) {
    ASSERT_TRUE(::CreateDirectoryW((L"\\\\?\\" + Wide(path)).c_str(), nullptr)) << path;
}

Lines Search(const std::string& folder, const char* mask = nullptr) {
    RecordingSink sink;
    const std::uint32_t count = ScanFolder(folder, mask, sink);
    EXPECT_EQ(count, sink.traces.size()) << "the count is that of the traces";
    return sink.Lines(folder);
}

// kept: a folder whose name begins with two dots is not entered, and no result either.
TEST(FolderSearch, FindsEveryFileAndFolderButThoseThatBeginWithTwoDots) {
    const TestFolder folder;
    for (const char* name :
         {".b", ".c\\d", "\u00e9\\\u6f22\u5b57\\\U0001f5d1.tmp", "B b\\%", "B b\\`\\(1)"}) {
        folder.MakeFile(name);
    }
    MakeLongFile(folder.Path() + "..a");
    for (const char* name : {"..x", "...y"}) {
        MakeLongFolder(folder.Path() + name);
        MakeLongFile(folder.Path() + name + "\\in");
    }
    folder.MakeFolder("empty");
    const Lines found = Search(folder.Path());
    Lines sorted = found;
    std::sort(sorted.begin(), sorted.end());
    Lines expected = {"file |..a",       "file |.b",          "file .c\\|d",
                      "file B b\\|%",    "file B b\\`\\|(1)", "file \u00e9\\\u6f22\u5b57\\|\U0001f5d1.tmp",
                      "folder |.c\\",    "folder |B b\\",     "folder B b\\|`\\",
                      "folder |empty\\", "folder |\u00e9\\",  "folder \u00e9\\|\u6f22\u5b57\\"};
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(sorted, expected);
    const auto at = [&](const char* line) {
        return std::find(found.begin(), found.end(), line) - found.begin();
    };
    EXPECT_LT(at("file B b\\`\\|(1)"), at("folder B b\\|`\\")) << "what is in a folder goes before it";
    EXPECT_LT(at("folder B b\\|`\\"), at("folder |B b\\"));
}

TEST(FolderSearch, MaskTakesFilesInAllFoldersAndAPatternThoseOfOne) {
    const TestFolder folder;
    for (const char* name : {"a.log", "B.LOG", "report.2008.log", "sub\\c.log", "sub\\deep.log\\d.log"}) {
        folder.MakeFile(name);
    }
    Lines found = Search(folder.Path(), "*.log");
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, (Lines{"file sub\\deep.log\\|d.log", "file sub\\|c.log", "file |a.log"}));
    // The pattern is the system's, with its case; a mask is ours.
    RecordingSink sink;
    EXPECT_EQ(ScanFiles(folder.At("*.log"), sink), 3u);
    found = sink.Lines(folder.Path());
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, (Lines{"file |B.LOG", "file |a.log", "file |report.2008.log"}));
    EXPECT_EQ(ScanFiles(folder.At("sub"), sink), 0u) << "a folder is no file";
}

// The system finds "page.html" by "*.htm", because its short name ends so.
TEST(FolderSearch, APatternFindsNothingByItsShortName) {
    const TestFolder folder;
    for (const char* name : {"page.html", "long page.htm", "Ab.longer", "\u00c4.longer", "no dot at all"}) {
        folder.MakeFile(name);
    }
    const auto found = [&](const char* pattern) {
        RecordingSink sink;
        ScanFiles(folder.At(pattern), sink);
        Lines lines = sink.Lines(folder.Path());
        std::sort(lines.begin(), lines.end());
        return lines;
    };
    WIN32_FIND_DATAA entry;
    HANDLE search = ::FindFirstFileA(folder.At("page.html").c_str(), &entry);
    ::FindClose(search);
    EXPECT_EQ(found(entry.cAlternateFileName), Lines{"file |page.html"}) << "it is named by its short name";
    search = ::FindFirstFileA(folder.At("*.htm").c_str(), &entry);
    EXPECT_TRUE(::FindNextFileA(search, &entry)) << "the system itself finds both";
    ::FindClose(search);
    EXPECT_EQ(found("*.htm"), Lines{"file |long page.htm"});
    EXPECT_EQ(found("aB.lon*"), Lines{"file |Ab.longer"});
    EXPECT_EQ(found("\u00e4.LONGE?"), Lines{"file |\u00c4.longer"});
    EXPECT_EQ(found("*.*").size(), 5u);
}

TEST(FolderSearch, PathsThatDoNotFitArePassedOverAndNeverCut) {
    const TestFolder folder;
    std::string deep = folder.Path();
    while (deep.size() < 190) {
        deep += std::string(std::min<std::size_t>(50, 200 - deep.size()), 'd');
        MakeLongFolder(deep);
        deep += '\\';
    }
    const auto nameFor = [&](std::size_t length, char letter) {
        return std::string(length - deep.size(), letter);
    };
    MakeLongFile(deep + nameFor(259, 'f'));
    MakeLongFile(deep + nameFor(260, 'f'));
    // A folder is known by its path with a backslash, which takes one more.
    MakeLongFolder(deep + nameFor(258, 'g'));
    MakeLongFile(deep + nameFor(258, 'g') + "\\in");
    MakeLongFolder(deep + nameFor(259, 'g'));
    const Lines fitting = {"file |" + nameFor(259, 'f'), "folder |" + nameFor(258, 'g') + "\\"};
    Lines found = Search(deep);
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, fitting);

    RecordingSink sink;
    EXPECT_EQ(ScanFiles(deep + "*", sink), 1u);
    EXPECT_EQ(sink.Lines(deep), Lines{fitting[0]});
    EXPECT_TRUE(Exists(deep + *sink.traces.at(0).name));
    EXPECT_EQ(Search(folder.Path() + std::string(300, 'x') + "\\"), Lines());
}

TEST(FolderSearch, NamesThatDoNotNameTheFileArePassedOver) {
    const TestFolder folder;
    folder.MakeFile("\u00e9\u6f22\U0001f5d1.txt");
    folder.MakeFile("other.txt");
    auto next = API_HOOK(FindNextFileA);
    next.Replace([&](HANDLE find, WIN32_FIND_DATAA* entry) {
        const BOOL found = next.Real()(find, entry);
        // As the character comes from a code page that lacks it.
        if (found && std::strcmp(entry->cFileName, "other.txt") == 0) entry->cFileName[0] = '?';
        return found;
    });
    EXPECT_EQ(Search(folder.Path()), Lines{"file |\u00e9\u6f22\U0001f5d1.txt"});
}

TEST(FolderSearch, AnEntryThatFailsByItselfDoesNotHideTheOthers) {
    const TestFolder folder;
    for (const char* name : {"1", "2", "3"}) folder.MakeFile(name);
    const auto searchBoth = [&](DWORD error) {
        auto next = API_HOOK(FindNextFileA);
        std::string passed;
        next.ReplaceAt(3, [&](HANDLE find, WIN32_FIND_DATAA* entry) {  // behind ".." and one file
            EXPECT_TRUE(next.Real()(find, entry));
            passed = entry->cFileName;
            ::SetLastError(error);
            return FALSE;
        });
        const Lines found = Search(folder.Path());
        EXPECT_EQ(std::count(found.begin(), found.end(), "file |" + passed), 0);
        return found.size();
    };
    EXPECT_EQ(searchBoth(ERROR_MORE_DATA), 2u);
    EXPECT_EQ(searchBoth(ERROR_NO_MORE_FILES), 1u);
}

TEST(FolderSearch, LinksAreListedAndNeverEntered) {
    const TestFolder folder;
    // As dwReserved0 tells it; Wine tells nothing of its own links.
    const std::map<std::string, DWORD> tags = {
        {"cloud 0", 0x9000001A}, {"cloud 6", 0x9000601A}, {"cloud F", 0x9000F01A},  {"junction", 0xA0000003},
        {"symlink", 0xA000000C}, {"untagged", 0},         {"almost 1", 0x9000601B}, {"almost 2", 0xA000601A}};
    Lines expected;
    for (const auto& [name, tag] : tags) {
        folder.MakeFile(name + "\\in.tmp");
        if (name.starts_with("cloud")) expected.push_back("file " + name + "\\|in.tmp");
        expected.push_back("folder |" + name + "\\");
    }
    auto next = API_HOOK(FindNextFileA);
    next.Replace([&](HANDLE find, WIN32_FIND_DATAA* entry) {
        const BOOL found = next.Real()(find, entry);
        const auto tag = tags.find(entry->cFileName);
        if (found && tag != tags.end()) {
            entry->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
            entry->dwReserved0 = tag->second;
        }
        return found;
    });
    Lines found = Search(folder.Path());
    std::sort(found.begin(), found.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(found, expected);
    EXPECT_EQ(Search(folder.Path(), "*.tmp").size(), 3u);
}

TEST(FolderSearch, ARealLinkIsListedAndNeverEntered) {
    const TestFolder folder;
    const TestFolder elsewhere;
    elsewhere.MakeFile("precious.txt");
    folder.MakeFolder("real");
    const FolderLink link(folder.At("real\\link"), elsewhere.Path());
    ASSERT_TRUE(Exists(folder.At("real\\link\\precious.txt"))) << "the link does not work";
    EXPECT_EQ(Search(folder.Path()), (Lines{"folder real\\|link\\", "folder |real\\"}));
    EXPECT_EQ(Search(folder.Path(), "*.txt"), Lines());
}

TEST(FolderSearch, AStopIsHeededBehindEachEntry) {
    const TestFolder folder;
    for (const char* name : {"1", "2", "3"}) folder.MakeFile(name);
    RecordingSink sink;
    sink.stopAfter = 2;
    EXPECT_EQ(ScanFolder(folder.Path(), nullptr, sink), 2u);
}

TEST(IniSearch, FindsAKeyThatHasAText) {
    const TestFolder folder;
    const std::string file =
        folder.MakeFile("a.ini", "[Recent Files]\r\nFile1=C:\\x.txt\r\nEmpty=\r\nQuotes=\"\"\r\n");
    const struct {
        const char* what;
        std::string valueName;
        bool found;
    } kCases[] = {
        {"a key with a text", "[Recent Files]File1", true},
        {"an empty text", "[Recent Files]Empty", false},
        {"a section that does not fit", "[" + std::string(400, 's') + "]File1", false},
    };
    for (const auto& row : kCases) {
        RecordingSink sink;
        EXPECT_EQ(ScanIniValue(file, row.valueName, sink), 0u) << "kept: never counted";
        EXPECT_EQ(sink.Lines(), row.found ? Lines{"ini " + file + "|" + row.valueName} : Lines()) << row.what;
    }
}

}  // namespace
