#include "base/memory_archive.h"

#include <unzip.h>
#include <zip.h>
#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

// The archive library opens its "file" through these; nothing has to be opened or closed here.
voidpf OpenNothing(voidpf opaque, const void*, int) {
    return opaque;
}
int CloseNothing(voidpf, voidpf) {
    return 0;
}

// Where a seek of the archive library leads. Offsets from the current position may be negative; they come
// as unsigned 64-bit numbers and wrap around, which makes them far too large when they lead before the start.
std::uint64_t SeekTarget(std::uint64_t position, std::uint64_t length, std::uint64_t offset, int origin) {
    if (origin == ZLIB_FILEFUNC_SEEK_CUR) return position + offset;
    if (origin == ZLIB_FILEFUNC_SEEK_END) return length + offset;
    return offset;
}

ArchiveBuffer& AsBuffer(voidpf opaque) {
    return *static_cast<ArchiveBuffer*>(opaque);
}

uLong WriteToBuffer(voidpf opaque, voidpf, const void* data, uLong size) {
    return AsBuffer(opaque).Write(data, size) ? size : 0;
}

// A new archive is only written, never read back.
uLong ReadFromBuffer(voidpf, voidpf, void*, uLong) {
    return 0;
}

ZPOS64_T TellInBuffer(voidpf opaque, voidpf) {
    return AsBuffer(opaque).Position();
}

long SeekInBuffer(voidpf opaque, voidpf, ZPOS64_T offset, int origin) {
    ArchiveBuffer& buffer = AsBuffer(opaque);
    return buffer.Seek(SeekTarget(buffer.Position(), buffer.Length(), offset, origin)) ? 0 : -1;
}

int ErrorOfBuffer(voidpf opaque, voidpf) {
    return AsBuffer(opaque).Failed() ? 1 : 0;
}

// Unpacks a bare deflate stream, up to its end, the room's end or its first fault.
void Inflate(const std::uint8_t* bytes, std::size_t length, std::uint8_t* out, std::uint32_t size) {
    z_stream stream{};
    stream.next_in = const_cast<Bytef*>(bytes);  // which it only reads
    stream.avail_in = static_cast<uInt>(length);
    stream.next_out = out;
    stream.avail_out = size;
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) return;
    inflate(&stream, Z_FINISH);
    inflateEnd(&stream);
}

}  // namespace

ArchiveBuffer::ArchiveBuffer(std::uint64_t limit)
    : maxLength(limit), bytes(static_cast<std::uint8_t*>(std::malloc(kFirstCapacity))) {
    if (bytes)
        capacity = kFirstCapacity;
    else
        failed = true;
}

bool ArchiveBuffer::Grow(std::uint64_t needed) {
    const std::uint64_t larger = std::max<std::uint64_t>(2 * std::uint64_t{capacity}, needed);
    if (larger > std::numeric_limits<std::size_t>::max()) return false;
    UniqueBlock replacement(static_cast<std::uint8_t*>(std::malloc(static_cast<std::size_t>(larger))));
    if (!replacement) return false;
    std::memcpy(replacement.get(), bytes.get(), length);
    bytes = std::move(replacement);
    capacity = static_cast<std::size_t>(larger);
    return true;
}

bool ArchiveBuffer::Write(const void* data, std::size_t size) {
    const std::uint64_t end = std::uint64_t{position} + size;
    if (failed || end > maxLength || (end >= capacity && !Grow(end))) {
        failed = true;
        return false;
    }
    if (size != 0) std::memcpy(bytes.get() + position, data, size);
    position = static_cast<std::size_t>(end);
    length = std::max(length, position);
    return true;
}

bool ArchiveBuffer::Seek(std::uint64_t to) {
    if (to > length) return false;
    position = static_cast<std::size_t>(to);
    return true;
}

