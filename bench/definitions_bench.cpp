#include <windows.h>

#include <zlib.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "base/db_container.h"
#include "benches.h"
#include "engine_run.h"
#include "sample_definitions.h"
#include "system/files.h"
#include "system/handles.h"

namespace {

constexpr std::size_t kTextSize = 10u << 20;  // bytes

// The compressed bytes of a definitions file, for the bare loop.
class PackedText {
  public:
    PackedText(const std::string& path, std::size_t textSize) : m_textSize(textSize) {
        auto file = ReadWholeFile(path.c_str(), kMaxDbPayload);
        Require(file.has_value(), "the definitions file");
        m_archive = std::move(*file);
        std::uint8_t* payload = nullptr;
        const auto length =
            DecodeDbFile(m_archive.data(), static_cast<std::uint32_t>(m_archive.size()), &payload);
        const std::unique_ptr<std::uint8_t, FreeDeleter> owner(payload);
        Require(length == textSize, "the whole text in the definitions file");
        // Behind the header of the archive's one entry: the lengths of its name and of what else it has.
        constexpr std::size_t kHeader = 30;
        std::uint16_t lengths[2];
        std::memcpy(lengths, m_archive.data() + kHeader - sizeof lengths, sizeof lengths);
        m_begin = kHeader + lengths[0] + lengths[1];
    }

    // Inflates and parses, and frees what that took. Returns the seconds.
    double Parse() {
        const double begin = Now();
        Require(ParseOnce(), "definitions that are whole");
        return Now() - begin;
    }

  private:
    bool ParseOnce() {
        const std::unique_ptr<char, FreeDeleter> text(static_cast<char*>(std::malloc(m_textSize)));
        z_stream stream = {};
        stream.next_in = m_archive.data() + m_begin;
        stream.avail_in = static_cast<uInt>(m_archive.size() - m_begin);
        stream.next_out = reinterpret_cast<Bytef*>(text.get());
        stream.avail_out = static_cast<uInt>(m_textSize);
        ::inflateInit2(&stream, -MAX_WBITS);
        const int status = ::inflate(&stream, Z_FINISH);
        ::inflateEnd(&stream);
        pugi::xml_document document;
        constexpr unsigned int kOptions = pugi::parse_cdata | pugi::parse_wconv_attribute | pugi::parse_eol;
        return status == Z_STREAM_END &&
               document.load_buffer_inplace(text.get(), m_textSize, kOptions, pugi::encoding_utf8);
    }

    std::size_t m_textSize;
    std::vector<std::uint8_t> m_archive;
    std::size_t m_begin;
};

}  // namespace

void BenchDefinitions(const BenchOptions& options, AnsweringWindow& window, Report& report) {
    const std::string xml = SampleDefinitions(kTextSize);
    const std::string path = WriteDefinitionsFile(xml);
    const std::string states = std::string(kBenchFolder) + "states.db";
    PackedText packed(path, xml.size());

    const auto load = [&](const std::string& preferences) {
        CCleaningEngine engine;
        engine.SetDefinitionsFile(path);
        engine.SetPreferencesFile(preferences);
        const double seconds = window.Time(WM_ENGINE_LOADED, [&] { engine.StartLoad(window.Handle()); });
        while (engine.IsBusy()) ::SwitchToThread();
        Require(engine.LoadedNodeCount() > kTextSize / 10'000, "definitions that load");
        return seconds;
    };
    const auto bare = [&] { return packed.Parse(); };
    const int rounds = 4 * options.rounds;
    report.Add("load of definitions of 10 MB",
               TakeTurns(rounds, bare, [&] { return load(std::string(kBenchFolder) + "none.db"); }), 2.5);

    {
        CCleaningEngine engine;
        engine.SetDefinitionsFile(path);
        engine.SetPreferencesFile(states);
        Require(engine.LoadDefinitions(), "definitions that load");
        engine.SaveItemStates();
    }
    report.Add("load with the states of every node",
               TakeTurns(options.rounds, bare, [&] { return load(states); }), kNoLimit);
    ::DeleteFileA(states.c_str());
}
