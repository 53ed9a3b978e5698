# The profile of the demonstration: how it is made, looked at and judged. Sourced by run.sh, which sets PREFIX, WORK
# and BIN and offers windows().

# What each line is for: a name, a path in the profile, the fate that it should have and why.
#   goes        a trace that the defaults remove
#   restarts    a trace that is held open: it goes with the restart
#   stays       no trace, or off until the user switches it on; it must stay as it is
#   may stay    a link: it may go or stay, but what it leads to is another line
readonly CHROME='AppData/Local/Google/Chrome/User Data/Default'
readonly FIREFOX='AppData/Roaming/Mozilla/Firefox'
readonly THUNDERBIRD='AppData/Roaming/Thunderbird'
readonly CODE='AppData/Roaming/Code'
readonly VLC='AppData/Roaming/vlc'
readonly HELD="$CHROME/Cache/data_1"
readonly HELD_WINDOWS_PATH='C:\users\velvane\AppData\Local\Google\Chrome\User Data\Default\Cache\data_1'
# Off until it is named: the list of films in an ini file of VLC's.
readonly NAMED='Media players/VLC/Recent files'
readonly THINGS=(
    "a cached page|$CHROME/Cache/f_000001|goes|a copy that is fetched again"
    "a cached page that is read-only|$CHROME/Cache/f_000002|goes|the attribute does not save it"
    "a cached page with a foreign name|$CHROME/Cache/Ärger-Ωμέγα-日本.html|goes|every name is reached"
    "a folder in the cache|$CHROME/Code Cache/js|goes|behind what was in it"
    "a cached page that is in use|$HELD|restarts|another program holds it open"
    "a link in the cache|$CHROME/Cache/shortcut|may stay|never followed; Wine does not let it be removed"
    "the browsing history|$CHROME/History|goes|the pages visited"
    "the history of a second profile|${CHROME%/*}/Profile 1/History|goes|every profile is searched"
    "a page that Edge cached|AppData/Local/Microsoft/Edge/User Data/Default/Cache/f_000001|goes|a copy that is fetched again"
    "the cache of Firefox|AppData/Local/Mozilla/Firefox/Profiles/x1.default/cache2/A1|goes|its profile is found by profiles.ini"
    "the page icons of Firefox|$FIREFOX/Profiles/x1.default/favicons.sqlite|goes|they tell which pages were visited"
    "the cache of Thunderbird|AppData/Local/Thunderbird/Profiles/y2.default/cache2/B1|goes|pictures in letters"
    "a picture that Discord showed|AppData/Roaming/discord/Cache/f_000001|goes|a copy that is fetched again"
    "a log of Visual Studio Code|$CODE/logs/main.log|goes|the folders that were worked in"
    "the cover of an album|$VLC/art/cover.jpg|goes|what was heard"
    "a crash report of LibreOffice|AppData/Roaming/LibreOffice/4/crash/report.dmp|goes|pieces of a document"
    "a thumbnail of GIMP|.thumbnails/x-ray.png|goes|a small picture of a picture"
    "the links to recent documents|AppData/Roaming/Microsoft/Windows/Recent/tax return.pdf.lnk|goes|what was opened"
    "the commands of PowerShell|AppData/Roaming/Microsoft/Windows/PowerShell/PSReadLine/ConsoleHost_history.txt|stays|off by default: the arrow keys offer them"
    "the cookies|$CHROME/Cookies|stays|off by default: it would sign the user out"
    "earlier states of a program|$CODE/User/History/1a2b/letter.cpp|stays|off by default: they cannot be brought back"
    "the saved passwords|$CHROME/Login Data|stays|never a target"
    "the bookmarks|$CHROME/Bookmarks|stays|never a target"
    "the bookmarks of Firefox|$FIREFOX/Profiles/x1.default/places.sqlite|stays|never a target, and its history is in the same file"
    "the settings of Firefox|$FIREFOX/profiles.ini|stays|never a target"
    "the settings of LibreOffice|AppData/Roaming/LibreOffice/4/user/registrymodifications.xcu|stays|never a target"
    "text that was never saved|$CODE/Backups/untitled-1|stays|never a target"
    "mail|$THUNDERBIRD/Profiles/y2.default/Mail/Inbox|stays|never a target"
    "the settings of GIMP|AppData/Roaming/GIMP/2.10/gimprc|stays|never a target"
    "the folder of 7-Zip|AppData/Local/Programs/7-Zip/7zFM.exe|stays|the program itself"
    "a letter|Documents/Letters/to my sister.txt|stays|the user's own; a link in the cache leads here"
    "a tax return|Documents/tax return.pdf|stays|the user's own; only the links to it are traces"
    "a picture|Pictures/x-ray.png|stays|the user's own"
)

# As the user of the Windows programs, who owns the prefix.
as_runner() {
    if ((EUID == 0)); then
        setpriv --reuid=$RUNNER_UID --regid=$RUNNER_UID --clear-groups --no-new-privs "$@"
    else
        "$@"
    fi
}

