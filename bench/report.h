#pragma once

#include <functional>
#include <string>
#include <vector>

// Seconds by the system's performance counter, from some moment on.
double Now();

// Ends the program with a line that names what is missing unless `holds`.
void Require(bool holds, const char* what);

// The seconds that the same work took by a bare loop, by the engine, and by the bare loop again.
struct Rounds {
    std::vector<double> bare;
    std::vector<double> engine;
    std::vector<double> bareAgain;
};

// Lets the three sides take turns, `rounds` times; who begins rotates, so that neither a warm cache nor a
// drift of the machine favours a side. Each side gives its own seconds.
Rounds TakeTurns(int rounds, const std::function<double()>& bare, const std::function<double()>& engine);

double Median(std::vector<double> values);

// Medians over the rounds: the engine against the bare loop before and after it, and the bare loop against
// itself.
double RatioOf(const Rounds& rounds);
double BareRatioOf(const Rounds& rounds);

// A figure without a limit: for the reader, not for the verdict.
inline constexpr double kNoLimit = 0;

// The table of the run. A line is printed as soon as it is known: a run takes its time.
class Report {
  public:
    // Prints the head.
    Report();

    // The engine against the bare loop: the median of the ratios of the rounds, with that of the bare loop
    // against itself beside it, and the same by the shortest times.
    void Add(const std::string& what, const Rounds& rounds, double limit);

    // Any other quotient of two times, with the same quotient of the bare loops beside it.
    void AddQuotient(const std::string& what, double engine, double bare, double limit);

    // A line of its own form.
    void AddLine(const std::string& what, const std::string& text, bool holds);

    // Whether every limit was kept.
    bool AllHold() const { return m_allHold; }

  private:
    bool m_allHold = true;
};
