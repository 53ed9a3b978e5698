#include "base/memory_archive.h"

#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

namespace {

struct GrowthCase {
    const char* what;
    std::vector<std::size_t> writes;
    std::size_t capacity;
};

const GrowthCase kGrowthCases[] = {
    {"nothing written", {}, 100000},
    {"below the capacity", {99999}, 100000},
    {"a write that reaches the capacity doubles it", {100000}, 200000},
    {"so do many small ones", {60000, 39999, 1}, 200000},
    {"twice the capacity is taken exactly", {200000}, 200000},
    {"more than twice is taken exactly", {250000}, 250000},
};

TEST(ArchiveBuffer, GrowsByDoublingOrToWhatIsNeeded) {
    for (const GrowthCase& row : kGrowthCases) {
        ArchiveBuffer buffer;
        std::vector<std::uint8_t> written;
        for (const std::size_t size : row.writes) {
            std::vector<std::uint8_t> block(size);
            std::iota(block.begin(), block.end(), static_cast<std::uint8_t>(written.size() + 1));
            EXPECT_TRUE(buffer.Write(block.data(), size)) << row.what;
            written.insert(written.end(), block.begin(), block.end());
        }
        EXPECT_EQ(buffer.Capacity(), row.capacity) << row.what;
        EXPECT_TRUE(
            std::equal(written.begin(), written.end(), buffer.Data(), buffer.Data() + buffer.Length()))
            << row.what;
    }
}

TEST(ArchiveBuffer, CountsFromThePositionAndNotFromTheLength) {
    ArchiveBuffer buffer;
    ASSERT_TRUE(buffer.Write(std::string(99999, 'a').data(), 99999));
    ASSERT_TRUE(buffer.Seek(10));
    ASSERT_TRUE(buffer.Write("bbb", 3));
    EXPECT_EQ(buffer.Capacity(), 100000u);
    EXPECT_EQ(buffer.Length(), 99999u);
    EXPECT_EQ(std::string(buffer.Data() + 9, buffer.Data() + 14), "abbba");
    EXPECT_FALSE(buffer.Seek(100000)) << "a hole would hold bytes that nobody wrote";
    EXPECT_EQ(buffer.Position(), 13u);
}

TEST(ArchiveBuffer, WritesNothingAfterAFailure) {
    ArchiveBuffer buffer(10);
    ASSERT_TRUE(buffer.Write("0123", 4));
    EXPECT_FALSE(buffer.Write("4567890", 7));
    EXPECT_FALSE(buffer.Write("4", 1)) << "an archive with a hole must not come to its end";
    EXPECT_EQ(buffer.Length(), 4u);
}

}  // namespace
