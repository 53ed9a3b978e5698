#include "base/db_container.h"

#include <gtest/gtest.h>

#include <optional>

#include "base/memory_archive.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes AsBytes(const std::string& text) {
    return Bytes(text.begin(), text.end());
}

Bytes UnderKey(Bytes bytes) {
    for (auto& byte : bytes) byte ^= 0x5B;
    return bytes;
}

struct Decoded {
    std::uint32_t length;
    std::optional<Bytes> out;  // nothing: the out pointer was left as it was
};

Decoded Decode(Bytes file) {
    std::uint8_t untouched = 0;
    std::uint8_t* out = &untouched;
    const std::uint32_t length = DecodeDbFile(file.data(), static_cast<std::uint32_t>(file.size()), &out);
    if (out == &untouched) return {length, std::nullopt};
    const UniqueBlock block(out);
    return {length, Bytes(out, out + length)};
}

Bytes Encode(const Bytes& payload) {
    std::uint8_t* out = nullptr;
    const std::uint32_t length =
        EncodeDbFile(payload.data(), static_cast<std::uint32_t>(payload.size()), &out);
    const UniqueBlock block(out);
    return Bytes(out, out + length);
}

// One entry of an archive made by hand: what is declared need not be true.
struct Entry {
    std::string name;
    Bytes data;
    std::uint32_t size;
    std::uint16_t method = 0;
    std::uint32_t compressedSize = 0;  // 0: as it is
};

void Put(Bytes& bytes, std::uint64_t value, int count) {
    for (; count > 0; --count, value >>= 8) bytes.push_back(static_cast<std::uint8_t>(value & 0xFF));
}

void PutName(Bytes& bytes, const std::string& name) {
    bytes.insert(bytes.end(), name.begin(), name.end());
}

// What the local header and the directory have in common, from the version to the length of the extra field.
void PutFacts(Bytes& bytes, const Entry& entry, std::size_t extraLength) {
    Put(bytes, 20, 2);
    Put(bytes, 0, 2);
    Put(bytes, entry.method, 2);
    Put(bytes, 0, 4 + 4);
    Put(bytes, entry.compressedSize != 0 ? entry.compressedSize : entry.data.size(), 4);
    Put(bytes, entry.size, 4);
    Put(bytes, entry.name.size(), 2);
    Put(bytes, extraLength, 2);
}

// `extra` goes to the directory's entries.
Bytes Archive(const std::vector<Entry>& entries, const Bytes& extra = {}) {
    Bytes archive;
    Bytes directory;
    for (const Entry& entry : entries) {
        const std::size_t offset = archive.size();
        Put(archive, 0x04034B50, 4);
        PutFacts(archive, entry, 0);
        PutName(archive, entry.name);
        archive.insert(archive.end(), entry.data.begin(), entry.data.end());
        Put(directory, 0x02014B50, 4);
        Put(directory, 20, 2);
        PutFacts(directory, entry, extra.size());
        Put(directory, 0, 2 + 2 + 2 + 4);
        Put(directory, offset, 4);
        PutName(directory, entry.name);
        directory.insert(directory.end(), extra.begin(), extra.end());
    }
    const std::size_t start = archive.size();
    archive.insert(archive.end(), directory.begin(), directory.end());
    Put(archive, 0x06054B50, 4);
    Put(archive, 0, 2 + 2);
    Put(archive, entries.size(), 2);
    Put(archive, entries.size(), 2);
    Put(archive, directory.size(), 4);
    Put(archive, start, 4);
    Put(archive, 0, 2);
    return archive;
}

Entry Stored(const std::string& name, const std::string& text) {
    return {name, AsBytes(text), static_cast<std::uint32_t>(text.size())};
}

Bytes Mixed(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::uint8_t>(i * i * 2654435761u >> 21);
    return bytes;
}

TEST(DbContainer, GivesBackWhatWentIn) {
    for (const std::size_t size : {1u, 40u, 65536u, 300000u}) {
        const Bytes payload = Mixed(size);
        const Bytes file = Encode(payload);
        EXPECT_EQ(Bytes(file.begin(), file.begin() + 4), UnderKey({'P', 'K', 3, 4}));
        const Decoded decoded = Decode(file);
        EXPECT_EQ(decoded.length, size);
        EXPECT_EQ(decoded.out, payload) << size;
    }
    EXPECT_EQ(Decode(Encode({})).out, Bytes()) << "an empty payload is an empty block";
    const std::string zeros(3000000, '\0');
    EXPECT_EQ(Decode(Encode(AsBytes(zeros))).length, zeros.size()) << "what shrinks best is not refused";
}

