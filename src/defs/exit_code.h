#pragma once

// What the program ends with. Scripts build on the numbers, which go with those of velvane-cli.
enum class ExitCode : int {
    Done = 0,        // and nothing was found wrong
    Usage = 1,       // an option or argument that cannot be accepted
    Unreadable = 2,  // a file that cannot be read, or holds no definitions
    Findings = 3,    // something has to be mended, or what was made could not be written
};
