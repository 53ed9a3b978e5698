#include "ui/screens/scan_report.h"

#include "base/rtf.h"

namespace {

constexpr const char* kHeader =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang4105{\\fonttbl{\\f0\\fswiss\\fcharset0 Tahoma;}}\n"
    "{\\colortbl ;\\red0\\green164\\blue0;\\red224\\green0\\blue0;}\n"
    "\\viewkind4\\uc1\\pard\\f0\\fs6\\par\\fs22 ";

void Append(std::string& report, const ReportLines& lines) {
    for (const ReportLine& line : lines) {
        report +=
            "\\fs18 " + EscapeRtf(line.label) + ": \\cf2 " + std::to_string(line.count) + "\\cf0 \\par ";
    }
}

}  // namespace

std::string WithNumber(std::string_view format, std::uint32_t number) {
    std::string text(format);
    if (const std::size_t place = text.find("%d"); place != std::string::npos) {
        text.replace(place, 2, std::to_string(number));
    }
    return text;
}

std::string ReportHeading(std::string_view title) {
    return std::string(kHeader).append(title);
}

std::string RunningReport(std::string_view title, const ReportLines& lines) {
    std::string report = ReportHeading(title) + "\\par \\par ";
    Append(report, lines);
    return report;
}

std::string ScannedReport(const ScannedTexts& texts, const ReportLines& lines) {
    std::string report =
        ReportHeading(texts.title) + "\\par \\par \\fs18 \\cf2 " + texts.found + "\\cf0 \\par \\par ";
    Append(report, lines);
    report += "\\par \\fs20 " + texts.nextStep + "  \\cf2 \\b " + texts.nextButton + "\\b0 \\cf0 ";
    return report;
}

std::string CleanedReport(const CleanedTexts& texts, const ReportLines& lines) {
    std::string report = ReportHeading(texts.title) + "\\par \\par \\fs18 " + texts.removed + "\\par ";
    if (!texts.failed.empty()) report += texts.failed + "\\par ";
    report += "\\par ";
    Append(report, lines);
    return report;
}

std::vector<bool> ReportedWhileCleaning(const std::vector<CleanedCategory>& categories) {
    std::vector<bool> reported;
    int budget = 2;
    for (const CleanedCategory& category : categories) {
        if (category.done && budget > 0) --budget;
        // kept: once two are done, what is not done is left out; before, it is told with what is removed so
        // far
        const bool passedOver = budget == 0 && !category.done;
        reported.push_back(!passedOver && category.isCategory);
    }
    return reported;
}
