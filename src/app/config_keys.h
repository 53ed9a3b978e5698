#pragma once

// The numbers by which a screen asks for an option, see CAppConfig.

enum ConfigKey : int {
    // GetString
    KEY_APPDIR = 0,      // the program's folder, with its trailing backslash
    KEY_HELPFILE = 1,    // path of the help file; kept: nobody opens it
    KEY_URLSUPPORT = 5,  // whole web links
    KEY_URLCOMPANY = 8,
    KEY_URLHELP = 9,
    KEY_URLSUFFIX = 10,  // the tail of a web link

    // GetInt and SetInt; what is a truth reads as 0 or 1 and is set by exactly 1
    KEY_FIRSTRUN = 4,           // cannot be set
    KEY_AUTOCHECKUPDATES = 11,  // cannot be set
    KEY_ASKBEFOREDOWNLOAD = 12,
    KEY_ERASEMODE = 14,        // overwrite passes of the shredder screen: 1, 3 or 7
    KEY_CLEANMODE = 15,        // overwrite passes for cleaned files: 0, 1, 3 or 7
    KEY_LASTCHECK = 16,        // kept: nobody answers it, it reads as -1
    KEY_SCANERASENOSHOW = 18,  // the clean confirmation is no longer shown
    KEY_SHREDNOSHOW = 19,      // the shred confirmation is no longer shown
    KEY_AUTOCLEAN = 20,        // a scan that found something goes on to clean by itself
};
