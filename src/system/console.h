#pragma once

#include <windows.h>

#include <string>
#include <string_view>

// A console program's three standard streams. Everything goes out as UTF-8, whatever the process's code page
// is. On the main thread.

// The name that PrintError puts in front of what it prints; lives as long as the program.
void SetProgramName(const char* name);

// Makes a console show UTF-8 for as long as it lives.
class ConsoleCodePage {
  public:
    ConsoleCodePage();
    ~ConsoleCodePage();
    ConsoleCodePage(const ConsoleCodePage&) = delete;
    ConsoleCodePage& operator=(const ConsoleCodePage&) = delete;

  private:
    UINT m_before = 0;  // 0 when there is no console to give back
};

// True when the stream (STD_INPUT_HANDLE ...) is a terminal and no file or pipe.
bool IsTerminal(DWORD stream);

// `text`, which is in the process's code page, as UTF-8. Bytes that are no text stay as they are where the
// code page is UTF-8 already.
std::string Utf8Text(std::string_view text);

// `text` without what would disturb a terminal: control characters become question marks.
std::string OneLine(std::string text);

// Writes to standard output as it is.
void Print(std::string_view utf8);

// Writes one line to standard error: the program's name, what is concerned (a file, an option, the program by
// its name) and the cause.
void PrintError(std::string_view subject, std::string_view cause);

// What the system says of an error, without line ends and the full stop.
std::string SystemMessage(DWORD error);

// False when something that was printed did not arrive.
bool OutputArrived();

enum class Answer { Yes, No, Stopped };
// Asks on standard error and reads a line from standard input. Everything but y and yes is No.
Answer Ask(std::string_view question);
// Whether an answer is waited for. Any thread.
bool IsAsking();

// A line on a terminal that is written over as the work goes on; nothing at all where there is none.
class ProgressLine {
  public:
    explicit ProgressLine(bool wanted);
    ~ProgressLine() { Clear(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    // `percent` 0 to 100. Writes only what has changed.
    void Show(std::string_view what, int percent);
    void Clear();

  private:
    bool m_wanted;
    std::string m_shown;
};
