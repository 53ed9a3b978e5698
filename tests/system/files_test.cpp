#include "system/files.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/api_hook.h"
#include "support/folder_link.h"
#include "support/sandbox.h"
#include "system/handles.h"

namespace {

constexpr DWORD kLinkAttributes = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
constexpr DWORD kMountPointTag = 0xA0000003;

TEST(JoinedPaths, FitTheCapacityWithTheirTerminatorOrAreNone) {
    const std::string folder(250, 'a');
    EXPECT_EQ(JoinPath("C:\\x\\", "y.txt"), "C:\\x\\y.txt");
    EXPECT_EQ(JoinPath(folder, "123456789"), folder + "123456789") << "259 characters";
    EXPECT_FALSE(JoinPath(folder, "1234567890"));
}

WIN32_FIND_DATAA EntryNamed(std::string_view name) {
    WIN32_FIND_DATAA entry = {};
    name.copy(entry.cFileName, sizeof entry.cFileName);
    return entry;
}

TEST(FoundNames, AreTakenOnlyIfTheyNameTheEntryAgain) {
    const TestFolder folder;
    const std::string replacement =
        "a\xEF\xBF\xBD"
        "b.txt";
    const auto survives = [&](std::string_view name, const std::string& where) {
        const WIN32_FIND_DATAA entry = EntryNamed(name);
        const auto survivor = SurvivingName(entry, where);
        EXPECT_EQ(survivor.value_or(name), name);
        return survivor.has_value();
    };
    EXPECT_TRUE(survives("a.txt", folder.Path()));
    EXPECT_TRUE(survives("\xC3\xA4.txt", folder.Path()));
    EXPECT_FALSE(survives("", folder.Path()));
    EXPECT_FALSE(survives("a?.txt", folder.Path()));
    // Below these names the system finds what "a" stands for, or a place elsewhere.
    for (const char* name : {"a.", "a ", "a. .", "a:b", "b\\..", "b/a"}) {
        EXPECT_FALSE(survives(name, folder.Path())) << name;
        EXPECT_FALSE(IsSurvivingPath(folder.Path() + name + "\\c")) << name;
    }
    EXPECT_TRUE(survives(".a. b", folder.Path()));
    for (const char* path : {"C:\\", "C:\\.a. b\\", "\\\\server\\share\\a.txt"}) {
        EXPECT_TRUE(IsSurvivingPath(path)) << path;
    }
    EXPECT_FALSE(survives(replacement, folder.Path())) << "it stands for something else";
    folder.MakeFile(replacement);
    EXPECT_TRUE(survives(replacement, folder.Path())) << "it is the name";
    EXPECT_FALSE(survives(std::string(260, 'a'), "")) << "without its terminator";
    EXPECT_TRUE(survives(std::string(59, 'a'), std::string(200, 'b')));
    EXPECT_FALSE(survives(std::string(60, 'a'), std::string(200, 'b')));
}

TEST(ExactTexts, AreThoseThatComeBackTheSame) {
    EXPECT_EQ(ExactText(L"a\u00e4\u6f22"), "a\u00e4\u6f22");
    EXPECT_EQ(ExactText(L""), "");
    EXPECT_EQ(ExactText(L"a\xD800"), std::nullopt);
    // As a code page without it gives a letter that looks like it.
    auto narrows = API_HOOK(WideCharToMultiByte);
    narrows.Replace([&](UINT page, DWORD flags, LPCWCH wide, int length, LPSTR narrow, int size,
                        LPCCH fallback, LPBOOL used) {
        EXPECT_STREQ(wide, L"\uFF21.txt");
        return narrows.Real()(page, flags, L"A.txt", length, narrow, size, fallback, used);
    });
    EXPECT_EQ(ExactText(L"\uFF21.txt"), std::nullopt);
}

TEST(Links, AreReparsePointsOtherThanCloudPlaceholders) {
    EXPECT_TRUE(IsLink(kLinkAttributes, kMountPointTag));
    EXPECT_TRUE(IsLink(FILE_ATTRIBUTE_REPARSE_POINT, 0xA000000C)) << "a symbolic link";
    EXPECT_TRUE(IsLink(kLinkAttributes, 0)) << "not every system tells the tag";
    EXPECT_FALSE(IsLink(FILE_ATTRIBUTE_DIRECTORY, kMountPointTag))
        << "the tag counts with the attribute only";
    for (const DWORD form : {0x0u, 0xFu}) {
        EXPECT_FALSE(IsLink(kLinkAttributes, 0x9000001A | form << 12)) << form;
    }
    EXPECT_TRUE(IsLink(kLinkAttributes, 0x9001001A));
}

// Makes one real folder look like a link to a folder, in all that the system says of it.
class LinkHook {
  public:
    explicit LinkHook(const std::string& path, DWORD tag = kMountPointTag) : m_path(path), m_tag(tag) {
        m_attributes.Replace([this](LPCSTR asked) {
            const DWORD attributes = m_attributes.Real()(asked);
            const bool isLink =
                attributes != INVALID_FILE_ATTRIBUTES && std::string_view(asked).ends_with(m_path);
            return isLink ? attributes | FILE_ATTRIBUTE_REPARSE_POINT : attributes;
        });
        m_find.Replace([this](LPCSTR asked, LPWIN32_FIND_DATAA entry) {
            const HANDLE search = m_find.Real()(asked, entry);
            if (std::string_view(asked).ends_with(m_path)) {
                entry->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
                entry->dwReserved0 = m_tag;
            }
            return search;
        });
        m_information.Replace([this](HANDLE handle, LPBY_HANDLE_FILE_INFORMATION information) {
            const BOOL success = m_information.Real()(handle, information);
            if (m_opensItself) information->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
            return success;
        });
    }

