#include "engine/trace.h"

#include <gtest/gtest.h>

#include <mutex>
#include <string>

#include "engine/engine_fixture.h"

namespace {

std::mutex g_mutex;
std::string g_text;

void Collect(const char* line) {
    const std::lock_guard lock(g_mutex);
    g_text += std::string(line) + "\n";
}

using Trace = EngineTest;

// A developer's build tells what it does. The order counts, not the wording of each line.
TEST_F(Trace, TellsARunFromItsStartToItsEnd) {
    SetTraceSink(Collect);
    const std::string file = folder.MakeFile("a.txt");
    ASSERT_TRUE(Load(OneEntityXml(ItemXml("File", file))));
    Scan();
    Clean();
    SetTraceSink(nullptr);
    std::size_t at = 0;
    for (const std::string& line :
         {std::string("Cleaning definitions have been loaded."), std::string("Starting scan."),
          std::string("Finished scan."), "Deleting '" + file + "'.", std::string("Finished cleaning.")}) {
        at = g_text.find(line + "\n", at);
        ASSERT_NE(at, std::string::npos) << line << "\n" << g_text;
    }
}

}  // namespace
