#pragma once

// The engine's diagnostic trace, a printf for the developer. A build without VELVANE_TRACE, which is what is
// delivered, evaluates the arguments and writes nothing.
#ifdef VELVANE_TRACE

// Receives each line, without a line end, on the thread that wrote it.
using TraceSink = void (*)(const char* line);

// Where the lines go; null for standard error and the debugger, which is the default.
void SetTraceSink(TraceSink sink);

void EngineTrace(const char* format, ...) __attribute__((format(gnu_printf, 1, 2)));

#define ENGINE_TRACE(...) EngineTrace(__VA_ARGS__)

#else

template <class... Arguments>
inline void EvaluateOnly(const Arguments&...) {}

#define ENGINE_TRACE(...) EvaluateOnly(__VA_ARGS__)

#endif
