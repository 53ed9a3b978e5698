#pragma once

// What the program ends with. Scripts build on the numbers.
enum class ExitCode : int {
    Done = 0,
    Usage = 1,          // an option, an argument or a path that cannot be accepted; nothing of it was done
    NoDefinitions = 2,  // the definitions, or a preferences file that was named, cannot be used
    Failures = 3,       // done, but for something that stayed and does not wait for the restart
    NeedsRestart = 4,   // done, and something goes with the next restart
    Stopped = 130,      // ended early by the user
};
