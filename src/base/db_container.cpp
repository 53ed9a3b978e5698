#include "base/db_container.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <optional>

#include "base/find_byte.h"
#include "base/memory_archive.h"

namespace {

constexpr char kEntryName[] = "Clean";
constexpr std::uint8_t kKey = 0x5B;

// Deflate never does better: two bits for a run of 258 bytes.
constexpr std::uint64_t kBestRatio = 1032;

// The scrambling and its own inverse.
void ApplyKey(std::uint8_t* bytes, std::size_t length) {
    for (std::size_t i = 0; i < length; ++i) bytes[i] ^= kKey;
}

// The size that the archive of `fileLength` bytes declares for its entry, 0 where it has none; nothing when
// it is no archive, or declares what it cannot hold or what we do not take. Asked before anything is
// allocated.
std::optional<std::uint32_t> PayloadSize(ArchiveReader& archive, std::uint64_t fileLength) {
    if (!archive.IsOpen()) return std::nullopt;
    const auto entry = archive.Find(kEntryName);
    if (!entry) return 0;
    const std::uint64_t compressed = std::min(fileLength, entry->compressedSize);
    const bool fits = entry->size <= compressed * (entry->stored ? 1 : kBestRatio);
    if (!fits || entry->size > kMaxDbPayload) return std::nullopt;
    return static_cast<std::uint32_t>(entry->size);
}

// A block of the C library's heap, zeroed; of at least one byte, so that null always means failure.
UniqueBlock ZeroedBlock(std::size_t size) {
    return UniqueBlock(static_cast<std::uint8_t*>(std::calloc(std::max<std::size_t>(size, 1), 1)));
}

}  // namespace

std::uint32_t EncodeDbFile(const void* payload, std::uint32_t length, std::uint8_t** out) {
    ArchiveBuffer archive;
    if (!WriteArchive(archive, kEntryName, payload, length)) return 0;
    UniqueBlock file(static_cast<std::uint8_t*>(std::malloc(archive.Length())));
    if (!file) return 0;
    std::memcpy(file.get(), archive.Data(), archive.Length());
    ApplyKey(file.get(), archive.Length());
    *out = file.release();
    return static_cast<std::uint32_t>(archive.Length());
}

std::uint32_t DecodeDbFile(std::uint8_t* file, std::uint32_t length, std::uint8_t** out) {
    ApplyKey(file, length);
    ArchiveReader archive(file, length);
    const auto size = PayloadSize(archive, length);
    if (!size) return 0;
    UniqueBlock payload = ZeroedBlock(*size);
    if (!payload) return 0;
    if (*size > 0) archive.Unpack(payload.get(), *size);
    *out = payload.release();
    return *size;
}

std::string DbFileText(std::vector<std::uint8_t> file) {
    if (file.size() > kMaxDbPayload) return {};
    ApplyKey(file.data(), file.size());
    ArchiveReader archive(file.data(), file.size());
    std::string text;
    if (const std::uint32_t size = PayloadSize(archive, file.size()).value_or(0)) {
        try {
            text.resize(size);
            archive.Unpack(reinterpret_cast<std::uint8_t*>(text.data()), size);
        } catch (const std::bad_alloc&) {  // the size comes from a file, and may be more than there is memory
            text.clear();
        }
    }
    if (text.empty()) text.assign(file.begin(), file.end());
    text.resize(FindByte(text, '\0', 0));
    return text;
}
