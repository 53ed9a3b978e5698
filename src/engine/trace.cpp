#include "engine/trace.h"

#ifdef VELVANE_TRACE

#include <windows.h>

#include <atomic>
#include <cstdarg>
#include <cstdio>

namespace {

std::atomic<TraceSink> traceSink{nullptr};

void WriteToDeveloper(const char* line) {
    std::fprintf(stderr, "%s\n", line);
    ::OutputDebugStringA(line);
    ::OutputDebugStringA("\n");
}

}  // namespace

void SetTraceSink(TraceSink sink) {
    traceSink = sink;
}

void EngineTrace(const char* format, ...) {
    char line[2048];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    const TraceSink sink = traceSink;
    (sink ? sink : WriteToDeveloper)(line);
}

#endif
