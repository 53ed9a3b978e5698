#pragma once

#include "app/configuration.h"

// The configuration with the options of cleaning and shredding.
class CCleanAppConfig final : public CAppConfig {
  public:
    using CAppConfig::CAppConfig;

  private:
    void ReadExtraElement(const char* name, const char* value) override;
    void GetExtraXml(std::string& text) const override;
    int GetExtraInt(int key) const override;
    void SetExtraInt(int key, int value) override;
    const char* GetExtraString(int key) const override;
    void SetExtraString(int key, const char* value) override;

    int eraseMode =
        1;  // stored as it stands, like cleanMode: each screen deals with a number that it does not know
    int cleanMode = 0;
    bool scanEraseNoShow = false;
    bool shredNoShow = false;
    bool autoClean = false;
};
