#include "end_to_end/session.h"

#include <shlobj.h>

#include "engine/engine_fixture.h"
#include "system/handles.h"
#include "system/system_facts.h"

namespace {

std::string ProductFolder(int csidl) {
    return FolderPath(csidl).value() + "\\Quillmere\\Velvane\\";
}

}  // namespace

void WriteFileAt(const std::string& path, const std::string& content) {
    const UniqueHandle file = OwnHandle<UniqueHandle>(
        ::CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD written = 0;
    ASSERT_TRUE(
        ::WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr))
        << path;
}

void ProgramSession::RemoveProductFiles() {
    for (const char* file : {"AppPreferences.dat", "cleaning.db"})
        ::DeleteFileA((ProductFolder(CSIDL_COMMON_APPDATA) + file).c_str());
    ::DeleteFileA((ProductFolder(CSIDL_APPDATA) + "CleanPreferences.db").c_str());
    // One that waits for a restart makes each start begin with its pass.
    ::RemoveDirectoryA((ProductFolder(CSIDL_APPDATA) + "DeleteOnReboot").c_str());
}

void ProgramSession::WriteProductFile(const std::string& name, const std::string& content) {
    const std::string company = FolderPath(CSIDL_COMMON_APPDATA).value() + "\\Quillmere";
    ::CreateDirectoryA(company.c_str(), nullptr);
    ::CreateDirectoryA((company + "\\Velvane").c_str(), nullptr);
    WriteFileAt(company + "\\Velvane\\" + name, content);
}

void ProgramSession::Start(const std::string& line, const std::string& program) {
    run = std::make_unique<ProgramRun>(program, line);
    hand = std::make_unique<UserHand>(*run);
}

std::optional<DWORD> ProgramSession::Close() {
    ::PostMessageA(hand->Window(), WM_CLOSE, 0, 0);
    return run->Wait();
}

Session::Session() {
    RemoveProductFiles();
    for (int i = 0; i < 20; ++i) folder.MakeFile("data\\sub\\trace" + std::to_string(i));
    folder.MakeFile("kept\\document.txt", "mine");
    key.SetText("Last", "a trace", "list");
    const std::string files =
        ElementXml("Application", "Name='A'",
                   ElementXml("Entity", "Name='E'", ItemXml("Folder", folder.At("data\\"), "All")));
    const std::string lists = ElementXml(
        "Application", "Name='B'",
        ElementXml("Entity", "Name='F'", ItemXml("RegValue", "HKCU\\" + key.At("list"), "Delete", "Last")));
    WriteProductFile("cleaning.db", PackDb(DefinitionsXml(ElementXml("Category", "Name='Files'", files) +
                                                          ElementXml("Category", "Name='Lists'", lists))));
}

Session::~Session() {
    run.reset();
    RemoveProductFiles();
}

void Session::MakeMany() const {
    for (int i = 0; i < 3000; ++i)
        folder.MakeFile("data\\many" + std::to_string(i % 30) + "\\f" + std::to_string(i), "");
}

int Session::FilesLeft() const {
    return static_cast<int>(NamesIn(folder.At("data\\sub\\")).size());
}
