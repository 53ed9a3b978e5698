#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "defs/glob.h"
#include "defs/source_document.h"
#include "engine/clean_records.h"

// What must never be a target of the definitions: the patterns of never.txt, whose head tells their form.

// What an item of definitions takes, as a set of paths in lower case with its variables' names in it.
struct Target {
    std::string text;  // as it is written: "...\cache\**", "...\**\*.log", "key\value", "file\[section]key"
    std::vector<Glob> reach;  // the same, with its wildcards meaning what they mean to a search
};

// `location` is in the form of PlainLocation.
Target TargetOf(ItemType type, const std::string& location, std::string_view valueName);

// A location in lower case, and each of the folders that have more than one name by one of them.
std::string PlainLocation(std::string location);

class NeverList {
  public:
    // `text` is the content of never.txt; what cannot be read of it is appended to `findings`.
    NeverList(const std::string& file, std::string_view text, std::vector<Finding>& findings);

    // "password: never.txt:12" for the first pattern that `target` meets, empty when it meets none.
    std::string WhyNever(const Target& target) const;
    std::size_t Size() const { return m_patterns.size(); }

  private:
    struct Name {
        std::string name;  // with its angle brackets
        std::vector<std::string> values;
    };
    struct Pattern {
        std::vector<Glob> globs;
        bool isNamed;  // to be met as it is written, because it says nothing of where
        std::string source;
    };

    bool TakeName(std::string_view line);
    bool ReplaceNames(const std::string& text, std::vector<std::string>& texts) const;
    bool TakePattern(const std::string& line, const std::string& source);

    std::vector<Name> m_names;
    std::vector<Pattern> m_patterns;
};
