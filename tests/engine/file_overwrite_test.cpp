#include "engine/file_overwrite.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "base/random_text.h"
#include "engine/cleaning_engine.h"
#include "engine/write_recorder.h"
#include "support/api_hook.h"
#include "support/sandbox.h"

// What the overwriting writes, and how it names files anew.

namespace {

constexpr std::size_t kCluster = WriteRecorder::kCluster;

// What the last pass writes over `size` bytes when the generator has been seeded with `seed` before: the same
// random cluster again and again.
std::string RandomBytes(std::uint32_t seed, std::size_t size) {
    RandomText::Seed(seed);
    std::string cluster;
    for (std::size_t i = 0; i < kCluster; ++i) cluster += static_cast<char>(RandomText::Next());
    std::string bytes;
    while (bytes.size() < size) bytes += cluster;
    return bytes.substr(0, size);
}

std::vector<std::size_t> SizesOf(const WriteRecorder::Pass& pass) {
    std::vector<std::size_t> sizes;
    for (const std::string& one : pass.writes) sizes.push_back(one.size());
    return sizes;
}

struct PassCase {
    const char* name;
    int asked;  // of SetShredPasses
    std::size_t passes;
    std::size_t fileSize;
    std::vector<std::size_t> writes;  // the sizes of the writes of each pass
};

const PassCase kPassCases[] = {
    {"none at all", 0, 0, 20, {}},
    {"random once", 1, 1, 20, {16, 4}},
    {"zeros, ones, random", 3, 3, 20, {16, 4}},
    {"above the range", 12, 11, 20, {16, 4}},
    {"less than a cluster", 3, 3, 5, {5}},
    {"nothing in the file", 3, 3, 0, {}},
};

TEST(FileOverwrite, WritesEachPassOverTheWholeFileAndNothingElse) {
    for (const PassCase& row : kPassCases) {
        SCOPED_TRACE(row.name);
        const TestFolder folder;
        const std::string file = folder.MakeFile("a.txt", std::string(row.fileSize, 'x'));
        CCleaningEngine engine;
        engine.SetShredPasses(row.asked);
        WriteRecorder recorder;
        RandomText::Seed(7);
        EXPECT_TRUE(engine.ShredFile(file, false));
        EXPECT_EQ(NamesIn(folder.Path()), std::vector<std::string>());

        ASSERT_EQ(recorder.passes.size(), row.passes);
        for (std::size_t i = 0; i < row.passes; ++i) {
            const std::string expected = i + 1 == row.passes
                                             ? RandomBytes(7, row.fileSize)
                                             : std::string(row.fileSize, i % 2 == 0 ? '\x00' : '\xFF');
            EXPECT_EQ(recorder.passes[i].Whole(), expected) << "pass " << i + 1;
            EXPECT_EQ(SizesOf(recorder.passes[i]), row.writes) << "pass " << i + 1;
        }
        EXPECT_EQ(recorder.root, row.passes != 0 ? file.substr(0, 3) : "");
    }
}

// kept: only a stop ends an even count; the pair that runs is finished, and so is the random pass.
TEST(FileOverwrite, AnEvenCountEndsOnlyByAStop) {
    const TestFolder folder;
    const std::string file = folder.MakeFile("a.txt", std::string(kCluster, 'x'));
    CCleaningEngine engine;
    engine.SetShredPasses(10);
    WriteRecorder recorder;
    auto moves = API_HOOK(MoveFileA);
    auto schedules = API_HOOK(MoveFileExA);
    recorder.writes.Before(31, [&] { engine.CancelAction(); });  // the zeros of the 16th pair
    EXPECT_FALSE(engine.ShredFile(file, false));

    ASSERT_EQ(recorder.passes.size(), 33u);
    EXPECT_EQ(recorder.passes[31].Whole(), std::string(kCluster, '\xFF'));
    EXPECT_NE(recorder.passes[32].Whole(), std::string(kCluster, '\x00'));
    EXPECT_EQ(FileContent(file), recorder.passes[32].Whole()) << "under its old name";
    EXPECT_EQ(moves.Calls(), 0);
    EXPECT_EQ(schedules.Calls(), 0);
}

struct WriteFaultCase {
    const char* name;
    int write;         // which one fails, of the six of three passes over two clusters
    bool shortCount;   // it succeeds with less than was asked for
    std::size_t left;  // writes of its pass that still happen
    bool gone;
};

const WriteFaultCase kWriteFaultCases[] = {
    {"a full disk in the first pass ends that pass only", 1, false, 1, true},
    {"a full disk in the last pass", 5, false, 1, false},
    {"a short write at the very end", 6, true, 2, false},
};

TEST(FileOverwrite, OnlyTheLastPassDecides) {
    for (const WriteFaultCase& row : kWriteFaultCases) {
        SCOPED_TRACE(row.name);
        const TestFolder folder;
        const std::string file = folder.MakeFile("a.txt", std::string(2 * kCluster, 'x'));
        CCleaningEngine engine;
        engine.SetShredPasses(3);
        WriteRecorder recorder;
        auto faults = API_HOOK(WriteFile);  // sees the calls before the recorder
        faults.ReplaceAt(row.write,
                         [&](HANDLE handle, LPCVOID data, DWORD size, LPDWORD written, LPOVERLAPPED) {
                             recorder.passes.back().writes.emplace_back(static_cast<const char*>(data), size);
                             *written = row.shortCount ? size - 1 : 0;
                             ::SetLastError(ERROR_DISK_FULL);
                             EXPECT_NE(handle, nullptr);
                             return row.shortCount ? TRUE : FALSE;
                         });
        auto schedules = API_HOOK(MoveFileExA);
        schedules.Replace([](auto...) { return TRUE; });
        EXPECT_EQ(engine.ShredFile(file, false), row.gone);
        EXPECT_EQ(recorder.passes.size(), 3u) << "every pass is begun";
        const std::size_t faulty = static_cast<std::size_t>(row.write - 1) / 2;
        EXPECT_EQ(recorder.passes.at(faulty).writes.size(), row.left);
        EXPECT_EQ(NamesIn(folder.Path()).size(), row.gone ? 0u : 1u);
        EXPECT_EQ(Exists(file), !row.gone) << "under its own name";
        EXPECT_EQ(schedules.Calls(), row.gone ? 0 : 1);
    }
}

// What the volume does not tell leaves the content as it is.
TEST(FileOverwrite, WritesNothingWithoutAClusterSize) {
    const TestFolder folder;
    const std::string file = folder.MakeFile("a.txt", "0123456789");
    CCleaningEngine engine;
    auto schedules = API_HOOK(MoveFileExA);
    schedules.Replace([](auto...) { return TRUE; });
    auto writes = API_HOOK(WriteFile);
    auto geometry = API_HOOK(GetDiskFreeSpaceA);
    geometry.FailAlways(ERROR_INVALID_PARAMETER);
    EXPECT_FALSE(engine.ShredFile(file, false));
    geometry.Replace([](LPCSTR, LPDWORD sectors, LPDWORD bytes, LPDWORD, LPDWORD) {
        *sectors = *bytes = 0x10000;  // more than a size of 32 bits holds
        return TRUE;
    });
    EXPECT_FALSE(engine.ShredFile(file, false));
    EXPECT_EQ(writes.Calls(), 0);
    EXPECT_EQ(schedules.Calls(), 2);
    EXPECT_EQ(FileContent(file), "0123456789");
}

bool IsLetter(char c) {
    return RandomText::kAlphabet.find(c) != std::string_view::npos;
}

TEST(FileOverwrite, FindsTheRootOfAVolume) {
    EXPECT_EQ(VolumeRoot("d:\\folder\\a.txt"), "d:\\");
    EXPECT_EQ(VolumeRoot("\\\\server\\share\\folder\\a.txt"), "\\\\server\\share\\");
    EXPECT_EQ(VolumeRoot("\\\\server"), "\\\\server");
}

TEST(RenameRandom, KeepsTheLengthAndTheDotsOfTheNameAlone) {
    const TestFolder folder;
    for (const char* name : {"a.b.c", ".hidden", "plain", "sub.folder\\two  words.t-t"}) {
        SCOPED_TRACE(name);
        const std::string file = folder.MakeFile(name, "content of it");
        char newPath[MAX_PATH];
        ASSERT_TRUE(RenameRandom(file.c_str(), newPath, sizeof newPath));
        const std::string renamed = newPath;
        EXPECT_FALSE(Exists(file));
        EXPECT_EQ(FileContent(renamed), "content of it");
        const std::size_t nameStart = file.rfind('\\') + 1;
        ASSERT_EQ(renamed.size(), file.size());
        EXPECT_EQ(renamed.substr(0, nameStart), file.substr(0, nameStart));
        for (std::size_t i = nameStart; i < file.size(); ++i) {
            EXPECT_TRUE(file[i] == '.' ? renamed[i] == '.' : IsLetter(renamed[i])) << renamed;
        }
    }
}

}  // namespace
