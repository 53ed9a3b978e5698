#pragma once

// Deletes the entries of the system's URL cache whose cached file does not exist any more, or that never had
// one; the files themselves are not touched. True if the walk came to the end of the cache. On any thread.
bool CleanUrlCache();
