#include "engine_run.h"

#include <windows.h>

#include <cstdlib>
#include <memory>

#include "base/db_container.h"
#include "report.h"
#include "system/files.h"
#include "system/handles.h"

std::string WriteDefinitionsFile(std::string_view xml) {
    const std::string path = std::string(kBenchFolder) + "cleaning.db";
    std::uint8_t* bytes = nullptr;
    const std::uint32_t size = EncodeDbFile(xml.data(), static_cast<std::uint32_t>(xml.size()), &bytes);
    const std::unique_ptr<std::uint8_t, FreeDeleter> owner(bytes);
    Require(size > 0 && ReplaceFileContent(path.c_str(), bytes, size), "a place for the definitions");
    return path;
}

std::string OneItemDefinitions(std::string_view item) {
    return "<xclean_def version=\"1\"><Category Name=\"Bench\"><Application Name=\"Bench\">"
           "<Entity Name=\"Bench\">" +
           std::string(item) + "</Entity></Application></Category></xclean_def>";
}

double TimeLoad(AnsweringWindow& window, const std::string& definitions, const std::string& preferences) {
    CCleaningEngine engine;
    engine.SetDefinitionsFile(definitions);
    engine.SetPreferencesFile(preferences);
    const double seconds = window.Time(WM_ENGINE_LOADED, [&] { engine.StartLoad(window.Handle()); });
    while (engine.IsBusy()) ::SwitchToThread();
    Require(engine.LoadedNodeCount() > 0, "definitions that load");
    return seconds;
}

LoadedEngine::LoadedEngine(AnsweringWindow& window, std::string_view xml)
    : LoadedEngine(window, DefinitionsFile{WriteDefinitionsFile(xml)}) {}

LoadedEngine::LoadedEngine(AnsweringWindow& window, const DefinitionsFile& file) : m_window(window) {
    m_engine.SetDefinitionsFile(file.path);
    m_engine.SetPreferencesFile(std::string(kBenchFolder) + "none.db");
    Require(m_engine.LoadDefinitions(), "definitions that load");
}

// The last message comes a moment before the worker is done.
void LoadedEngine::WaitUntilIdle() const {
    while (m_engine.IsBusy()) ::SwitchToThread();
}

double LoadedEngine::Scan() {
    const double seconds =
        m_window.Time(WM_ENGINE_SCAN_DONE, [this] { m_engine.StartScan(m_window.Handle()); });
    WaitUntilIdle();
    return seconds;
}

double LoadedEngine::Clean(int passes) {
    const double seconds =
        m_window.Time(WM_ENGINE_CLEAN_DONE, [&] { m_engine.StartClean(m_window.Handle(), passes); });
    WaitUntilIdle();
    return seconds;
}

double LoadedEngine::ScanUntold() {
    const double begin = Now();
    m_engine.Scan();
    return Now() - begin;
}

double LoadedEngine::CleanUntold(int passes) {
    m_engine.SetShredPasses(passes);
    const double begin = Now();
    m_engine.Clean();
    return Now() - begin;
}
