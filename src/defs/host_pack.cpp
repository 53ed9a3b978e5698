// The packing alone of velvane-defs, as the build's own step: it runs on the build host, so that a cross
// build needs nothing of Wine. usage: pack SOURCE.xml... DATABASE.db

#include <iostream>

#include "defs/join.h"

namespace {

void PrintFinding(const Finding& finding) {
    std::cerr << FindingText(finding) << '\n';
}

void PrintFailure(const std::string& file, const char* cause) {
    std::cerr << "pack: " << file << ": " << cause << '\n';
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> files(argv + 1, argv + argc);
    if (files.size() < 2) {
        PrintFailure("usage", "pack SOURCE.xml... DATABASE.db");
        return 1;
    }
    const std::string database = files.back();
    files.pop_back();
    return PackFiles(files, database, {PrintFinding, PrintFailure}) == PackOutcome::Packed ? 0 : 1;
}
