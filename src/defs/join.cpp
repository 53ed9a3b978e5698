#include "defs/join.h"

#include <cstdio>
#include <cstring>
#include <fstream>

#include "base/base64.h"
#include "base/db_container.h"
#include "base/memory_archive.h"
#include "base/xml_text.h"
#include "defs/patterns.h"
#include "defs/picture_extras.h"
#include "engine/definition_elements.h"

namespace {

void WriteElement(std::string& text, const pugi::xml_node& node, std::size_t depth) {
    text.append(depth * 2, ' ').append("<").append(node.name());
    for (const pugi::xml_attribute& attribute : node.attributes()) {
        // Nothing is decoded in a value, so one that came from one kind of quotes has none of them.
        const char quote = std::strchr(attribute.value(), '"') ? '\'' : '"';
        text.append(" ").append(attribute.name()).append("=") += quote;
        text.append(attribute.value()) += quote;
    }
    bool open = false;
    for (const pugi::xml_node& child : node.children()) {
        if (child.type() != pugi::node_element) continue;
        text += open ? "" : ">\n";
        open = true;
        WriteElement(text, child, depth + 1);
    }
    if (open) {
        text.append(depth * 2, ' ').append("</").append(node.name()).append(">\n");
    } else {
        text += "/>\n";
    }
}

class Join {
  public:
    Join(std::vector<Finding>& findings)
        : m_findings(findings),
          m_root(m_document.append_child(kRootElement)),
          m_variables(m_root.append_child(kVariablesElement)) {}

    void Add(const SourceDocument& source) {
        for (const char* name : {"version", "date"}) TakeRootAttribute(source, name);
        for (const pugi::xml_node& node : FindElement(source.Root(), kVariablesElement).children()) {
            LookForReferences(source, node);
            m_variables.append_copy(node);
        }
        const std::size_t earlier = m_categories.size();
        for (const pugi::xml_node& node : source.Root().children(kCategoryElement)) {
            AddCategory(source, node, earlier);
        }
    }

    std::string Text() {
        if (!m_variables.first_child()) m_root.remove_child(m_variables);
        std::string text;
        WriteElement(text, m_root, 0);
        return text;
    }

  private:
    struct Category {
        const SourceDocument* source;
        pugi::xml_node node;    // in the source
        pugi::xml_node joined;  // in the document
    };

    void Report(const SourceDocument& source, const pugi::xml_node& node, const std::string& reason) {
        m_findings.push_back(source.FindingAt(node, reason));
    }

    void TakeRootAttribute(const SourceDocument& source, const char* name) {
        const char* value = AttributeOrNull(source.Root(), name);
        if (!value) return;
        const char* earlier = AttributeOrNull(m_root, name);
        if (!earlier) {
            m_root.append_attribute(name) = value;
        } else if (std::strcmp(earlier, value) != 0) {
            Report(source, source.Root(),
                   std::string("another ") + name + ", '" + earlier + "', is in an earlier file");
        }
    }

    // What is decoded depends on the whole text, so a reference in a joined one would not mean what it means
    // in its own.
    void LookForReferences(const SourceDocument& source, const pugi::xml_node& node) {
        for (const pugi::xml_attribute& attribute : node.attributes()) {
            const std::string_view reference = StrayReference(attribute.value());
            if (reference.empty()) continue;
            m_findings.push_back(source.FindingAt(
                attribute,
                "'" + std::string(reference) + "' is not decoded here; write the character itself"));
        }
        for (const pugi::xml_node& child : node.children()) LookForReferences(source, child);
    }

    void AddCategory(const SourceDocument& source, const pugi::xml_node& node, std::size_t earlier) {
        LookForReferences(source, node);
        const char* name = AttributeOrNull(node, "Name");
        for (std::size_t i = 0; name && i < earlier; ++i) {
            if (std::strcmp(m_categories[i].node.attribute("Name").value(), name) != 0) continue;
            CompareCategories(m_categories[i], source, node);
            for (const pugi::xml_node& child : node.children()) {
                PutPicture(source, child, m_categories[i].joined.append_copy(child));
            }
            return;
        }
        pugi::xml_node joined = m_root.append_copy(node);
        PutPicture(source, node, joined);
        pugi::xml_node copy = joined.first_child();
        for (const pugi::xml_node& child : node.children()) {
            PutPicture(source, child, copy);
            copy = copy.next_sibling();
        }
        m_categories.push_back({&source, node, joined});
    }

