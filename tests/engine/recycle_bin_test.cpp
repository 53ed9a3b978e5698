#include "engine/recycle_bin.h"

#include <gtest/gtest.h>
#include <shellapi.h>
#include <windows.h>

#include <string>
#include <vector>

#include "engine/recording_sink.h"
#include "engine/stand_in_shell.h"
#include "support/folder_link.h"
#include "support/sandbox.h"

namespace {

using Lines = std::vector<std::string>;

struct Found {
    Lines lines;
    std::uint32_t count;
    bool operator==(const Found&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Found& found) {
    for (const std::string& line : found.lines) out << line << "\n";
    return out << "counted " << found.count;
}

Found Search(const std::string& storage, const std::vector<DeletedEntry>& entries,
             std::size_t stopAfter = std::numeric_limits<std::size_t>::max()) {
    RecordingSink sink;
    sink.stopAfter = stopAfter;
    IShellFolder2* const bin = MakeStandInFolder(entries);
    const std::uint32_t count = ScanShellFolder(bin, nullptr, sink);
    EXPECT_EQ(bin->Release(), 0u);
    EXPECT_EQ(LiveStandIns(), 0);
    return {sink.Lines(storage), count};
}

TEST(RecycleBin, FilesAreKnownByTheirRealPathInEveryFormOfText) {
    const TestFolder bin;
    const std::string wide = bin.MakeFile("De1 \u6f22.txt");
    const std::string offset = bin.MakeFile("De2.txt");
    const std::string inlined = bin.MakeFile("De3");
    EXPECT_EQ(Search(bin.Path(), {{wide}, {offset, NameForm::Offset}, {inlined, NameForm::Inline}}),
              (Found{{"file |De1 \u6f22.txt", "file |De2.txt", "file |De3"}, 0}))
        << "kept: the bin's own entries are not counted";
    EXPECT_EQ(Search(bin.Path(), {{wide}, {offset}}, 0).lines.size(), 2u) << "a stop is not heeded";
}

TEST(RecycleBin, EntriesThatCannotBePlacedArePassedOver) {
    const TestFolder bin;
    const std::string file = bin.MakeFile("real.txt");
    const std::string tooLong = bin.Path() + std::string(270, 'x');
    char before[MAX_PATH] = "";
    ::GetCurrentDirectoryA(sizeof before, before);
    ASSERT_TRUE(::SetCurrentDirectoryA(bin.Path().c_str()));
    ASSERT_TRUE(Exists("real.txt"));
    const Found found = Search(bin.Path(), {{bin.At("gone.txt")},
                                            {tooLong},
                                            {tooLong, NameForm::Offset},
                                            {""},
                                            {"real.txt"},  // would be taken for the one in the current folder
                                            {"C:real.txt", NameForm::Inline},
                                            {"::{645FF040-5081-101B-9F08-00AA002F954E}"},
                                            {file, NameForm::Unknown},
                                            {file, NameForm::Fails},
                                            {file}});
    ::SetCurrentDirectoryA(before);
    EXPECT_EQ(found, (Found{{"file |real.txt"}, 0}));
}

TEST(RecycleBin, FoldersAreSearchedAsTheShellLetsThem) {
    const TestFolder bin;
    for (const char* name : {"Dc1\\a", "Dc1\\sub\\b", "Dc2\\c", "Dc2\\sub\\d", "Dc3\\e"}) bin.MakeFile(name);
    // Opened by the shell: what the shell shows of it. Not implemented: what lies there. Else: itself alone.
    const std::vector<DeletedEntry> entries = {
        {bin.At("Dc1"),
         NameForm::Wide,
         S_OK,
         {{bin.At("Dc1\\a")}, {bin.At("Dc1\\sub"), NameForm::Inline, E_NOTIMPL, {}}}},
        {bin.At("Dc2\\"), NameForm::Wide, E_NOTIMPL, {}},
        {bin.At("Dc3"), NameForm::Wide, E_ACCESSDENIED, {}}};
    EXPECT_EQ(Search(bin.Path(), entries), (Found{{"file Dc1\\|a", "file Dc1\\sub\\|b", "folder Dc1\\|sub\\",
                                                   "folder |Dc1\\", "file Dc2\\|c", "file Dc2\\sub\\|d",
                                                   "folder Dc2\\|sub\\", "folder |Dc2\\", "folder |Dc3\\"},
                                                  4}));
}

TEST(RecycleBin, ADeletedLinkIsListedAndNeverEntered) {
    const TestFolder bin;
    const TestFolder elsewhere;
    elsewhere.MakeFile("precious.txt");
    const FolderLink link(bin.At("Dc1"), elsewhere.Path());
    for (const HRESULT bind : {HRESULT{S_OK}, HRESULT{E_NOTIMPL}}) {
        EXPECT_EQ(
            Search(bin.Path(), {{bin.At("Dc1"), NameForm::Wide, bind, {{bin.At("Dc1\\precious.txt")}}}}),
            (Found{{"folder |Dc1\\"}, 0}));
    }
}

TEST(RecycleBin, TheRealBinGivesNothingThatLiesElsewhere) {
    const TestFolder folder;
    std::string list = folder.MakeFile("victim.txt") + '\0';
    SHFILEOPSTRUCTA deletion = {};
    deletion.wFunc = FO_DELETE;
    deletion.pFrom = list.c_str();
    deletion.fFlags = FOF_ALLOWUNDO | FOF_NOCONFIRMATION | FOF_SILENT | FOF_NOERRORUI;
    ASSERT_EQ(::SHFileOperationA(&deletion), 0);
    ASSERT_FALSE(Exists(folder.At("victim.txt")));
    // One of the same name, where a bare name would be looked for.
    folder.MakeFile("victim.txt", "a new one");
    char before[MAX_PATH] = "";
    ::GetCurrentDirectoryA(sizeof before, before);
    ASSERT_TRUE(::SetCurrentDirectoryA(folder.Path().c_str()));
    RecordingSink sink;
    ScanRecycleBin(nullptr, sink);
    ::SetCurrentDirectoryA(before);
    for (const RecordingSink::Trace& trace : sink.traces) {
        EXPECT_NE(trace.path->find(":\\"), std::string::npos) << *trace.path << *trace.name;
        EXPECT_FALSE(trace.path->starts_with(folder.Path())) << *trace.name;
    }
    EXPECT_EQ(FileContent(folder.At("victim.txt")), "a new one");
}

}  // namespace
