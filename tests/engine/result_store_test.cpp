#include "engine/result_store.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

// A scan may hold a million of them.
static_assert(sizeof(tagCLEAN_RESULT) <= 80);

HSCANITEM At(const void* record, std::ptrdiff_t offset = 0) {
    return reinterpret_cast<HSCANITEM>(reinterpret_cast<std::uintptr_t>(record) +
                                       static_cast<std::uintptr_t>(offset));
}

TEST(ResultStore, KnowsItsResultsAndNothingElse) {
    ResultStore store;
    tagCLEAN_ITEM item;
    EXPECT_EQ(store.Find(At(nullptr)), nullptr);
    EXPECT_EQ(store.Find(At(&item)), nullptr);

    const auto path = std::make_shared<const std::string>("C:\\folder\\");
    // Its memory is given back half-way, so that the later blocks of the store lie before the earlier ones.
    ResultStore other;
    for (int i = 0; i < 1000; ++i) other.Add(ResultType::File, item, path, std::nullopt);
    std::vector<tagCLEAN_RESULT*> results;
    for (int i = 0; i < 1000; ++i) {
        if (i == 300) other.Clear();
        results.push_back(&store.Add(ResultType::File, item, path, std::to_string(i)));
        // What lies behind the last one may be memory of the store's; it is no result yet.
        ASSERT_EQ(store.Find(At(results.back() + 1)), nullptr) << i;
    }
    for (std::size_t i = 0; i < results.size(); ++i) {
        ASSERT_EQ(store.Find(HandleOf(*results[i])), results[i]);
        ASSERT_EQ(*results[i]->name, std::to_string(i)) << "a result stays at its address";
        ASSERT_TRUE(results[i]->enabled);
        ASSERT_EQ(store.Find(At(results[i], 1)), nullptr) << "inside of a result";
        ASSERT_EQ(store.Find(At(results[i], sizeof(tagCLEAN_RESULT) - 1)), nullptr);
        ASSERT_EQ(store.Find(At(results[i], 8)), nullptr);
    }
    std::vector<tagCLEAN_RESULT*> sorted = results;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(store.Find(At(sorted.front() - 1)), nullptr);
    EXPECT_EQ(store.Find(At(sorted.back() + 1)), nullptr);
    EXPECT_EQ(store.Find(At(nullptr, -1)), nullptr);

    EXPECT_EQ(path.use_count(), 1001);
    store.Clear();
    EXPECT_EQ(path.use_count(), 1) << "something was not destroyed";
    for (const tagCLEAN_RESULT* result : results) ASSERT_EQ(store.Find(At(result)), nullptr);
    tagCLEAN_RESULT& again = store.Add(ResultType::RegKey, item, path, std::nullopt);
    EXPECT_EQ(store.Find(HandleOf(again)), &again);
}

}  // namespace
