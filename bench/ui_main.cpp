#include <windows.h>

#include <commctrl.h>
#include <objbase.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "app/resources.h"
#include "system/redirection_table.h"
#include "ui/theme/theme.h"
#include "ui/window/app_module.h"
#include "ui_benches.h"

namespace {

struct Bench {
    std::string_view name;
    void (*run)(int rounds, Table& table);
};
constexpr Bench kBenches[] = {{"tree", BenchTree}, {"screen", BenchScreen}};

[[noreturn]] void EndWithUsage() {
    std::fputs(
        "velvane-ui-bench [--rounds N] [tree|screen]...\n"
        "The screen needs what scripts/bench.sh makes.\n",
        stderr);
    std::exit(2);
}

// As the program does it.
void Start() {
    ::CoInitialize(nullptr);
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_BAR_CLASSES};
    ::InitCommonControlsEx(&controls);
    Require(LoadResources(), "the texts");
    AppModule().Init(::GetModuleHandleA(nullptr));
    AppModule().SetResourceInstance(ResourceModule());
    Require(::LoadLibraryA("riched20.dll") != nullptr, "the control of the reports");
    Require(g_Theme.Start(), "GDI+");
    InitRegRedirectionTable();
}

}  // namespace

int main(int argc, char** argv) {
    int rounds = 3;
    std::vector<std::string_view> names;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--rounds" && i + 1 < argc) {
            rounds = std::atoi(argv[++i]);
        } else {
            names.push_back(argument);
        }
    }
    const auto isUnknown = [](std::string_view name) {
        return std::ranges::none_of(kBenches, [&](const Bench& bench) { return bench.name == name; });
    };
    if (rounds < 1 || std::ranges::any_of(names, isUnknown)) EndWithUsage();

    Start();
    Table table;
    for (const Bench& bench : kBenches) {
        if (names.empty() || std::ranges::find(names, bench.name) != names.end()) bench.run(rounds, table);
    }
    return table.AllHold() ? 0 : 1;
}
