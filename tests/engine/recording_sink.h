#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/scan_sink.h"

// Takes down what a search finds.
class RecordingSink : public ScanSink {
  public:
    struct Trace {
        ResultType type;
        std::shared_ptr<const std::string> path;
        std::optional<std::string> name;
    };

    void Add(ResultType type, const std::shared_ptr<const std::string>& path,
             std::optional<std::string> name) override {
        traces.push_back({type, path, std::move(name)});
    }
    bool Cancelled() const override { return traces.size() >= stopAfter; }

    // Each trace as a line, "file C:\folder\|name"; `folder` in front of a path is left out.
    std::vector<std::string> Lines(const std::string& folder = "") const {
        std::vector<std::string> lines;
        for (const Trace& trace : traces) {
            static constexpr const char* kKinds[] = {"?", "value", "key", "file", "folder", "ini"};
            const std::string path = trace.path->starts_with(folder) ? trace.path->substr(folder.size())
                                                                     : "elsewhere " + *trace.path;
            lines.push_back(std::string(kKinds[static_cast<std::size_t>(trace.type)]) + " " + path + "|" +
                            trace.name.value_or("(none)"));
        }
        return lines;
    }

    std::vector<Trace> traces;
    // A stop is asked for once so many traces are there.
    std::size_t stopAfter = std::numeric_limits<std::size_t>::max();
};
