#pragma once

#include <windows.h>

// Whether the process runs for a member of the local Administrators group, in `administrator`. The answer is
// a Windows error code, 0 if all went well; `administrator` is false on a failure. A Windows without user
// rights makes everybody an administrator.
// kept: so does one that the table of versions does not know (code 99 or less), and a group that is there for
// denials alone counts as membership.
DWORD IsUserAdministrator(bool& administrator);
