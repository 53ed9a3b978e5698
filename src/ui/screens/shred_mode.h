#pragma once

#include "resources/ids.h"

// The radio buttons of the shredder and how often each overwrites a file.
struct ShredMode {
    int radio;
    int passes;
};
inline constexpr ShredMode kShredModes[] = {
    {IDC_SHRED_THREE, 3},
    {IDC_SHRED_ONCE, 1},
    {IDC_SHRED_SEVEN, 7},
};

// The button for a number of passes; a number that no button has ticks the first.
constexpr int RadioOfPasses(int passes) {
    for (const ShredMode& mode : kShredModes) {
        if (mode.passes == passes) return mode.radio;
    }
    return kShredModes[0].radio;
}

// The reverse; -1 for what is none of the buttons.
constexpr int PassesOfRadio(int radio) {
    for (const ShredMode& mode : kShredModes) {
        if (mode.radio == radio) return mode.passes;
    }
    return -1;
}
