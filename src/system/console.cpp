#include "system/console.h"

#include <atomic>
#include <cstdio>

namespace {

std::atomic<bool> g_asking{false};
const char* g_programName = "velvane";

}  // namespace

void SetProgramName(const char* name) {
    g_programName = name;
}

ConsoleCodePage::ConsoleCodePage() {
    if (!IsTerminal(STD_OUTPUT_HANDLE) && !IsTerminal(STD_ERROR_HANDLE)) return;
    m_before = ::GetConsoleOutputCP();
    ::SetConsoleOutputCP(CP_UTF8);
}

ConsoleCodePage::~ConsoleCodePage() {
    if (m_before) ::SetConsoleOutputCP(m_before);
}

bool IsTerminal(DWORD stream) {
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(stream), &mode) != FALSE;
}

std::string Utf8Text(std::string_view text) {
    if (::GetACP() == CP_UTF8 || text.empty()) return std::string(text);
    const int size = static_cast<int>(text.size());
    std::wstring wide(::MultiByteToWideChar(CP_ACP, 0, text.data(), size, nullptr, 0), L'\0');
    const int wideSize = static_cast<int>(wide.size());
    ::MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), wideSize);
    std::string utf8(::WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideSize, nullptr, 0, nullptr, nullptr),
                     '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideSize, utf8.data(), static_cast<int>(utf8.size()),
                          nullptr, nullptr);
    return utf8;
}

std::string OneLine(std::string text) {
    for (char& c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7F) c = '?';
    }
    return text;
}

void Print(std::string_view utf8) {
    std::fwrite(utf8.data(), 1, utf8.size(), stdout);
}

void PrintError(std::string_view subject, std::string_view cause) {
    std::fflush(stdout);
    std::string line = std::string(g_programName) + ": ";
    if (subject != g_programName) line.append(subject).append(": ");
    line.append(cause);
    line = OneLine(Utf8Text(line)) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
}

std::string SystemMessage(DWORD error) {
    char buffer[512] = "";
    const DWORD length = ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                          error, 0, buffer, sizeof buffer, nullptr);
    std::string text(buffer, length);
    text.erase(text.find_last_not_of("\r\n. ") + 1);
    return text.empty() ? "error " + std::to_string(error) : text;
}

bool OutputArrived() {
    return std::fflush(stdout) == 0 && !std::ferror(stdout);
}

bool IsAsking() {
    return g_asking;
}

Answer Ask(std::string_view question) {
    std::fflush(stdout);
    g_asking = true;
    std::fwrite(question.data(), 1, question.size(), stderr);
    std::fflush(stderr);
    char line[16] = "";
    DWORD read = 0;
    ::SetLastError(ERROR_SUCCESS);
    const BOOL ok = ::ReadFile(::GetStdHandle(STD_INPUT_HANDLE), line, sizeof line - 1, &read, nullptr);
    const DWORD error = ::GetLastError();
    g_asking = false;
    // Ctrl+C ends the waiting for a line with nothing read, which some systems call a success.
    if (error == ERROR_OPERATION_ABORTED && read == 0) return Answer::Stopped;
    if (!ok) return Answer::No;
    std::string answer(line, read);
    answer.erase(answer.find_last_not_of("\r\n ") + 1);
    for (const char* yes : {"y", "yes"}) {
        if (::lstrcmpiA(answer.c_str(), yes) == 0) return Answer::Yes;
    }
    return Answer::No;
}

ProgressLine::ProgressLine(bool wanted)
    : m_wanted(wanted && IsTerminal(STD_OUTPUT_HANDLE) && IsTerminal(STD_ERROR_HANDLE)) {}

void ProgressLine::Show(std::string_view what, int percent) {
    if (!m_wanted) return;
    std::string line = std::string(what) + " " + std::to_string(percent) + " %";
    if (line == m_shown) return;
    // One that has become shorter leaves the end of the longer one behind.
    const std::size_t rest = m_shown.size() > line.size() ? m_shown.size() - line.size() : 0;
    m_shown = line;
    line = "\r" + line + std::string(rest, ' ');
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
}

void ProgressLine::Clear() {
    if (m_shown.empty()) return;
    const std::string line = "\r" + std::string(m_shown.size(), ' ') + "\r";
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
    m_shown.clear();
}
