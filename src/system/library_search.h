#pragma once

// Takes the current folder, and all others but the program's own and the system's, out of the search for
// libraries. The first thing that a process with administrator rights does: what it loads by a bare name
// afterwards comes from nowhere else. On a Windows too old for that the current folder alone is taken out.
void RestrictLibrarySearch();
