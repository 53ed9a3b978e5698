#include "packed_text.h"

#include <windows.h>

#include <zlib.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <pugixml.hpp>

#include "base/db_container.h"
#include "report.h"
#include "system/files.h"
#include "system/handles.h"

PackedText::PackedText(const std::string& path) {
    auto file = ReadWholeFile(path.c_str(), kMaxDbPayload);
    Require(file.has_value(), path.c_str());
    m_archive = std::move(*file);
    std::uint8_t* payload = nullptr;
    const auto size = DecodeDbFile(m_archive.data(), static_cast<std::uint32_t>(m_archive.size()), &payload);
    const std::unique_ptr<std::uint8_t, FreeDeleter> owner(payload);
    Require(size > 0, "a text in the definitions file");
    m_text.assign(reinterpret_cast<const char*>(payload), size);
    // Behind the header of the archive's one entry: the lengths of its name and of what else it has.
    constexpr std::size_t kHeader = 30;
    std::uint16_t lengths[2];
    std::memcpy(lengths, m_archive.data() + kHeader - sizeof lengths, sizeof lengths);
    m_begin = kHeader + lengths[0] + lengths[1];
}

double PackedText::Parse() {
    const double begin = Now();
    Require(ParseOnce(), "definitions that are whole");
    return Now() - begin;
}

bool PackedText::ParseOnce() {
    const std::unique_ptr<char, FreeDeleter> text(static_cast<char*>(std::malloc(m_text.size())));
    z_stream stream = {};
    stream.next_in = m_archive.data() + m_begin;
    stream.avail_in = static_cast<uInt>(m_archive.size() - m_begin);
    stream.next_out = reinterpret_cast<Bytef*>(text.get());
    stream.avail_out = static_cast<uInt>(m_text.size());
    ::inflateInit2(&stream, -MAX_WBITS);
    const int status = ::inflate(&stream, Z_FINISH);
    ::inflateEnd(&stream);
    pugi::xml_document document;
    constexpr unsigned int kOptions = pugi::parse_cdata | pugi::parse_wconv_attribute | pugi::parse_eol;
    return status == Z_STREAM_END &&
           document.load_buffer_inplace(text.get(), m_text.size(), kOptions, pugi::encoding_utf8);
}
