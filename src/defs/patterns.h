#pragma once

#include <vector>

#include "defs/source_document.h"

// Patterns: what a family of applications has in common, written once. Standard C++ alone, for the build host
// as well.
//
//     <Pattern Name="caches" Profiles="Default|Profile 1">
//       <Item Type="Folder" Location="$(Root)\$(Profiles)\Cache\" Action="All"/>
//     </Pattern>
//     ...
//     <Use Pattern="caches" Root="%chrome%"/>
//
// A <Pattern> is a child of the root, in any of the sources. Its content takes the place of each <Use> of its
// name, wherever that stands, also in another pattern. The other attributes of a <Use> are parameters, those
// of the <Pattern> are what they are where the <Use> does not say. A value with bars is a list: an element
// with the name of a list in its attributes stands there once for each value, and a parameter made of a list
// is a list.

inline constexpr char kPatternElement[] = "Pattern";
inline constexpr char kUseElement[] = "Use";

// Puts the patterns of all sources in their places and takes the patterns themselves out. Does nothing more
// the second time. Findings about what came from a pattern tell the pattern's line, and that of its <Use>.
void ExpandPatterns(const Sources& sources, std::vector<Finding>& findings);
