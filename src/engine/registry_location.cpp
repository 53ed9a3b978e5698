#include "engine/registry_location.h"

std::optional<RegistryLocation> ParseRegistryLocation(std::string_view text) {
    if (text.size() < 6 || text[0] != 'H' || text[4] != '\\') return std::nullopt;
    HKEY hive = nullptr;
    switch (text[3]) {
        case 'M':
            hive = HKEY_LOCAL_MACHINE;
            break;
        case 'R':
            hive = HKEY_CLASSES_ROOT;
            break;
        case 'U':
            hive = HKEY_CURRENT_USER;
            break;
        default:
            break;
    }
    return RegistryLocation{hive, text.substr(5)};
}
