#pragma once

#include <map>
#include <string>
#include <vector>

#include "defs/known_variables.h"
#include "defs/source_document.h"

// The check of the LocationVariables of all sources, one after the other, as a load reads them.
class VariableCheck {
  public:
    VariableCheck(KnownVariables& variables, std::vector<Finding>& findings);

    void Check(const SourceDocument& source, const pugi::xml_node& node);

  private:
    bool CheckName(const SourceDocument& source, const pugi::xml_node& node, const char* name);
    bool CheckValue(const SourceDocument& source, const pugi::xml_node& node, const VariableElement& element);

    KnownVariables& m_variables;
    std::vector<Finding>& m_findings;
    std::map<std::string, std::string> m_defined;  // where each was defined first, by key
};
