#include <windows.h>

#include <shlobj.h>

#include <memory>
#include <mutex>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/db_container.h"
#include "base/xml_text.h"
#include "engine/cleaning_engine.h"
#include "engine/trace.h"
#include "system/files.h"
#include "system/handles.h"
#include "system/system_facts.h"

namespace {

const char* YesOrNo(bool enabled) {
    return enabled ? "yes" : "no";
}

// A name with a double quote would end its attribute, and no reader would take the file any more: the states
// of such a record, and of those below it, are not kept.
bool FitsAttribute(const std::string& name) {
    return name.find('"') == std::string::npos;
}

std::string StateLine(const std::string& names, bool enabled) {
    return "\t<scan_item" + names + " enabled=\"" + YesOrNo(enabled) + "\" />\r\n";
}

// Nothing is escaped: the reader decodes nothing either. Nothing at all when the text becomes too long.
std::optional<std::string> HierarchyText(const RecordList<tagCLEAN_CATEGORY>& categories) {
    std::string text;
    for (const tagCLEAN_CATEGORY& category : categories) {
        if (!FitsAttribute(category.name)) continue;
        const std::string categoryPart = " category=\"" + category.name + "\"";
        text += StateLine(categoryPart, category.enabled);
        for (const tagCLEAN_APPLICATION& application : category.applications) {
            if (!FitsAttribute(application.name)) continue;
            const std::string applicationPart = categoryPart + " application=\"" + application.name + "\"";
            text += StateLine(applicationPart, application.enabled);
            for (const tagCLEAN_ENTITY& entity : application.entities) {
                if (!FitsAttribute(entity.name)) continue;
                text += StateLine(applicationPart + " item=\"" + entity.name + "\"", entity.enabled);
                if (text.size() > kMaxDbPayload) return std::nullopt;
            }
            if (text.size() > kMaxDbPayload) return std::nullopt;
        }
    }
    return text;
}

// The names of results may be anything. What would be taken for markup, or for the white space between
// elements, is written so that it is not; a name that cannot be written either way is left out.
std::string WhitelistLine(const std::string& name) {
    constexpr const char* kSpace = " \t\r\n";
    const bool isMarkup = name.find('<') != std::string::npos;
    const bool isSpace = !name.empty() && name.find_first_not_of(kSpace) == std::string::npos;
    if (isMarkup && name.find("]]>") != std::string::npos) return "";
    const bool quoted = isMarkup || isSpace;
    return "\t<whitelist_item>" + (quoted ? "<![CDATA[" + name + "]]>" : name) + "</whitelist_item>\r\n";
}

// Nothing when the text would become longer than `limit`.
std::optional<std::string> WhitelistText(const Whitelist& whitelist, bool withCopies, std::size_t limit) {
    std::string text;
    std::unordered_set<std::string_view> written;
    for (const std::string& name : whitelist.Entries()) {
        if (!withCopies && !written.insert(name).second) continue;
        text += WhitelistLine(name);
        if (text.size() > limit) return std::nullopt;
    }
    return text;
}

// What the file holds; nothing when it would be longer than a reader takes back.
std::optional<std::string> StatesText(const RecordList<tagCLEAN_CATEGORY>& categories,
                                      const Whitelist& whitelist) {
    const std::string start = "<scan_item_states>\r\n";
    const std::string end = "</scan_item_states>\r\n";
    const auto states = HierarchyText(categories);
    const std::size_t length = start.size() + end.size() + (states ? states->size() : kMaxDbPayload);
    if (length > kMaxDbPayload) return std::nullopt;
    // The list doubles with each reload. The copies that it could not hold for that are left out.
    auto names = WhitelistText(whitelist, true, kMaxDbPayload - length);
    if (!names) names = WhitelistText(whitelist, false, kMaxDbPayload - length);
    if (!names) return std::nullopt;
    return start + *states + *names + end;
}

// The enabled flags of all records by their names. Of several records with the same names the first one
// counts, behind whichever of the parents of its name it stands.
class FlagsByName {
  public:
    explicit FlagsByName(const RecordList<tagCLEAN_CATEGORY>& categories) {
        for (tagCLEAN_CATEGORY& category : categories) {
            const std::uint32_t inCategory = Add(kTop, category);
            for (tagCLEAN_APPLICATION& application : category.applications) {
                const std::uint32_t inApplication = Add(inCategory, application);
                for (tagCLEAN_ENTITY& entity : application.entities) Add(inApplication, entity);
            }
        }
    }

