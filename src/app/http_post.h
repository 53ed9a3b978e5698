#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

// The longest response that is taken; a longer one is a failure.
inline constexpr std::size_t kLongestResponse = 1024 * 1024;

// Posts `body`, URL-form text, to http://host:port/path, following the system's proxy settings, and blocks
// until the answer is there. 0 when the server answered with status 200; -1 otherwise, with `response` empty.
// The answer is read up to the first block that does not come full. Each wait for data ends after half a
// minute; a server that sends a little now and then is waited for longer.
int PostForm(const std::string& host, WORD port, const std::string& path, const std::string& body,
             std::string& response);
