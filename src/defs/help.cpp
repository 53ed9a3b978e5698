#include "defs/help.h"

const char* HelpText() {
    return R"(velvane-defs makes and proves the definitions that velvane searches by.

usage: velvane-defs COMMAND [OPTION...] FILE...

  pack SOURCE.xml... OUT.db    join the sources, put their pictures in, and pack them into one database
  unpack IN.db OUT.xml         write the text of a database
  check SOURCE.xml...          tell everything that a load of these sources together would drop or not use,
                               what can never find anything, and what must never be a target
    --never FILE               the list of what must never be a target; never.txt beside the first source
                               unless given
  explain IN.db                print what each item would look at on this machine
    --only NAME                nothing but NAME, which is CATEGORY, CATEGORY/APPLICATION or
                               CATEGORY/APPLICATION/ENTITY; may be given several times
  coverage IN.db OUT.md        write the page that lists every category, application and entity

  --help, --version            print this, or the version, and do nothing else

Where a source is read, a database does as well. What is found wrong is printed to standard error, a line
each: FILE:LINE:COLUMN: error: REASON

exit codes
  0  done, and nothing is wrong    1  wrong usage, nothing done    2  a file cannot be read
  3  something is wrong, or what was made cannot be written
)";
}

const char* VersionText() {
    return VELVANE_VERSION "\n";
}
