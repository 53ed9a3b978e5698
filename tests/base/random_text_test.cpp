#include "base/random_text.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace {

std::string EightLetters() {
    std::string letters;
    for (int i = 0; i < 8; ++i) letters += RandomText::Letter();
    return letters;
}

// The numbers 41, 18467, 6334, 26500, 19169, 15724, 11478 and 29358, each modulo 62.
constexpr char kFromStateOne[] = "p1KaLmIg";

TEST(RandomText, GivesTheNumbersOfTheClassicGenerator) {
    RandomText::Seed(1);
    for (const int expected : {41, 18467, 6334, 26500, 19169, 15724, 11478, 29358})
        EXPECT_EQ(RandomText::Next(), expected);
    RandomText::Seed(1);
    EXPECT_EQ(EightLetters(), kFromStateOne);
}

TEST(RandomText, EachThreadStartsAtOneWhateverOthersDo) {
    RandomText::Seed(4711);
    std::string ofWorker;
    std::thread([&ofWorker] { ofWorker = EightLetters(); }).join();
    EXPECT_EQ(ofWorker, kFromStateOne);
    EXPECT_NE(EightLetters(), kFromStateOne) << "the worker must not have changed this thread's state";
}

}  // namespace
