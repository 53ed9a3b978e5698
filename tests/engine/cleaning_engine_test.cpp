#include "engine/cleaning_engine.h"

#include <gtest/gtest.h>

#include "engine/engine_fixture.h"

namespace {

using Hierarchy = EngineTest;

TEST_F(Hierarchy, LoadsListsScansAndCleans) {
    folder.MakeFile("a.txt");
    ASSERT_TRUE(Load(OneEntityXml(ItemXml("File", folder.At("*.txt")), "Help='about it'")));
    List();
    const auto nodes = window.Nodes();
    ASSERT_EQ(nodes.size(), 3u);
    Scan();
    EXPECT_EQ(Found(Entity()), std::vector{folder.At("a.txt")});
    Clean();
    EXPECT_FALSE(Exists(folder.At("a.txt")));
}

}  // namespace
