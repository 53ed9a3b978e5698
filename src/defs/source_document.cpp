#include "defs/source_document.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

#include "base/db_container.h"
#include "base/reference_pass.h"
#include "base/xml_text.h"
#include "engine/definition_elements.h"

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// The length of the UTF-8 character at `at`, 0 where there is none.
std::size_t CharacterLength(std::string_view text, std::size_t at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    if (lead < 0x80) return 1;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || at + length > text.size()) return 0;
    const std::string_view rest = text.substr(at + 1, length - 1);
    return std::ranges::all_of(rest, IsContinuation) ? length : 0;
}

}  // namespace

std::string FindingText(const Finding& finding) {
    return finding.file + ":" + std::to_string(finding.at.line) + ":" + std::to_string(finding.at.column) +
           ": error: " + finding.reason;
}

SourceDocument::SourceDocument(std::string file, std::string text)
    : m_file(std::move(file)), m_written(std::move(text)) {
    m_lines.push_back(m_written.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0);
    for (std::size_t i = 0; i < m_written.size(); ++i) {
        if (m_written[i] == '\n') m_lines.push_back(i + 1);
    }
    LookAtBytes();
    m_parsed = m_written.substr(0, m_written.find('\0'));
    const std::string_view reference = ReferenceToResolve(m_parsed);
    if (!reference.empty()) {
        m_shortening = reference.size() - 1;
        for (std::size_t at = m_parsed.find(reference); at != std::string::npos;
             at = m_parsed.find(reference, at + reference.size())) {
            m_resolved.push_back(at - m_resolved.size() * m_shortening);
        }
        ResolveReferences(m_parsed);
    }
    const pugi::xml_parse_result result = ParseXmlText(m_document, m_parsed);
    if (!result) {
        const char* place = m_parsed.data() + std::max<std::ptrdiff_t>(result.offset, 0);
        m_fault = Finding{m_file, PositionOf(place), std::string("nothing loads: ") + result.description()};
        return;
    }
    m_root = FindElement(m_document, kRootElement);
    if (!m_root) m_fault = Finding{m_file, {}, std::string("nothing loads: no ") + kRootElement};
}

void SourceDocument::LookAtBytes() {
    for (std::size_t i = 0; i < m_written.size();) {
        const std::size_t length = CharacterLength(m_written, i);
        if (length == 0 || m_written[i] == '\0') {
            const char* reason = length == 0 ? "not UTF-8" : "a zero byte: the text ends here";
            m_badByte = Finding{m_file, PositionAt(i), reason};
            return;
        }
        i += length;
    }
}

TextPosition SourceDocument::PositionOf(const pugi::xml_node& node) const {
    // In front of a name stands the tag's "<", which is where people look for the element.
    if (node.type() == pugi::node_element) return PositionOf(node.name() - 1);
    const char* text = node.value();
    return PositionOf(text + std::strspn(text, " \t\r\n"));
}

TextPosition SourceDocument::PositionOf(const pugi::xml_attribute& attribute) const {
    return PositionOf(attribute.name());
}

std::string SourceDocument::PlaceOf(const pugi::xml_node& node) const {
    const Origin* origin = OriginOf(node.internal_object());
    if (!origin) return m_file + ":" + std::to_string(PositionOf(node).line);
    return origin->file + ":" + std::to_string(origin->at.line) + ", used at " + origin->use + ",";
}

// `parsed` points into m_parsed: the parse is in place, and normalising line ends moves nothing beyond the
// value that they stand in.
TextPosition SourceDocument::PositionOf(const char* parsed) const {
    const auto offset = std::min(static_cast<std::size_t>(parsed - m_parsed.data()), m_parsed.size());
    const auto before = std::ranges::lower_bound(m_resolved, offset) - m_resolved.begin();
    return PositionAt(offset + static_cast<std::size_t>(before) * m_shortening);
}

TextPosition SourceDocument::PositionAt(std::size_t offset) const {
    const auto next = std::ranges::upper_bound(m_lines, offset);
    if (next == m_lines.begin()) return {};
    const auto line = static_cast<std::size_t>(next - m_lines.begin());
    const std::string_view before =
        std::string_view(m_written).substr(m_lines[line - 1], offset - m_lines[line - 1]);
    return {line, static_cast<std::size_t>(
                      std::ranges::count_if(before, [](char c) { return !IsContinuation(c); })) +
                      1};
}

std::optional<std::string> ReadFileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (!in.is_open() || in.bad()) return std::nullopt;
    return bytes;
}

std::string SourceText(std::string bytes) {
    const std::size_t start = bytes.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
    const std::size_t first = bytes.find_first_not_of(" \t\r\n", start);
    // Under the key a database never begins with "<": its archive has a signature there.
    if (first == std::string::npos || bytes[first] == '<') return bytes;
    std::string unpacked = DbFileText({bytes.begin(), bytes.end()});
    return unpacked.find('<') == std::string::npos ? bytes : unpacked;
}

std::string_view StrayReference(std::string_view value) {
    for (std::size_t at = value.find('&'); at != std::string_view::npos; at = value.find('&', at + 1)) {
        const std::size_t end = value.find(';', at);
        if (end == std::string_view::npos) break;
        const std::string_view reference = value.substr(at, end + 1 - at);
        if (reference.size() > 3 && reference[1] == '#') return reference;
        for (const char* known : {"&amp;", "&apos;", "&quot;", "&lt;", "&gt;"}) {
            if (reference == known) return reference;
        }
    }
    return {};
}
