#include "ui/screens/clean_mode.h"

namespace {

constexpr int kModes[kCleanModeCount] = {0, 1, 3, 7};
constexpr int kThreePasses = 2;

}  // namespace

int CleanModeAt(int index) {
    return kModes[index];
}

int CleanModeIndex(int mode) {
    for (int index = 0; index < kCleanModeCount; ++index) {
        if (kModes[index] == mode) return index;
    }
    return kThreePasses;
}
