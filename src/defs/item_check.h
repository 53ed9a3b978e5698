#pragma once

#include <map>
#include <string>
#include <vector>

#include "defs/known_variables.h"
#include "defs/never_list.h"
#include "defs/source_document.h"

// The check of the items of all sources.
class ItemCheck {
  public:
    ItemCheck(KnownVariables& variables, const NeverList& never, std::vector<Finding>& findings);

    void Check(const SourceDocument& source, const pugi::xml_node& node);

  private:
    // Each is empty when there is nothing to say.
    std::string LocationFault(ItemType type, const char* location);
    std::string RegistryFault(const char* location);
    std::string PathItemFault(ItemType type, const char* location);
    std::string ValueNameFault(ItemType type, const char* valueName);

    KnownVariables& m_variables;
    const NeverList& m_never;
    std::vector<Finding>& m_findings;
    std::vector<std::string> m_protectedPaths;
    std::map<std::string, std::string> m_places;  // where each item stands first, by what it takes
};
