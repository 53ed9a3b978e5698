#include "cli/help.h"

const char* HelpText() {
    return R"(velvane-cli finds the traces that programs and Windows leave behind, and removes them.

usage: velvane-cli COMMAND [OPTION...]

  list                 what can be searched for: the definitions' tree, what is switched on and what is here
  scan                 search and print what is found; nothing is changed
  clean                search, then remove what is found; asks first unless --yes
  shred PATH...        overwrite and delete files and whole folders, for good; asks first unless --yes
  expand TEXT          print TEXT with its location variables, like %appdata%, replaced
  restricted PATH...   print what each of the three tests for protected folders says of PATH

which definitions
  --definitions FILE   read FILE instead of Quillmere\Velvane\cleaning.db in the common application data
                       or cleaning.db beside the program
  --preferences FILE   read the user's choice and whitelist from FILE instead of
                       Quillmere\Velvane\CleanPreferences.db in the user's application data
  --only NAME          list, scan or clean nothing but NAME, which is CATEGORY, CATEGORY/APPLICATION or
                       CATEGORY/APPLICATION/ENTITY as `list` shows them; what is named is switched on, what
                       stands below it stays as it is switched
  --except NAME        leave NAME out
                       Both may be given several times.

how it is done
  --dry-run            print what would be removed, and remove nothing
  --passes N           how often a file is overwritten, 0 or an odd number up to 11; clean 0, shred 1 unless
                       given. No number of passes is a guarantee on a solid state drive.
  --force              shred even what is protected
  --yes                do not ask
  --json               print one JSON object, for programs
  --quiet              print no progress and no report; errors are still told
  --help, --version    print this, or the version, and do nothing else

Ctrl+C ends a run early; what was done until then is printed.

exit codes
  0  done               1  wrong usage, nothing done       2  the definitions cannot be loaded
  3  something failed   4  something goes with the next restart of Windows    130  stopped by the user
)";
}

const char* VersionText() {
    return VELVANE_VERSION "\n";
}
