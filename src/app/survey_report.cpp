#include "app/survey_report.h"

#include <memory>
#include <new>
#include <utility>

#include "app/clean_configuration.h"
#include "app/deployment.h"
#include "app/http_post.h"
#include "app/install_time.h"
#include "app/links.h"
#include "app/product.h"
#include "app/resources.h"
#include "app/xml_file.h"
#include "base/xml_text.h"
#include "resources/ids.h"
#include "system/file_version_info.h"
#include "system/registry.h"
#include "system/system_facts.h"

namespace {

// The endpoint's number for an action.
const char* ActionId(const char* action) {
    if (::lstrcmpiA(action, "install") == 0) return "1";
    if (::lstrcmpiA(action, "uninstall") == 0) return "2";
    return "3";
}

const char* Truth(bool value) {
    return value ? "TRUE" : "FALSE";
}

std::string ProductKey(const SurveyFacts& facts) {
    return "SOFTWARE\\" + facts.company + "\\" + facts.product;
}

SurveyChoices ReadChoices(const std::string& key) {
    SurveyChoices choices;
    choices.updates = GetRegistryFlag(key.c_str(), "Updates", 0) != 0;
    choices.quick = GetRegistryFlag(key.c_str(), "Quick", 0) != 0;
    choices.login = GetRegistryFlag(key.c_str(), "Login", 0) != 0;
    choices.desktop = GetRegistryFlag(key.c_str(), "Desktop", 0) != 0;
    return choices;
}

// Opens the answer of the endpoint where it is a web address. The shell would start whatever else begins with
// "http" as well, a program of such a name for one, so that OpenLink has the last word.
void OpenAnswer(const std::string& response) {
    if (response.compare(0, 4, "http") != 0) return;
    // A line end at its end is of the script that made the answer, and no part of the address.
    OpenLink(response.substr(0, response.find_last_not_of("\r\n") + 1).c_str());
}

// Constructing the configuration makes the product's folders. Nothing else of it reaches the form.
void LoadConfiguration(const SurveyFacts& facts) {
    const std::unique_ptr<CCleanAppConfig> configuration(new (std::nothrow) CCleanAppConfig(
        ::GetModuleHandleA(nullptr), facts.company, facts.product, facts.productId));
    WINDOWPLACEMENT placement = {};
    if (configuration) configuration->Load(&placement);
}

// The numbers of the distribution, from settings.xml beside the program; empty where they are missing.
// kept: a PID that stands there as well is not taken.
void ReadDistribution(SurveyFacts& facts) {
    const std::string folder = ProgramFolder();
    const std::string path = folder + "settings.xml";
    // Without its folder the name would mean a file of the current directory, which may be anybody's.
    if (folder.empty() || ::GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES) return;
    XmlFile settings;
    if (!LoadXmlFile(path, settings)) return;
    const auto textOf = [&](const char* name) {
        const char* const value = TextOrNull(FindElement(settings.document, name));
        return std::string(value != nullptr ? value : "");
    };
    facts.cpid = textOf("CPID");
    facts.vid = textOf("VID");
    facts.lid = textOf("LID");
}

std::string ProgramVersion() {
    CFileVersionInfo version;
    version.CreateFromModule(nullptr);
    return ShortVersion(version.GetProductVersion());
}

}  // namespace

SurveyEndpoint DeployedSurvey() {
    return {kSurveyHost, kSurveyPort};
}

std::string SurveyForm(const SurveyFacts& facts, const char* action, const SurveyChoices& choices) {
    const std::pair<const char*, std::string> fields[] = {
        {"action", action},
        {"actionid", ActionId(action)},
        {"PID", std::to_string(facts.productId)},
        {"CPID", facts.cpid},
        {"VID", facts.vid},
        {"LID", facts.lid},
        {"Version", facts.version},
        {"InstallDate", facts.installDate},
        {"Desktop", Truth(choices.desktop)},
        {"Login", Truth(choices.login)},
        {"Quick", Truth(choices.quick)},
        {"Updates", Truth(choices.updates)},
    };
    std::string form;
    for (const auto& [name, value] : fields) {
        if (!form.empty()) form += '&';
        form.append(name).append("=").append(value);
    }
    return form;
}

DWORD GetRegistryFlag(const char* keyPath, const char* valueName, DWORD fallback) {
    return RegReadDword(HKEY_LOCAL_MACHINE, keyPath, valueName, fallback, KEY_READ | KEY_WRITE);
}

CSurveyReport::CSurveyReport(SurveyFacts facts, SurveyEndpoint endpoint)
    : m_facts(std::move(facts)), m_endpoint(std::move(endpoint)) {}

bool CSurveyReport::Report(bool uninstall) {
    const std::string key = ProductKey(m_facts);
    // kept: any number but 1 counts as an install that the user watched.
    const bool silent = GetRegistryFlag(key.c_str(), "Silent", 0) == 1;
    const char* const action = uninstall ? "uninstall" : silent ? "update" : "install";
    std::string response;
    if (PostForm(m_endpoint.host, m_endpoint.port, "index.php", SurveyForm(m_facts, action, ReadChoices(key)),
                 response) != 0) {
        return false;
    }
    if (uninstall) OpenAnswer(response);
    return true;
}

void SendSurvey(bool uninstall, const SurveyEndpoint& endpoint) {
    if (endpoint.host.empty()) return;
    SurveyFacts facts;
    facts.company = kCompanyName;
    facts.product = ResourceText(IDS_PRODUCT_FOLDER);
    facts.productId = kProductId;
    facts.installDate = ReadInstallDate(facts.company, facts.product);
    LoadConfiguration(facts);
    ReadDistribution(facts);
    facts.version = ProgramVersion();
    CSurveyReport(std::move(facts), endpoint).Report(uninstall);
}