    // Where a category is continued it need not say again what it said, and cannot say otherwise.
    void CompareCategories(const Category& first, const SourceDocument& source, const pugi::xml_node& node) {
        for (const pugi::xml_attribute& attribute : node.attributes()) {
            const char* value = AttributeOrNull(first.node, attribute.name());
            if (value && std::strcmp(value, attribute.value()) == 0) continue;
            m_findings.push_back(source.FindingAt(
                attribute, std::string(attribute.name()) + " is another one at " + first.source->File() +
                               ":" + std::to_string(first.source->PositionOf(first.node).line)));
        }
    }

    void PutPicture(const SourceDocument& source, const pugi::xml_node& node, pugi::xml_node joined) {
        const pugi::xml_attribute file = node.attribute(kPictureFile);
        if (!file) return;
        // What a pattern leaves where its user names none.
        if (*file.value() == '\0') {
            joined.remove_attribute(kPictureFile);
            return;
        }
        if (node.attribute("Image")) {
            m_findings.push_back(source.FindingAt(file, "there is an Image already"));
            return;
        }
        const auto bytes = ReadFileBytes(PathBeside(source.File(), file.value()));
        if (!bytes || bytes->empty()) {
            m_findings.push_back(
                source.FindingAt(file, "'" + std::string(file.value()) + "' cannot be read"));
            return;
        }
        joined.insert_attribute_after("Image", joined.attribute(kPictureFile)) =
            EncodeBase64(WithoutPictureExtras(*bytes)).c_str();
        joined.remove_attribute(kPictureFile);
    }

    std::vector<Finding>& m_findings;
    pugi::xml_document m_document;
    pugi::xml_node m_root;
    pugi::xml_node m_variables;
    std::vector<Category> m_categories;  // of all files so far
};

}  // namespace

std::string PathBeside(const std::string& file, const std::string& name) {
    const std::size_t slash = file.find_last_of("/\\");
    return (slash == std::string::npos ? "" : file.substr(0, slash + 1)) + name;
}

std::string JoinSources(const Sources& sources, std::vector<Finding>& findings) {
    Join join(findings);
    for (const auto& source : sources) join.Add(*source);
    return join.Text();
}

bool WriteFileBytes(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary);
    if (!out) return false;
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (out) return true;
    std::remove(path.c_str());
    return false;
}

PackOutcome PackFiles(const std::vector<std::string>& sources, const std::string& database,
                      const PackReport& report) {
    Sources documents;
    bool allUsable = true;
    for (const std::string& path : sources) {
        auto bytes = ReadFileBytes(path);
        if (!bytes) {
            report.failure(path, "cannot be read");
            allUsable = false;
            continue;
        }
        documents.push_back(std::make_unique<SourceDocument>(path, SourceText(std::move(*bytes))));
        if (!documents.back()->Fault()) continue;
        report.finding(*documents.back()->Fault());
        allUsable = false;
    }
    if (!allUsable) return PackOutcome::Unreadable;
    std::vector<Finding> findings;
    ExpandPatterns(documents, findings);
    const std::string text = JoinSources(documents, findings);
    for (const Finding& finding : findings) report.finding(finding);
    if (!findings.empty()) return PackOutcome::Findings;
    std::uint8_t* file = nullptr;
    const bool fits = text.size() <= kMaxDbPayload;
    const std::uint32_t size =
        fits ? EncodeDbFile(text.data(), static_cast<std::uint32_t>(text.size()), &file) : 0;
    const UniqueBlock owner(file);
    if (size > 0 && WriteFileBytes(database, {reinterpret_cast<const char*>(file), size})) {
        return PackOutcome::Packed;
    }
    report.failure(database, fits ? "cannot be written" : "would be larger than a load takes");
    return PackOutcome::NotWritten;
}
