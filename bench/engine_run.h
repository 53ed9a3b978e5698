#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "answering_window.h"
#include "engine/cleaning_engine.h"

// Where the fixtures are and the program's own files go.
inline constexpr char kBenchFolder[] = "C:\\velvane-bench\\";

// Writes definitions as the engine reads them to the program's folder. Returns the path.
std::string WriteDefinitionsFile(std::string_view xml);

// Definitions of one item; `item` is its element.
std::string OneItemDefinitions(std::string_view item);

// The seconds of one load by an engine of its own, told to the window.
double TimeLoad(AnsweringWindow& window, const std::string& definitions, const std::string& preferences);

// The path of a file of definitions.
struct DefinitionsFile {
    std::string path;
};

// An engine that has loaded these definitions and knows no preferences. The window's thread owns it.
class LoadedEngine {
  public:
    LoadedEngine(AnsweringWindow& window, std::string_view xml);
    LoadedEngine(AnsweringWindow& window, const DefinitionsFile& file);

    CCleaningEngine& Engine() { return m_engine; }

    // Run to their end; the seconds from the start to the last message.
    double Scan();
    double Clean(int passes);

    // The same on this thread, and with nobody to tell: what is the engine's own.
    double ScanUntold();
    double CleanUntold(int passes);

  private:
    void WaitUntilIdle() const;

    AnsweringWindow& m_window;
    CCleaningEngine m_engine;
};
