#pragma once

#include <string>

// What a program with administrator rights may believe. In the machine-wide application data every user may
// make files and folders; what is read there tells the program what to delete without a question. Any thread.

// True if what lies at `path` is owned by an administrator, by Windows or by the user who runs the process.
// False also for a link, for what is not there, and where the owner cannot be told.
bool IsTrusted(const char* path);

// True if `folder`, which ends in a backslash, or a folder on the way to it is a link that somebody else
// made: where other users may make folders one could lead to whatever they want to see deleted.
bool PassesForeignLink(const std::string& folder);

// Makes a folder that all may read and only administrators and Windows may write to. One that exists stays as
// it is; failures show later, when something is to be put there.
void MakeProtectedFolder(const char* path);
