#pragma once

#include <windows.h>

#include <string>

// What a start with -report or -uninstall sends: one form with a few facts about the install, to the host
// that the deployment names. Main thread of a process without windows; blocks until the answer is there.

// Where the form goes. Without a host nothing is gathered, looked up nor sent.
struct SurveyEndpoint {
    std::string host;
    WORD port = 80;
};

// The one that the build was given.
SurveyEndpoint DeployedSurvey();

struct SurveyFacts {
    std::string company;
    std::string product;
    unsigned int productId = 0;
    std::string vid;
    std::string cpid;
    std::string lid;
    std::string version;
    std::string installDate;
};

// What the user chose when the program was installed.
struct SurveyChoices {
    bool desktop = false;
    bool login = false;
    bool quick = false;
    bool updates = false;
};

// The body of the post. `action` is "install", "update" or "uninstall".
// kept: the values stand in it as they are, without percent-encoding.
std::string SurveyForm(const SurveyFacts& facts, const char* action, const SurveyChoices& choices);

// A 32-bit number below HKEY_LOCAL_MACHINE. `fallback` when the key or the value is missing, and also when
// the key cannot be opened for writing.
DWORD GetRegistryFlag(const char* keyPath, const char* valueName, DWORD fallback);

class CSurveyReport {
  public:
    CSurveyReport(SurveyFacts facts, SurveyEndpoint endpoint);
    virtual ~CSurveyReport() = default;
    CSurveyReport(const CSurveyReport&) = delete;
    CSurveyReport& operator=(const CSurveyReport&) = delete;

    // Posts the form. On an uninstall a web address that comes back is opened in the browser. True if the
    // post worked, whatever came back.
    bool Report(bool uninstall);

  private:
    SurveyFacts m_facts;
    SurveyEndpoint m_endpoint;
};

// Gathers the facts about this install and reports them. A failure is silent.
void SendSurvey(bool uninstall, const SurveyEndpoint& endpoint = DeployedSurvey());
