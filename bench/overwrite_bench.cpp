#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "benches.h"
#include "engine_run.h"
#include "system/handles.h"

namespace {

constexpr DWORD kFileSize = 64u << 20;  // bytes

// The file that is written over, open as the engine opens what it shreds.
class OverwrittenFile {
  public:
    OverwrittenFile()
        : m_path(std::string(kBenchFolder) + "overwritten.bin"),
          m_file(OwnHandle<UniqueHandle>(
              ::CreateFileA(m_path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                            FILE_FLAG_WRITE_THROUGH | FILE_FLAG_OPEN_REPARSE_POINT, nullptr))) {
        Require(m_file != nullptr, "a file to overwrite");
        DWORD sectors = 0;
        DWORD bytes = 0;
        DWORD freeClusters = 0;
        DWORD allClusters = 0;
        ::GetDiskFreeSpaceA("C:\\", &sectors, &bytes, &freeClusters, &allClusters);
        m_cluster.assign(sectors * bytes, 'x');
        Require(!m_cluster.empty() && kFileSize % m_cluster.size() == 0, "a cluster size that divides 64 MB");
        Require(WriteOnce(), "room for 64 MB");
    }
    ~OverwrittenFile() {
        m_file.reset();
        ::DeleteFileA(m_path.c_str());
    }
    OverwrittenFile(const OverwrittenFile&) = delete;
    OverwrittenFile& operator=(const OverwrittenFile&) = delete;

    const std::string& Path() const { return m_path; }
    HANDLE Handle() const { return m_file.get(); }

    // The bare loop.
    bool WriteOnce() {
        ::SetFilePointer(m_file.get(), 0, nullptr, FILE_BEGIN);
        const DWORD size = static_cast<DWORD>(m_cluster.size());
        for (DWORD at = 0; at < kFileSize; at += size) {
            DWORD written = 0;
            if (!::WriteFile(m_file.get(), m_cluster.data(), size, &written, nullptr) || written != size) {
                return false;
            }
        }
        return true;
    }

  private:
    std::string m_path;
    UniqueHandle m_file;
    std::vector<char> m_cluster;
};

}  // namespace

void BenchOverwrite(const BenchOptions& options, AnsweringWindow&, Report& report) {
    OverwrittenFile file;
    CCleaningEngine engine;
    const auto bare = [&](int passes) {
        const double begin = Now();
        for (int i = 0; i < passes; ++i) Require(file.WriteOnce(), "room for 64 MB");
        return Now() - begin;
    };
    const auto overwrite = [&](int passes) {
        engine.SetShredPasses(passes);
        const double begin = Now();
        Require(engine.OverwriteFile(file.Handle(), file.Path()), "room for 64 MB");
        return Now() - begin;
    };
    const int rounds = 4 * options.rounds;
    const Rounds once = TakeTurns(
        rounds, [&] { return bare(1); }, [&] { return overwrite(1); });
    const Rounds thrice = TakeTurns(
        rounds, [&] { return bare(3); }, [&] { return overwrite(3); });
    report.Add("overwrite of 64 MB, 1 pass", once, 1.1);
    report.Add("overwrite of 64 MB, 3 passes", thrice, kNoLimit);
    report.AddQuotient("3 passes against 1", Median(thrice.engine) / Median(once.engine),
                       Median(thrice.bare) / Median(once.bare), 3.2);
}
