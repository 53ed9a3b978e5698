#pragma once

#include "engine/cleaning_engine.h"

// Turns Ctrl+C and its relatives into a request to the engine to stop, for as long as it lives. One at a
// time. A second Ctrl+C ends the program at once, as if nobody listened.
class StopRequest {
  public:
    explicit StopRequest(CCleaningEngine& engine);
    ~StopRequest();
    StopRequest(const StopRequest&) = delete;
    StopRequest& operator=(const StopRequest&) = delete;

    // Any thread.
    bool IsMade() const;
};
