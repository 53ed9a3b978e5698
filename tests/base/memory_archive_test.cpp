#include "base/memory_archive.h"

#include <gtest/gtest.h>

#include <string>

namespace {

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
