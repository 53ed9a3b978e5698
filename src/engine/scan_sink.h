#pragma once

#include <memory>
#include <optional>
#include <string>

#include "engine/clean_records.h"

// What a search hands its traces to. On the worker.
class ScanSink {
  public:
    virtual ~ScanSink() = default;

    // One trace. `path` is shared by all results of one folder or key.
    virtual void Add(ResultType type, const std::shared_ptr<const std::string>& path,
                     std::optional<std::string> name) = 0;

    // True when the run is to end early.
    virtual bool Cancelled() const = 0;
};
