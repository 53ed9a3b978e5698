#pragma once

// The job that starts the program when somebody logs on. Both need the texts to be loaded.

// Adds the job unless it is there, or deletes it. A failure is not told.
void SetLaunchOnLogon(bool on);

bool IsLaunchOnLogon();