TEST(DbContainer, FindsTheOneEntry) {
    const Bytes among = Archive({Stored("Cleaner", "no"), Stored("x/Clean", "no"), Stored("CLEAN", "yes")});
    EXPECT_EQ(Decode(UnderKey(among)).out, AsBytes("yes"));
    const Decoded missing = Decode(UnderKey(Archive({Stored("Cleaner", "no")})));
    EXPECT_EQ(missing.length, 0u);
    EXPECT_TRUE(missing.out.has_value()) << "an archive without the entry gives an empty block";
}

TEST(DbContainer, CorruptDataGivesTheDeclaredSizeAndZerosForTheRest) {
    const Bytes payload = Mixed(60000);
    Bytes file = Encode(payload);
    for (std::size_t i = file.size() / 2; i < file.size() / 2 + 64; ++i)
        file[i] = 0x5B;  // zeros below the key
    const Decoded decoded = Decode(file);
    ASSERT_EQ(decoded.length, payload.size());
    EXPECT_TRUE(std::equal(payload.begin(), payload.begin() + 10000, decoded.out->begin()));
    EXPECT_EQ(decoded.out->back(), 0);
    const Bytes reserved = {0x07, 0, 0, 0};  // a block of the type that does not exist
    EXPECT_EQ(Decode(UnderKey(Archive({{"Clean", reserved, 8, 8}}))).out, Bytes(8));
    EXPECT_EQ(Decode(UnderKey(Archive({{"Clean", reserved, 8, 99}}))).out, Bytes(8)) << "unknown method";
}

TEST(DbContainer, ATruncatedFileIsNoArchive) {
    const Bytes file = Encode(AsBytes("<xclean_def version='1'/>"));
    for (std::size_t length = 0; length < file.size(); ++length) {
        const Decoded decoded =
            Decode(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length)));
        EXPECT_EQ(decoded.length, 0u) << length;
        EXPECT_EQ(decoded.out, std::nullopt) << length;
    }
}

struct SizeCase {
    const char* what;
    Entry entry;
    bool accepted;
};

const SizeCase kSizeCases[] = {
    {"deflate's best ratio", {"Clean", Bytes(100), 103200, 8}, true},
    {"one byte more than that", {"Clean", Bytes(100), 103201, 8}, false},
    {"stored is one to one", {"Clean", Bytes(100), 101, 0}, false},
    {"more than any database", {"Clean", Bytes(300000), kMaxDbPayload + 1, 8}, false},
    {"the largest number", {"Clean", Bytes(100), 0xFFFFFFFF, 8}, false},
    {"a compressed size beyond the file", {"Clean", Bytes(100), 0x0FFFFFFF, 8, 0x7FFFFFFF}, false},
};

TEST(DbContainer, ADeclaredSizeThatCannotBeIsRefused) {
    for (const SizeCase& row : kSizeCases) {
        const Decoded decoded = Decode(UnderKey(Archive({row.entry})));
        EXPECT_EQ(decoded.length, row.accepted ? row.entry.size : 0) << row.what;
        EXPECT_EQ(decoded.out.has_value(), row.accepted) << row.what;
    }
}

// An archive whose one entry "Clean" declares its size in the extra field that is made for long sizes.
Bytes LongSizeArchive(const std::string& text, std::uint64_t size) {
    Bytes extra;
    Put(extra, 1, 2);
    Put(extra, 8, 2);
    Put(extra, size, 8);
    return Archive({{"Clean", AsBytes(text), 0xFFFFFFFF}}, extra);
}

TEST(DbContainer, LongSizesAreCheckedLikeShortOnes) {
    // The archive library looks into the extra field only where its `long` has 32 bits, as on Windows.
    // Elsewhere the mark itself is the size, and too large.
    constexpr bool kReadsLongSizes = sizeof(long) == 4;
    const Decoded true4 = Decode(UnderKey(LongSizeArchive("text", 4)));
    EXPECT_EQ(true4.out, kReadsLongSizes ? std::optional(AsBytes("text")) : std::nullopt);
    EXPECT_EQ(Decode(UnderKey(LongSizeArchive("text", std::uint64_t{1} << 32 | 4))).out, std::nullopt);
}

TEST(DbFileText, ReadsContainersAndPlainTextUnderTheKey) {
    const std::string text = "<xclean_def/>";
    EXPECT_EQ(DbFileText(Encode(AsBytes(text))), text);
    EXPECT_EQ(DbFileText(UnderKey(AsBytes(text))), text);
    EXPECT_NE(DbFileText(AsBytes(text)), text) << "plain text without the key is nonsense";
    EXPECT_EQ(DbFileText({}), "");
    EXPECT_EQ(DbFileText(Encode(AsBytes(text + '\0' + "rest"))), text);
    EXPECT_EQ(DbFileText(UnderKey(AsBytes(text + '\0' + "rest"))), text);
    EXPECT_EQ(DbFileText(Encode({})), "PK\3\4\x14") << "without a payload the archive itself is the text";
}

}  // namespace