# Makes the files of the profile $1. Everything is written there and nowhere else.
make_profile() {
    HOME_FOLDER=$1
    local thing name path
    for thing in "${THINGS[@]}"; do
        IFS='|' read -r name path _ <<<"$thing"
        case $name in
            "a link"*) continue ;;
            "a folder"*) path+=/script ;;
        esac
        as_runner mkdir -p -- "$1/${path%/*}"
        as_runner tee -- "$1/$path" >/dev/null <<<"$name"
    done
    as_runner chmod 444 -- "$1/$CHROME/Cache/f_000002"
    as_runner ln -s -- "../../../../../../../Documents/Letters" "$1/$CHROME/Cache/shortcut"
    as_runner tee -- "$1/$FIREFOX/profiles.ini" >/dev/null <<<$'[Profile0]\r\nName=default\r\nPath=Profiles/x1.default\r'
    as_runner tee -- "$1/$THUNDERBIRD/profiles.ini" >/dev/null <<<$'[Profile0]\r\nName=default\r\nPath=Profiles/y2.default\r'
    as_runner tee -- "$1/$VLC/vlc-qt-interface.ini" >/dev/null \
        <<<$'[MainWindow]\r\nstatus-bar-visible=true\r\n[RecentsMRL]\r\nlist=file:///C:/users/velvane/Documents/holiday.mp4\r'
}

# Has a Windows program hold a file open, as a browser that runs does.
hold_file() {
    windows $BIN/demonstration.exe hold "$1" >"$WORK/holder" 2>&1 </dev/null &
    local tries=0
    until grep -q held "$WORK/holder" 2>/dev/null; do
        ((++tries < 1000)) || die "no program holds the file open"
        sleep 0.02
    done
}

# Notes the state of everything under the name $1.
remember() {
    local thing path
    for thing in "${THINGS[@]}"; do
        IFS='|' read -r _ path _ <<<"$thing"
        if [[ -L $HOME_FOLDER/$path ]]; then
            echo link
        elif [[ -d $HOME_FOLDER/$path ]]; then
            echo folder
        elif [[ -f $HOME_FOLDER/$path ]]; then
            sha256sum <"$HOME_FOLDER/$path"
        else
            echo gone
        fi
    done >"$WORK/files.$1"
    windows $BIN/demonstration.exe state | tr -d '\r' >"$WORK/registry.$1"
    tr -d '\r' <"$HOME_FOLDER/$VLC/vlc-qt-interface.ini" >"$WORK/ini.$1"
}

describe_profile() {
    local line
    cut -d '|' -f 1 < <(printf '%s\n' "${THINGS[@]}")
    cut -f 1 "$WORK/registry.before"
    echo "an ini file of VLC that tells what was seen last:"
    sed 's/^/    /' "$WORK/ini.before"
}

# The line $2 of the states noted under $1.
state_of() { sed -n "$2p" "$WORK/files.$1"; }

# Tells of each thing what became of it.
print_fates() {
    local i thing name path fate why became
    for i in "${!THINGS[@]}"; do
        IFS='|' read -r name path fate why <<<"${THINGS[i]}"
        if [[ $(state_of after $((i + 1))) == gone ]]; then
            became=went
        elif [[ $(state_of restarted $((i + 1))) == gone ]]; then
            became='went with the restart'
        else
            became=stayed
        fi
        printf '%-22s %-36s %s\n' "$became" "$name" "$why"
    done
    local count
    while IFS=$'\t' read -r name count _; do
        printf '%-22s %-36s %s\n' "$( ((count)) && echo stayed || echo went)" "$name" "in the registry or the URL cache"
    done <"$WORK/registry.restarted"
    printf '%-22s %-36s %s\n' "$(grep -q '^list=$' "$WORK/ini.restarted" && echo 'emptied when named' || echo stayed)" \
        "the film seen last" "in an ini file, whose other lines stay"
}

# Judges it. Prints a line for each fault, and is false if there is one.
check_profile() {
    local i name fate before after restarted faults=0
    fault() { printf 'FAULT: %s\n' "$*"; faults=$((faults + 1)); }
    for i in "${!THINGS[@]}"; do
        IFS='|' read -r name _ fate _ <<<"${THINGS[i]}"
        before=$(state_of before $((i + 1))) after=$(state_of after $((i + 1)))
        restarted=$(state_of restarted $((i + 1)))
        [[ $before != gone ]] || fault "$name was never there"
        case $fate in
            goes) [[ $after == gone ]] || fault "$name is still there" ;;
            restarts)
                [[ $after == "$before" ]] || fault "$name was changed while it was in use"
                [[ $restarted == gone ]] || fault "$name outlived the restart"
                ;;
            stays) [[ $restarted == "$before" ]] || fault "$name is harmed" ;;
        esac
    done
    if grep -q $'\t0\t' "$WORK/registry.before"; then fault "a list of the registry was never filled"; fi
    if grep $'\tgoes$' "$WORK/registry.restarted" | grep -vq $'\t0\t'; then fault "a list of the registry is not empty"; fi
    diff -q <(grep $'\tstays$' "$WORK/registry.before") <(grep $'\tstays$' "$WORK/registry.restarted") >/dev/null ||
        fault "a setting in the registry is harmed"
    cmp -s "$WORK/ini.before" "$WORK/ini.after" || fault "the ini file was changed before its line was named"
    grep -q '^list=$' "$WORK/ini.restarted" || fault "the ini file still tells what was seen last"
    diff -q <(grep -v '^list=' "$WORK/ini.before") <(grep -v '^list=' "$WORK/ini.restarted") >/dev/null ||
        fault "the ini file lost a setting"
    if ((faults)); then return 1; fi
    echo "Yes: the documents, also those behind the link, the passwords, bookmarks, cookies and settings are whole,"
    echo "and every trace that should have gone is gone."
}
