#include "report.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr char kLine[] = "%-44s %9s %9s %6s %6s %7s %7s %7s  %s\n";

std::string Number(const char* format, double value) {
    char text[32];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string Milliseconds(double seconds) {
    return Number(seconds < 1 ? "%.1f" : "%.0f", seconds * 1000);
}

std::string Ratio(double value) {
    return Number("%.3f", value);
}

std::string LimitText(double limit) {
    return limit == kNoLimit ? "-" : Number("%.2f", limit);
}

const char* Verdict(double value, double limit) {
    if (limit == kNoLimit) return "";
    return value <= limit ? "kept" : "MISSED";
}

double Shortest(const std::vector<double>& values) {
    return *std::min_element(values.begin(), values.end());
}

}  // namespace

double Now() {
    static const double period = [] {
        LARGE_INTEGER frequency;
        ::QueryPerformanceFrequency(&frequency);
        return 1.0 / static_cast<double>(frequency.QuadPart);
    }();
    LARGE_INTEGER count;
    ::QueryPerformanceCounter(&count);
    return static_cast<double>(count.QuadPart) * period;
}

void Require(bool holds, const char* what) {
    if (holds) return;
    std::fflush(stdout);
    std::fprintf(stderr, "velvane-bench: missing: %s\n", what);
    std::exit(2);
}

Rounds TakeTurns(int rounds, const std::function<double()>& bare, const std::function<double()>& engine) {
    Rounds result;
    const std::function<void()> sides[] = {[&] { result.bare.push_back(bare()); },
                                           [&] { result.engine.push_back(engine()); },
                                           [&] { result.bareAgain.push_back(bare()); }};
    for (int round = 0; round < rounds; ++round) {
        for (int turn = 0; turn < 3; ++turn) sides[(round + turn) % 3]();
    }
    return result;
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

double RatioOf(const Rounds& rounds) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < rounds.engine.size(); ++i) {
        ratios.push_back(2 * rounds.engine[i] / (rounds.bare[i] + rounds.bareAgain[i]));
    }
    return Median(ratios);
}

double BareRatioOf(const Rounds& rounds) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < rounds.bare.size(); ++i) {
        ratios.push_back(rounds.bareAgain[i] / rounds.bare[i]);
    }
    return Median(ratios);
}

Report::Report() {
    std::printf(kLine, "", "bare", "engine", "", "", "bare/", "by the shortest", "", "");
    std::printf(kLine, "", "ms", "ms", "ratio", "limit", "bare", "ratio", "b/b", "");
    std::fflush(stdout);
}

void Report::Add(const std::string& what, const Rounds& rounds, double limit) {
    const double ratio = RatioOf(rounds);
    const double bare = Shortest(rounds.bare);
    const double again = Shortest(rounds.bareAgain);
    std::printf(kLine, what.c_str(), Milliseconds(Median(rounds.bare)).c_str(),
                Milliseconds(Median(rounds.engine)).c_str(), Ratio(ratio).c_str(), LimitText(limit).c_str(),
                Ratio(BareRatioOf(rounds)).c_str(),
                Ratio(Shortest(rounds.engine) / std::min(bare, again)).c_str(), Ratio(again / bare).c_str(),
                Verdict(ratio, limit));
    std::fflush(stdout);
    m_allHold = m_allHold && (limit == kNoLimit || ratio <= limit);
}

void Report::AddQuotient(const std::string& what, double engine, double bare, double limit) {
    std::printf(kLine, what.c_str(), "", "", Ratio(engine).c_str(), LimitText(limit).c_str(),
                Ratio(bare).c_str(), "", "", Verdict(engine, limit));
    std::fflush(stdout);
    m_allHold = m_allHold && engine <= limit;
}

void Report::AddLine(const std::string& what, const std::string& text, bool holds) {
    std::printf("%-44s %s  %s\n", what.c_str(), text.c_str(), holds ? "kept" : "MISSED");
    std::fflush(stdout);
    m_allHold = m_allHold && holds;
}