    // Whether an open handle shows the link itself, or, as Wine has it, what it leads to.
    bool m_opensItself = true;

  private:
    std::string m_path;
    DWORD m_tag;
    ApiHook<decltype(&::GetFileAttributesA)> m_attributes{"GetFileAttributesA"};
    ApiHook<decltype(&::FindFirstFileA)> m_find{"FindFirstFileA"};
    ApiHook<decltype(&::GetFileInformationByHandle)> m_information{"GetFileInformationByHandle"};
};

TEST(Links, AreFoundByPathWithOrWithoutABackslash) {
    const TestFolder folder;
    const std::string plain = folder.MakeFolder("plain");
    const std::string link = folder.MakeFolder("link");
    {
        const LinkHook hook(link);
        EXPECT_TRUE(IsLink(link.c_str()));
        EXPECT_TRUE(IsLink((link + "\\").c_str()));
        EXPECT_TRUE(IsLink(("\\\\?\\" + link).c_str()));
        EXPECT_FALSE(IsLink(plain.c_str()));
        EXPECT_FALSE(IsLink(folder.At("missing").c_str()));
        EXPECT_FALSE(IsLink(folder.At("lin?").c_str())) << "a mask is no path";
    }
    const LinkHook cloud(link, 0x9000601A);
    EXPECT_FALSE(IsLink(link.c_str()));
}

TEST(LinkRemoval, TakesTheLinkWhereTheSystemGivesAHandleToIt) {
    const TestFolder folder;
    const std::string link = folder.MakeFolder("link");
    folder.MakeFile("other\\kept.txt");
    const LinkHook hook(link);
    auto close = API_HOOK(CloseHandle);
    EXPECT_TRUE(RemoveFolderLink((link + "\\").c_str()));
    EXPECT_EQ(close.Calls(), 2) << "the link's and its folder's";
    EXPECT_EQ(NamesIn(folder.Path()), std::vector<std::string>{"other"});
    EXPECT_TRUE(Exists(folder.At("other\\kept.txt")));
}

TEST(LinkRemoval, TouchesNothingWhereItIsNotSureOfTheLink) {
    const TestFolder folder;
    const std::string link = folder.MakeFolder("link");
    folder.MakeFolder("target");
    const std::string file = folder.MakeFile("file");
    EXPECT_FALSE(RemoveFolderLink(link.c_str())) << "an ordinary folder";
    EXPECT_FALSE(RemoveFolderLink(folder.At("missing").c_str()));
    {
        const LinkHook hook(file);
        EXPECT_FALSE(RemoveFolderLink(file.c_str())) << "a link to a file";
    }
    {
        const LinkHook hook(link, 0x9000001A);
        EXPECT_FALSE(RemoveFolderLink(link.c_str())) << "a cloud placeholder";
    }
    LinkHook hook(link);
    {
        hook.m_opensItself = false;
        EXPECT_FALSE(RemoveFolderLink(link.c_str())) << "the handle is of what the link leads to";
        hook.m_opensItself = true;
    }
    {
        auto open = API_HOOK(CreateFileA);
        open.Replace([&](LPCSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                         DWORD creation, DWORD flags, HANDLE handle) {
            const std::string real = link == path ? folder.At("target") : path;
            return open.Real()(real.c_str(), access, share, security, creation, flags, handle);
        });
        EXPECT_FALSE(RemoveFolderLink(link.c_str())) << "it lies somewhere else";
    }
    for (const char* name : {"GetFinalPathNameByHandleA", "SetFileInformationByHandle"}) {
        const MissingEntryPoint older(name);
        EXPECT_FALSE(RemoveFolderLink(link.c_str())) << "a system without " << name;
    }
    EXPECT_EQ(NamesIn(folder.Path()), (std::vector<std::string>{"file", "link", "target"}));
}

TEST(LinkRemoval, NeverTouchesWhatARealLinkLeadsTo) {
    const TestFolder folder;
    const std::string empty = folder.MakeFolder("empty");  // which a careless removal would succeed with
    const std::string full = folder.MakeFolder("full");
    folder.MakeFile("full\\kept.txt");
    const FolderLink toEmpty(folder.At("to empty"), empty);
    const FolderLink toFull(folder.At("to full"), full);
    for (const char* name : {"to empty", "to full"}) {
        const std::string link = folder.At(name);
        EXPECT_TRUE(IsLink(link.c_str())) << name;
        EXPECT_TRUE(IsLink((link + "\\").c_str())) << name;
        EXPECT_EQ(RemoveFolderLink(link.c_str()), !Exists(link)) << name;
    }
    EXPECT_TRUE(Exists(empty));
    EXPECT_TRUE(Exists(folder.At("full\\kept.txt")));
}

TEST(LinkRemoval, SaysFalseWhenTheLinkIsStillThere) {
    const TestFolder folder;
    const std::string link = folder.MakeFolder("link");
    const std::string inside = folder.MakeFile("link\\inside.txt");
    const LinkHook hook(link);
    EXPECT_FALSE(RemoveFolderLink(link.c_str()));
    auto setInformation = LATE_BOUND_HOOK(SetFileInformationByHandle);
    setInformation.Replace([](HANDLE, FILE_INFO_BY_HANDLE_CLASS, LPVOID, DWORD) { return TRUE; });
    EXPECT_FALSE(RemoveFolderLink(link.c_str())) << "the success was none";
    EXPECT_EQ(setInformation.Calls(), 1);
    EXPECT_TRUE(Exists(inside));
}

TEST(WholeFiles, AreReadToTheirEndOrNotAtAll) {
    const TestFolder folder;
    const std::string big(300000, 'x');
    const std::string file = folder.MakeFile("file", big);
    const std::string empty = folder.MakeFile("empty", "");
    const auto content = ReadWholeFile(file.c_str(), MAXDWORD);
    ASSERT_TRUE(content);
    EXPECT_EQ(std::string(content->begin(), content->end()), big);
    ASSERT_TRUE(ReadWholeFile(empty.c_str(), MAXDWORD));
    EXPECT_TRUE(ReadWholeFile(empty.c_str(), MAXDWORD)->empty());
    EXPECT_FALSE(ReadWholeFile(file.c_str(), 299999)) << "more than is allowed";
    EXPECT_FALSE(ReadWholeFile(folder.At("missing").c_str(), MAXDWORD));
    EXPECT_FALSE(ReadWholeFile(folder.Path().c_str(), MAXDWORD));
    {
        auto read = API_HOOK(ReadFile);
        read.Replace([&](HANDLE handle, LPVOID buffer, DWORD size, LPDWORD got, LPOVERLAPPED overlapped) {
            return read.Real()(handle, buffer, size / 2, got, overlapped);
        });
        EXPECT_FALSE(ReadWholeFile(file.c_str(), MAXDWORD)) << "half of it";
    }
}

bool Replace(const std::string& path, const std::string& content) {
    return ReplaceFileContent(path.c_str(), content.data(), static_cast<std::uint32_t>(content.size()));
}

TEST(ReplacedFiles, AreNewOrAsTheyWere) {
    const TestFolder folder;
    const std::string path = folder.At("file.db");
    EXPECT_TRUE(Replace(path, "first")) << "where nothing was";
    EXPECT_EQ(FileContent(path), "first");
    EXPECT_TRUE(Replace(path, "second, longer"));
    EXPECT_EQ(FileContent(path), "second, longer");
    EXPECT_TRUE(Replace(path, ""));
    EXPECT_EQ(FileContent(path), "");
    EXPECT_FALSE(Replace(folder.At("missing\\file.db"), "x"));
    EXPECT_FALSE(Replace(folder.Path() + std::string(259 - folder.Path().size(), 'a'), "x"));
    EXPECT_EQ(NamesIn(folder.Path()), std::vector<std::string>{"file.db"}) << "nothing is left beside it";
}

TEST(ReplacedFiles, SurviveWhateverFails) {
    const TestFolder folder;
    const std::string path = folder.MakeFile("file.db", "as it was");
    {
        auto write = API_HOOK(WriteFile);
        // The write that meets the end of the disk succeeds with a part, the next one fails.
        write.ReplaceAt(1, [&](HANDLE file, LPCVOID data, DWORD, LPDWORD written, LPOVERLAPPED overlapped) {
            return write.Real()(file, data, 3, written, overlapped);
        });
        write.FailAt(2, ERROR_DISK_FULL);
        EXPECT_FALSE(Replace(path, "something else"));
        EXPECT_EQ(write.Calls(), 2);
    }
    {
        auto flush = API_HOOK(FlushFileBuffers);
        flush.FailAlways(ERROR_DISK_FULL);
        EXPECT_FALSE(Replace(path, "something else"));
    }
    {
        const UniqueHandle held = OwnHandle<UniqueHandle>(
            ::CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_NE(held, nullptr);
        EXPECT_FALSE(Replace(path, "something else")) << "somebody has it open";
    }
    EXPECT_EQ(FileContent(path), "as it was");
    EXPECT_EQ(NamesIn(folder.Path()), std::vector<std::string>{"file.db"});
    folder.MakeFile("file.db.new", "left by an interrupted run");
    EXPECT_TRUE(Replace(path, "new"));
    EXPECT_EQ(FileContent(path), "new");
}

TEST(Handles, AreClosedOnceAndNoneForNoHandle) {
    const TestFolder folder;
    const std::string file = folder.MakeFile("file");
    auto close = API_HOOK(CloseHandle);
    auto closeFind = API_HOOK(FindClose);
    {
        UniqueHandle handle = OwnHandle<UniqueHandle>(
            ::CreateFileA(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
        UniqueHandle moved = std::move(handle);
        EXPECT_EQ(OwnHandle<UniqueHandle>(INVALID_HANDLE_VALUE), nullptr);
        WIN32_FIND_DATAA entry;
        const UniqueFind search = OwnHandle<UniqueFind>(::FindFirstFileA(file.c_str(), &entry));
        EXPECT_NE(search, nullptr);
        EXPECT_EQ(OwnHandle<UniqueFind>(::FindFirstFileA(folder.At("missing").c_str(), &entry)), nullptr);
    }
    EXPECT_EQ(close.Calls(), 1);
    EXPECT_EQ(closeFind.Calls(), 1);
}

}  // namespace
