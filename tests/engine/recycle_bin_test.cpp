#include "engine/recycle_bin.h"

#include <gtest/gtest.h>
#include <shellapi.h>
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "engine/bin_stand_in.h"
#include "engine/recording_sink.h"
#include "support/folder_link.h"
#include "support/method_patch.h"
#include "support/sandbox.h"
#include "system/shell_items.h"

namespace {

using Lines = std::vector<std::string>;
using UniqueShellFolder = UniqueReference<IShellFolder2>;

// A folder of the disk as the shell shows it.
UniqueShellFolder ShellFolder(const TestFolder& folder) {
    const auto allocator = ShellAllocator();
    ITEMIDLIST* id = nullptr;
    EXPECT_EQ(ShellIdOf(folder.Path(), &id), S_OK);
    const UniqueIdList owner(id, IdListDeleter{allocator.get()});
    IShellFolder* desktop = nullptr;
    EXPECT_EQ(::SHGetDesktopFolder(&desktop), S_OK);
    const UniqueReference<IShellFolder> desktopOwner(desktop);
    void* bound = nullptr;
    EXPECT_EQ(desktop->BindToObject(id, nullptr, IID_IShellFolder2, &bound), S_OK);
    return UniqueShellFolder(static_cast<IShellFolder2*>(bound));
}

// What is found, in the order of the alphabet, and below it what was counted.
Lines Search(IShellFolder2* bin, const TestFolder& storage) {
    RecordingSink sink;
    const std::uint32_t count = ScanShellFolder(bin, nullptr, sink);
    Lines lines = sink.Lines(storage.Path());
    std::sort(lines.begin(), lines.end());
    lines.push_back("counted " + std::to_string(count));
    return lines;
}

using BindMethod = HRESULT (WINAPI IShellFolder::*)(LPCITEMIDLIST, IBindCtx*, REFIID, void**);
constexpr BindMethod kBind = &IShellFolder::BindToObject;

TEST(RecycleBin, FoldersAreSearchedAsTheShellLetsThem) {
    const TestFolder storage;
    for (const char* name : {"De1 \u6f22.txt", "Dc1\\a", "Dc1\\sub\\b"}) storage.MakeFile(name);
    const auto bin = ShellFolder(storage);
    const Lines whole = {"file Dc1\\sub\\|b", "file Dc1\\|a", "file |De1 \u6f22.txt", "folder Dc1\\|sub\\",
                         "folder |Dc1\\"};
    Lines expected = whole;
    expected.push_back("counted 0");
    EXPECT_EQ(Search(bin.get(), storage), expected) << "kept: the bin's own entries are not counted";
    {
        const MethodPatch patch(bin.get(), kBind, &FailMethod<E_NOTIMPL>);
        expected.back() = "counted 3";
        EXPECT_EQ(Search(bin.get(), storage), expected) << "what lies there";
    }
    const MethodPatch patch(bin.get(), kBind, &FailMethod<E_ACCESSDENIED>);
    EXPECT_EQ(Search(bin.get(), storage), (Lines{whole[2], whole[4], "counted 0"})) << "itself alone";
}

std::string g_name;
HRESULT WINAPI GiveName(IShellFolder*, LPCITEMIDLIST, SHGDNF, STRRET* name) {
    name->uType = STRRET_CSTR;
    std::memcpy(name->cStr, g_name.c_str(), g_name.size() + 1);
    return S_OK;
}

TEST(RecycleBin, ANameThatIsNoPathIsNotTakenForTheFileInTheCurrentFolder) {
    const TestFolder storage;
    const std::string file = storage.MakeFile("real.txt");
    const auto bin = ShellFolder(storage);
    const MethodPatch patch(bin.get(), &IShellFolder::GetDisplayNameOf, &GiveName);
    char before[MAX_PATH] = "";
    ::GetCurrentDirectoryA(sizeof before, before);
    ASSERT_TRUE(::SetCurrentDirectoryA(storage.Path().c_str()));
    for (const std::string& name :
         {file, std::string("real.txt"), std::string("C:real.txt"), storage.At("gone.txt"), std::string()}) {
        g_name = name;
        Lines expected = {"counted 0"};
        if (name == file) expected.insert(expected.begin(), "file |real.txt");
        EXPECT_EQ(Search(bin.get(), storage), expected) << name;
    }
    ::SetCurrentDirectoryA(before);
}

TEST(RecycleBin, ADeletedLinkIsListedAndNeverEntered) {
    const TestFolder storage;
    const TestFolder elsewhere;
    elsewhere.MakeFile("precious.txt");
    const FolderLink link(storage.At("Dc1"), elsewhere.Path());
    const auto bin = ShellFolder(storage);
    const Lines expected = {"folder |Dc1\\", "counted 0"};
    EXPECT_EQ(Search(bin.get(), storage), expected);
    const MethodPatch patch(bin.get(), kBind, &FailMethod<E_NOTIMPL>);
    EXPECT_EQ(Search(bin.get(), storage), expected);
}

IShellFolder2* g_target = nullptr;
HRESULT WINAPI BindToTarget(IShellFolder*, LPCITEMIDLIST, IBindCtx*, REFIID interfaceId, void** bound) {
    return g_target->QueryInterface(interfaceId, bound);
}

// What the shell makes of a folder whose desktop.ini says that it is a shortcut to another.
TEST(RecycleBin, ADeletedShortcutToAFolderDoesNotLeadOutOfTheBin) {
    const TestFolder storage;
    const TestFolder elsewhere;
    elsewhere.MakeFile("precious.txt");
    ::CreateDirectoryA(storage.At("Dc1").c_str(), nullptr);
    const auto bin = ShellFolder(storage), target = ShellFolder(elsewhere);
    g_target = target.get();
    const MethodPatch patch(bin.get(), kBind, &BindToTarget);
    EXPECT_EQ(Search(bin.get(), storage), (Lines{"folder |Dc1\\", "counted 0"}));
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
    RecordingSink sink;
    ScanRecycleBin(nullptr, sink);
    for (const RecordingSink::Trace& trace : sink.traces) {
        EXPECT_NE(trace.path->find(":\\"), std::string::npos) << *trace.path << *trace.name;
        EXPECT_FALSE(trace.path->starts_with(folder.Path())) << *trace.name;
    }
}

}  // namespace
