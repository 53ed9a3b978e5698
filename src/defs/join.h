#pragma once

#include <string>
#include <vector>

#include "defs/source_document.h"

// Many sources made one document. Standard C++ alone, for the build host as well.

// The attribute that names a picture's file, relative to the folder of the source. A join puts the picture
// itself in its place, as the attribute `Image`.
inline constexpr char kPictureFile[] = "ImageFile";

// The path of `name` in the folder of `file`.
std::string PathBeside(const std::string& file, const std::string& name);

// The one document of `sources`, which all have a root: `version` and `date` of the first that has them, one
// section with all their variables in order, then their categories; a category whose name an earlier file
// has continues that one. Comments and what a load passes over between tags are left out. What does not fit
// together is appended to `findings`; the document then is not to be used.
std::string JoinSources(const Sources& sources, std::vector<Finding>& findings);

enum class PackOutcome { Packed, Unreadable, Findings, NotWritten };

// Who is told what is wrong: with a source, or with a file as a whole.
struct PackReport {
    void (*finding)(const Finding& finding);
    void (*failure)(const std::string& file, const char* cause);
};

// Joins the files `sources` into the file `database`.
PackOutcome PackFiles(const std::vector<std::string>& sources, const std::string& database,
                      const PackReport& report);

// Writes a file; false, with nothing left at `path`, when that fails.
bool WriteFileBytes(const std::string& path, const std::string& bytes);
