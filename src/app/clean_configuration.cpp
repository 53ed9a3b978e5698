#include "app/clean_configuration.h"

#include <cstdio>
#include <string_view>

#include "app/config_keys.h"
#include "base/decimal.h"

void CCleanAppConfig::ReadExtraElement(const char* element, const char* value) {
    const std::string_view name = element;
    const int number = DecimalValue(value);
    if (name == "erasemode") {
        eraseMode = number;
    } else if (name == "cleanmode") {
        cleanMode = number;
    } else if (name == "scanerasenoshow") {
        scanEraseNoShow = number == 1;
    } else if (name == "shrednoshow") {
        shredNoShow = number == 1;
    } else if (name == "autoclean") {
        autoClean = number == 1;
    }
}

void CCleanAppConfig::GetExtraXml(std::string& text) const {
    char lines[256];
    std::snprintf(lines, sizeof lines,
                  "\t<erasemode>%d</erasemode>\r\n"
                  "\t<cleanmode>%d</cleanmode>\r\n"
                  "\t<scanerasenoshow>%d</scanerasenoshow>\r\n"
                  "\t<shrednoshow>%d</shrednoshow>\r\n"
                  "\t<autoclean>%d</autoclean>\r\n",
                  eraseMode, cleanMode, scanEraseNoShow, shredNoShow, autoClean);
    text = lines;
}

int CCleanAppConfig::GetExtraInt(int key) const {
    switch (key) {
        case KEY_ERASEMODE:
            return eraseMode;
        case KEY_CLEANMODE:
            return cleanMode;
        case KEY_SCANERASENOSHOW:
            return scanEraseNoShow;
        case KEY_SHREDNOSHOW:
            return shredNoShow;
        case KEY_AUTOCLEAN:
            return autoClean;
        default:
            return -1;
    }
}

void CCleanAppConfig::SetExtraInt(int key, int value) {
    switch (key) {
        case KEY_ERASEMODE:
            eraseMode = value;
            break;
        case KEY_CLEANMODE:
            cleanMode = value;
            break;
        case KEY_SCANERASENOSHOW:
            scanEraseNoShow = value == 1;
            break;
        case KEY_SHREDNOSHOW:
            shredNoShow = value == 1;
            break;
        case KEY_AUTOCLEAN:
            autoClean = value == 1;
            break;
        default:
            break;
    }
}

const char* CCleanAppConfig::GetExtraString(int) const {
    return nullptr;
}

void CCleanAppConfig::SetExtraString(int, const char*) {}
