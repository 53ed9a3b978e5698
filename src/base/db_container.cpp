#include "base/db_container.h"

#include <algorithm>
#include <cstring>
#include <utility>

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

// Whether a file of `fileLength` bytes can hold what the entry declares. Asked before anything is allocated.
bool CanHold(std::uint64_t fileLength, const ArchiveReader::Entry& entry) {
    const std::uint64_t compressed = std::min(fileLength, entry.compressedSize);
    return entry.size <= kMaxDbPayload && entry.size <= compressed * (entry.stored ? 1 : kBestRatio);
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
    if (!archive.IsOpen()) return 0;
    const auto entry = archive.Find(kEntryName);
    if (entry && !CanHold(length, *entry)) return 0;
    const std::uint32_t size = entry ? static_cast<std::uint32_t>(entry->size) : 0;
    UniqueBlock payload = ZeroedBlock(size);
    if (!payload) return 0;
    if (entry) archive.Unpack(payload.get(), size);
    *out = payload.release();
    return size;
}

std::string DbFileText(std::vector<std::uint8_t> file) {
    if (file.size() > kMaxDbPayload) return {};
    std::uint8_t* out = nullptr;
    const std::uint32_t length = DecodeDbFile(file.data(), static_cast<std::uint32_t>(file.size()), &out);
    const UniqueBlock payload(out);
    const std::uint8_t* bytes = length > 0 ? payload.get() : file.data();
    const std::uint8_t* end = bytes + (length > 0 ? length : file.size());
    return std::string(bytes, std::find(bytes, end, std::uint8_t{0}));
}
