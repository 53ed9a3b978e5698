#!/bin/bash
# Holds the arrows between the folders of src/: who may include whom. Prints each include that breaks a rule.
# usage: check-layers.sh [FOLDER]       looks at FOLDER instead of src/
#        check-layers.sh --self-test    shows that each rule can fail
set -euo pipefail
source "${BASH_SOURCE[0]%/*}/lib.sh"

# Our includes are written relative to src/ and in quotes; what is not ours is in angle brackets.
check() {
    (cd -- "$1" && find . -type f \( -name '*.h' -o -name '*.cpp' -o -name '*.inc' \) -print0 | sort -z |
        xargs -0 -r grep -HnE '^[[:space:]]*#[[:space:]]*include' /dev/null) | awk -f <(printf '%s' "$RULES")
}

read -r -d '' RULES <<'AWK' || true
# What each layer may include, itself among it. ui is told apart below.
BEGIN {
    may["base"]   = " base "
    may["system"] = " base system "
    may["engine"] = " base system engine "
    may["app"]    = " base system app "
    may["ui"]     = " base system app ui "
    may["cli"]    = " base system engine cli "
    may["defs"]   = " base system engine defs "
    rank["window"] = 1; rank["theme"] = 2; rank["tree"] = 3; rank["screens"] = 4
    # Libraries that exist for the build host as well.
    portable = " zlib.h zip.h unzip.h ioapi.h pugixml.hpp "
}

function wrong(why) { printf "src/%s: %s includes %s: %s\n", place, file, target, why; failures++ }

{
    place = $0; sub(/^\.\//, "", place); sub(/:[[:space:]]*#.*/, "", place)
    file = place; sub(/:[0-9]+$/, "", file)
    target = $0; quoted = target ~ /include[[:space:]]*"/
    sub(/.*include[[:space:]]*["<]/, "", target); sub(/[">].*/, "", target)
    checked++

    split(file, from, "/"); split(target, to, "/")
    layer = from[1]
    if (file == "main.cpp") next                      # it knows everybody
    if (!(layer in may)) { wrong("no rule knows the folder " layer); next }
    ours = to[1] in may && target ~ /\//
    if (!quoted && !ours) {
        if (layer == "base" && target ~ /\.h(pp)?$/ && !index(portable, " " target " "))
            wrong("base is standard C++ alone")
        next
    }
    if (to[1] == "resources") {
        if (layer !~ /^(app|ui|cli)$/) wrong("resources belong to the program's surface")
        next
    }
    if (!ours) { wrong("write it relative to src/, or in angle brackets if it is not ours"); next }

    screen = file ~ /^ui\/screens\//
    main_dialog = file ~ /^ui\/screens\/main_dlg/
    if (layer == "ui" && to[1] == "engine") {
        if (!main_dialog && target != "engine/engine_messages.h") wrong("of the engine ui knows the messages alone")
        next
    }
    if (!index(may[layer], " " to[1] " ")) { wrong(layer " does not know " to[1]); next }
    if (screen && !main_dialog && target ~ /^app\/(configuration|update_library)/) {
        wrong("a screen asks its common interface")
        next
    }
    if (layer == "ui" && to[1] == "ui") {
        if (!(from[2] in rank) || !(to[2] in rank)) wrong("no rule knows this folder of ui")
        else if (rank[to[2]] > rank[from[2]]) wrong("ui/" from[2] " does not know ui/" to[2])
    }
}

END {
    if (!checked) { print "no include was found"; exit 1 }
    exit failures > 0
}
AWK

# Each line: ok or bad, a file, what it includes.
self_test() {
    local folder verdict file include expected=0 report status=0
    folder=$(mktemp -d)
    trap 'rm -rf -- "$folder"' RETURN
    while read -r verdict file include; do
        rm -rf -- "$folder/src"
        mkdir -p -- "$folder/src/$(dirname -- "$file")"
        printf '#include %s\n' "$include" >"$folder/src/$file"
        status=0
        report=$(check "$folder/src") || status=1
        [[ $verdict == ok ]] && expected=0 || expected=1
        if ((status != expected)); then
            note "check-layers: self-test: $file with $include should be $verdict: $report"
            return 1
        fi
    done <<'CASES'
ok  base/match_mask.cpp           "base/match_mask.h"
ok  base/db_container.cpp         <unzip.h>
ok  base/xml_text.h               <pugixml.hpp>
bad base/match_mask.cpp           <windows.h>
bad base/match_mask.cpp           "system/handles.h"
bad base/match_mask.cpp           <system/handles.h>
bad base/match_mask.cpp           "match_mask.h"
ok  system/registry.cpp           <windows.h>
bad system/registry.cpp           "engine/scanner.h"
ok  engine/scanner.cpp            "system/registry.h"
bad engine/scanner.cpp            "app/configuration.h"
bad engine/scanner.cpp            "resources/ids.h"
bad app/links.cpp                 "engine/engine_messages.h"
bad app/links.cpp                 "ui/theme/theme.h"
ok  ui/screens/scan_dlg.cpp       "engine/engine_messages.h"
bad ui/screens/scan_dlg.cpp       "engine/clean_records.h"
bad ui/screens/scan_dlg.cpp       "app/configuration.h"
bad ui/screens/scan_dlg.cpp       "app/update_library.h"
ok  ui/screens/scan_dlg.cpp       "app/links.h"
ok  ui/screens/main_dlg_scan.cpp  "engine/clean_records.h"
ok  ui/screens/main_dlg.h         "app/configuration.h"
ok  ui/tree/scan_tree.cpp         "ui/theme/theme.h"
bad ui/tree/scan_tree.cpp         "ui/screens/scan_dlg.h"
bad ui/theme/theme.cpp            "ui/tree/scan_tree.h"
bad ui/window/window.h            "ui/theme/theme.h"
bad ui/window/window.h            "engine/scanner.h"
bad ui/odd.cpp                    "ui/theme/theme.h"
ok  cli/main.cpp                  "engine/cleaning_engine.h"
bad cli/main.cpp                  "app/configuration.h"
bad defs/main.cpp                 "ui/theme/theme.h"
ok  main.cpp                      "ui/screens/main_dlg.h"
bad extra/thing.cpp               "base/rect.h"
CASES
}

case ${1:-} in
    --self-test) self_test ;;
    *) check "${1:-$VELVANE_ROOT/src}" ;;
esac
