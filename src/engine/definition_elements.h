#pragma once

// The names of the definitions' elements. Standard C++ alone: what joins their sources also runs on the build
// host.

inline constexpr char kRootElement[] = "xclean_def";
inline constexpr char kVariablesElement[] = "LocationVariables";
inline constexpr char kVariableElement[] = "LocationVariable";
inline constexpr char kCategoryElement[] = "Category";
inline constexpr char kApplicationElement[] = "Application";
inline constexpr char kEntityElement[] = "Entity";
