#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>

// ZIP archives in memory: what the container of the .db files is made of. Nothing here is thread-bound.

// What frees a block of the C library's heap.
struct BlockFree {
    void operator()(void* block) const { std::free(block); }
};
using UniqueBlock = std::unique_ptr<std::uint8_t, BlockFree>;

// The bytes of an archive that is being written. Grows on demand and never shrinks.
class ArchiveBuffer {
  public:
    static constexpr std::size_t kFirstCapacity = 100000;

    // `maxLength`: a write beyond that many bytes fails, as it does when memory runs out.
    explicit ArchiveBuffer(std::uint64_t maxLength = 0xFFFFFFFF);

    // Writes at the position and moves it. False when the buffer cannot grow; nothing is written then, nor by
    // any later call. A write that reaches the capacity (position plus size is equal to it or more) replaces
    // the buffer by one of twice the capacity, or of exactly position plus size where twice is not more.
    bool Write(const void* data, std::size_t size);

    // Moves the position, to at most the length. False, without a move, beyond that.
    bool Seek(std::uint64_t to);

    std::size_t Position() const { return position; }
    std::size_t Length() const { return length; }
    std::size_t Capacity() const { return capacity; }
    const std::uint8_t* Data() const { return bytes.get(); }

    // True once a write has failed, or when there is no memory at all.
    bool Failed() const { return failed; }

  private:
    bool Grow(std::uint64_t needed);

    std::uint64_t maxLength;
    UniqueBlock bytes;
    std::size_t capacity = 0;
    std::size_t length = 0;
    std::size_t position = 0;
    bool failed = false;
};

// Writes a whole archive with the one entry `name`, compressed by deflate. False when anything failed, the
// growing of the buffer included; the buffer's content is then of no use.
bool WriteArchive(ArchiveBuffer& buffer, const char* name, const void* payload, std::uint32_t length);

// An archive to be read. Made for input that nobody vouches for: any bytes give an answer, in a time linear
// in their number and with a fixed amount of memory of its own.
class ArchiveReader {
  public:
    struct Entry {
        bool stored;                   // as it is; otherwise deflated or of an unknown method
        std::uint64_t compressedSize;  // as declared
        std::uint64_t size;            // of the payload, as declared
    };

    // `bytes` must stay where they are for as long as the reader lives.
    ArchiveReader(const std::uint8_t* bytes, std::size_t length);
    ~ArchiveReader();
    ArchiveReader(const ArchiveReader&) = delete;
    ArchiveReader& operator=(const ArchiveReader&) = delete;

    // False if the bytes are no archive. An archive without any entry at all counts as none.
    bool IsOpen() const { return archive != nullptr; }

    // The first entry called `name`, in any case; it is then the one to be unpacked.
    std::optional<Entry> Find(const char* name);

    // Unpacks at most `size` bytes of the found entry into `out`. Stops at the first fault in the data;
    // what is beyond it stays as it was.
    void Unpack(std::uint8_t* out, std::uint32_t size);

  private:
    struct Source {
        const std::uint8_t* bytes;
        std::size_t length;
        std::size_t position;
    };
    struct Callbacks;

    Source source;
    void* archive = nullptr;
};
