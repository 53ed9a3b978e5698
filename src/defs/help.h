#pragma once

// What --help prints.
const char* HelpText();

// What --version prints: the number alone.
const char* VersionText();