bool WriteArchive(ArchiveBuffer& buffer, const char* name, const void* payload, std::uint32_t length) {
    if (buffer.Failed()) return false;
    zlib_filefunc64_def functions{OpenNothing,  ReadFromBuffer, WriteToBuffer, TellInBuffer,
                                  SeekInBuffer, CloseNothing,   ErrorOfBuffer, &buffer};
    const zipFile archive = zipOpen2_64(name, APPEND_STATUS_CREATE, nullptr, &functions);
    if (archive == nullptr) return false;
    const zip_fileinfo noStamps{};
    bool written = zipOpenNewFileInZip(archive, name, &noStamps, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED,
                                       Z_DEFAULT_COMPRESSION) == ZIP_OK;
    written = written && zipWriteInFileInZip(archive, payload, length) == ZIP_OK;
    written = written && zipCloseFileInZip(archive) == ZIP_OK;
    // Closing frees, so it is done in any case. The library forgets some failures of the entry's last block;
    // the buffer refuses everything after one, so that at the latest the end record fails.
    return zipClose(archive, nullptr) == ZIP_OK && written;
}

struct ArchiveReader::Callbacks {
    static Source& Of(voidpf opaque) { return *static_cast<Source*>(opaque); }

    static uLong Read(voidpf opaque, voidpf, void* out, uLong size) {
        Source& source = Of(opaque);
        const std::size_t count = std::min<std::size_t>(size, source.length - source.position);
        if (count != 0) std::memcpy(out, source.bytes + source.position, count);
        source.position += count;
        return static_cast<uLong>(count);
    }

    static uLong Write(voidpf, voidpf, const void*, uLong) { return 0; }

    static ZPOS64_T Tell(voidpf opaque, voidpf) { return Of(opaque).position; }

    static long Seek(voidpf opaque, voidpf, ZPOS64_T offset, int origin) {
        Source& source = Of(opaque);
        const std::uint64_t target = SeekTarget(source.position, source.length, offset, origin);
        if (target > source.length) return -1;
        source.position = static_cast<std::size_t>(target);
        return 0;
    }

    // Asked only after a read that fell short. Without an error here the library would take the missing bytes
    // of a truncated archive for zeros.
    static int Error(voidpf, voidpf) { return 1; }
};

ArchiveReader::ArchiveReader(const std::uint8_t* bytes, std::size_t length) : source{bytes, length, 0} {
    zlib_filefunc64_def functions{OpenNothing,     Callbacks::Read, Callbacks::Write, Callbacks::Tell,
                                  Callbacks::Seek, CloseNothing,    Callbacks::Error, &source};
    archive = unzOpen2_64("", &functions);
}

ArchiveReader::~ArchiveReader() {
    if (archive != nullptr) unzClose(archive);
}

std::optional<ArchiveReader::Entry> ArchiveReader::Find(const char* name) {
    constexpr int kInAnyCase = 2;
    unz_file_info64 info{};
    if (archive == nullptr || unzLocateFile(archive, name, kInAnyCase) != UNZ_OK ||
        unzGetCurrentFileInfo64(archive, &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK)
        return std::nullopt;
    return Entry{info.compression_method == 0, info.compressed_size, info.uncompressed_size};
}

void ArchiveReader::Unpack(std::uint8_t* out, std::uint32_t size) {
    constexpr int kAsItIs = 1;
    int method = 0;
    if (archive == nullptr || unzOpenCurrentFile2(archive, &method, nullptr, kAsItIs) != UNZ_OK) return;
    const std::uint64_t begin =
        std::min<std::uint64_t>(unzGetCurrentFileZStreamPos64(archive), source.length);
    unz_file_info64 info{};
    unzGetCurrentFileInfo64(archive, &info, nullptr, 0, nullptr, 0, nullptr, 0);
    unzCloseCurrentFile(archive);
    const auto length = std::min<std::uint64_t>(info.compressed_size, source.length - begin);
    // Not by the library's own reading: the whole is in memory, and nobody asks for the sum that it makes.
    if (method == Z_DEFLATED) {
        Inflate(source.bytes + begin, static_cast<std::size_t>(length), out, size);
    } else if (method == 0) {
        std::memcpy(out, source.bytes + begin,
                    static_cast<std::size_t>(std::min<std::uint64_t>(length, size)));
    }
}
