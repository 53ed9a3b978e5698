#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "engine/app_data_stand_in.h"
#include "engine/engine_fixture.h"
#include "engine/trace.h"

// The trace of an engine as a text that a test can write down: what differs from run to run stands in it as
// <folder>, <key> and the like.

// The lines of all threads since the last look.
inline std::mutex g_traceMutex;
inline std::string g_traceText;

inline void CollectTrace(const char* line) {
    const std::lock_guard lock(g_traceMutex);
    g_traceText += line;
    g_traceText += '\n';
}

inline void ReplaceAll(std::string& text, const std::string& what, const std::string& by) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
        text.replace(at, what.size(), by);
    }
}

class Trace : public EngineTest {
  protected:
    Trace() {
        RestartEngine();
        SetTraceSink(CollectTrace);
        NameInText(key.Path(), "<key>");
        NameInText(data, "<data>");
        NameInText(folder.Path(), "<folder>");
        NameInText("'0x" + PlainAttributes() + "'", "'<plain>'");
        TakeText();
    }
    ~Trace() override {
        engine.reset();
        SetTraceSink(nullptr);
    }

    // From now on `text` reads as `name`. The first that was named is replaced first.
    void NameInText(const std::string& text, const std::string& name) { m_names.emplace_back(text, name); }

    // The lines since the last look, between line ends, as a text in the source begins and ends with one.
    std::string TakeText() {
        const std::lock_guard lock(g_traceMutex);
        std::string text = "\n" + std::exchange(g_traceText, {});
        for (const auto& [what, name] : m_names) ReplaceAll(text, what, name);
        const std::string renaming = "' to '<folder>";
        if (const std::size_t at = text.find(renaming); at != std::string::npos) {
            const std::size_t start = at + renaming.size();
            ReplaceAll(text, text.substr(start, text.find("'", start) - start), "<renamed>");
        }
        return text;
    }

    // The text of a load behind the lines that any load has.
    std::string LoadText(const std::string& xml) {
        TakeText();
        Load(xml);
        const std::string text = TakeText();
        const std::string last = "Loading location variables from xml.";
        const std::size_t at = text.find(last);
        EXPECT_NE(at, std::string::npos) << text;
        return at != std::string::npos ? text.substr(at + last.size()) : text;
    }
    std::string CleanText() {
        Clean();
        return TakeText();
    }
    std::string ShredText(const std::vector<std::string>& files, int passes) {
        for (const std::string& file : files) engine->AddShredFile(file);
        Shred(passes);
        return TakeText();
    }

    // Loads and scans one trace of each kind: five of them.
    void FindEachKind() {
        key.SetText("value", "text");
        key.MakeKey("keys\\sub");
        folder.MakeFolder("root\\sub");
        const std::string ini = folder.MakeFile("a.ini", "[part]\r\nkey=secret\r\n");
        ASSERT_TRUE(Load(OneEntityXml(
            ItemXml("RegValue", "HKCU\\" + key.Path(), "Delete", "value") +
            ItemXml("RegKey", "HKCU\\" + key.At("keys")) + ItemXml("File", folder.MakeFile("a.b.txt")) +
            ItemXml("Folder", folder.At("root") + "\\") + ItemXml("IniValue", ini, "Delete", "[part]key"))));
        Scan();
        TakeText();
    }

    const std::string data = folder.MakeFolder("data");
    const std::string product = folder.MakeFolder("data\\Quillmere\\Velvane");
    AppDataStandIn appData{data};
    const TestKey key;

  private:
    // Of a file without any: systems differ in what they call plain.
    std::string PlainAttributes() {
        const std::string file = folder.MakeFile("plain");
        ::SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_NORMAL);
        char text[20];
        std::snprintf(text, sizeof text, "%lx", ::GetFileAttributesA(file.c_str()));
        ::DeleteFileA(file.c_str());
        return text;
    }

    std::vector<std::pair<std::string, std::string>> m_names;
};
