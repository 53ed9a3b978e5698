#pragma once

// What a program with administrator rights may believe. In the machine-wide application data every user may
// make files and folders; what is read there tells the program what to delete without a question. Any thread.

// True if what lies at `path` is owned by an administrator, by Windows or by the user who runs the process.
// False also for a link, for what is not there, and where the owner cannot be told.
bool IsTrusted(const char* path);

// Whether a link belongs to the user, an administrator or Windows itself. Where others may make folders, a
// link of theirs could lead to whatever they want to see deleted. Of the link, whatever it leads to.
bool IsTrustedLink(const char* link);

// Makes a folder that all may read and only administrators and Windows may write to. One that exists stays as
// it is; failures show later, when something is to be put there.
void MakeProtectedFolder(const char* path);
