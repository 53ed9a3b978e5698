#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/delimiting_text_state_machine.h"
#include "engine/definition_rules.h"

// The variables that definitions may use, as far as their text says what they are. What comes from the
// registry or an ini file differs from machine to machine and stays a name.
class KnownVariables {
  public:
    // Knows those of the system.
    KnownVariables();

    // Makes one more known. `element` is complete and of a known type, and its value is not empty.
    void Add(const VariableElement& element);

    // The first variable in `text` that nothing defines, with both %; empty when there is none.
    std::string FirstUnknown(std::string_view text);
    // Whether a known variable stands in `text`.
    bool HasKnown(std::string_view text);

    // `text` with the variables that the definitions themselves give a value replaced, the others by their
    // names in lower case.
    std::string Named(std::string_view text);
    // `text` as this machine has it; variables of the registry and of ini files stay names.
    std::string OnThisMachine(std::string_view text);

  private:
    void Name(const std::string& key, std::string_view named);

    DelimitingTextStateMachine m_known{'%'};  // each stands for one mark
    DelimitingTextStateMachine m_named{'%'};
    DelimitingTextStateMachine m_here{'%'};
};
