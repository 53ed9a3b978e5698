#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "system/handles.h"

// A flat layer over the registry: each function opens, does one thing and closes. Null arguments give the
// failure result without a registry call. No state, any thread.

// Opens `path` below `root`, however long it is. `key` is empty on failure. With REG_OPTION_OPEN_LINK among
// the `options` a link is opened as itself.
LSTATUS OpenKey(HKEY root, const char* path, REGSAM access, UniqueKey& key, DWORD options = 0);

// Writes `size` bytes as REG_BINARY, making the key where it is missing.
bool RegWriteBinary(HKEY root, const char* key, const char* name, const void* data, DWORD size);

// Writes `text` as REG_SZ with its terminator, making the key where it is missing.
bool RegWriteString(HKEY root, const char* key, const char* name, const char* text);

// The value's first four bytes as a number; `fallback` when the key or value is missing or does not fit.
DWORD RegReadDword(HKEY root, const char* key, const char* name, DWORD fallback, REGSAM extraAccess = 0);

// Size in bytes of the data of `name`, of whatever type. 0 when the key or the value is missing, which
// a caller cannot tell from an empty value and need not.
DWORD RegValueSize(HKEY root, const char* key, const char* name);

// RegValueType's answer for a missing key or value.
inline constexpr DWORD kNoRegValue = static_cast<DWORD>(-1);

// The type code of the value, or kNoRegValue. `extraAccess` joins KEY_QUERY_VALUE when the key is opened.
DWORD RegValueType(HKEY root, const char* key, const char* name, REGSAM extraAccess);

// True when the key opens for KEY_QUERY_VALUE, and also when access is denied: a locked key is worth a walk.
bool RegKeyReachable(HKEY root, const char* key);

// The text of a REG_SZ, REG_EXPAND_SZ (not expanded) or REG_MULTI_SZ (its strings joined by ", ").
// `fallback` on any failure and for any other type.
std::string RegReadText(HKEY root, const char* key, const char* name, const char* fallback,
                        REGSAM extraAccess = 0);

// Deletes a key that has no sub-keys, under a temporary grant where access is denied. True when it is gone,
// also when it was not there.
bool RegDeleteKeyGranted(HKEY root, const char* key);

// Deletes a value. True when it is gone, also when it or its key was not there.
// kept: where the key denies access, the grant alone counts as the success and the value stays.
bool RegDeleteValueGranted(HKEY root, const char* key, const char* name);

// "HKCR", "HKCU", "HKLM" or "HKU"; empty for any other root.
const char* RegRootShortName(HKEY root);

// "HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER" or "HKEY_LOCAL_MACHINE"; null for any other root.
const char* RootKeyName(HKEY root);