    // The flag of a category, of an application if one is named, of an entity if both are; null where there
    // is no such record.
    bool* Find(const char* category, const char* application, const char* entity) const {
        const Place* place = Find(kTop, category);
        if (place && application) {
            place = Find(place->number, application);
            if (place && entity) place = Find(place->number, entity);
        }
        return place ? place->enabled : nullptr;
    }

  private:
    struct Place {
        std::uint32_t number;  // stands for the names down to here
        bool* enabled;
    };
    using Key = std::pair<std::uint32_t, std::string_view>;
    struct Hash {
        std::size_t operator()(const Key& key) const {
            return std::hash<std::string_view>()(key.second) ^ key.first * 0x9E3779B1u;
        }
    };
    static constexpr std::uint32_t kTop = 0;

    template <class Record>
    std::uint32_t Add(std::uint32_t parent, Record& record) {
        const auto number = static_cast<std::uint32_t>(m_places.size()) + 1;
        return m_places.try_emplace({parent, record.name}, Place{number, &record.enabled})
            .first->second.number;
    }

    const Place* Find(std::uint32_t parent, const char* name) const {
        const auto found = m_places.find({parent, name});
        return found == m_places.end() ? nullptr : &found->second;
    }

    std::unordered_map<Key, Place, Hash> m_places;
};

// A line whose names nobody has is dropped. Only "yes" means yes.
void ApplyItemState(const FlagsByName& flags, const pugi::xml_node& line) {
    const char* category = AttributeOrNull(line, "category");
    const char* enabled = AttributeOrNull(line, "enabled");
    if (!category || !enabled) return;
    if (bool* flag =
            flags.Find(category, AttributeOrNull(line, "application"), AttributeOrNull(line, "item"))) {
        *flag = std::string_view(enabled) == "yes";
    }
}

}  // namespace

std::optional<std::string> CCleaningEngine::PreferencesPath() const {
    if (m_preferencesFile) return m_preferencesFile;
    const auto folder = FolderPath(CSIDL_APPDATA);
    if (!folder) return std::nullopt;
    return JoinPath(*folder, "\\Quillmere\\Velvane\\CleanPreferences.db");
}

void CCleaningEngine::SaveItemStates() {
    const auto path = PreferencesPath();
    if (!path) return;
    ENGINE_TRACE("Saving scanning item enabled states.");
    // With nothing loaded the file knows more than we do. What is left of the whitelist when the file was
    // forgotten is kept all the same.
    if (!m_categories.Head() && (m_whitelist.Entries().empty() || !IsGone(path->c_str()))) return;
    const auto text = StatesText(m_categories, m_whitelist);
    if (!text) return;
    std::uint8_t* bytes = nullptr;
    const std::uint32_t size = EncodeDbFile(text->data(), static_cast<std::uint32_t>(text->size()), &bytes);
    const std::unique_ptr<std::uint8_t, FreeDeleter> owner(bytes);
    if (size > 0) ReplaceFileContent(path->c_str(), bytes, size);
}

void CCleaningEngine::LoadItemStates() {
    const auto path = PreferencesPath();
    if (!path) return;
    auto file = ReadWholeFile(path->c_str(), kMaxDbPayload);
    if (!file) return;
    ENGINE_TRACE("Loading scanning item enabled states.");
    std::string text = DbFileText(std::move(*file));
    pugi::xml_document document;
    if (!ParseXmlText(document, text)) return;
    const pugi::xml_node states = FindElement(document, "scan_item_states");
    const std::lock_guard lock(m_lock);
    const FlagsByName flags(m_categories);
    for (const pugi::xml_node& node : states.children()) {
        const std::string_view name = node.name();
        if (name == "scan_item") {
            ApplyItemState(flags, node);
        } else if (name == "whitelist_item") {
            // kept: appended to what is in memory, so that a reload doubles the list.
            m_whitelist.Add(node.text().get());
        }
    }
}

void CCleaningEngine::DeleteItemStates() {
    if (IsBusy()) return;
    if (const auto path = PreferencesPath()) {
        ::DeleteFileA(path->c_str());
        ENGINE_TRACE("User cleaning preference file deleted.");
    }
    FreeDefinitions(false);
}
