// Packs a definitions document into the container that the program reads. Runs on the build host, as part of
// the build. usage: pack DOCUMENT.xml CLEANING.db

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>

#include "base/db_container.h"

namespace {

struct Free {
    void operator()(void* block) const { std::free(block); }
};

int Fail(const std::string& file, const char* cause) {
    std::cerr << "pack: " << file << ": " << cause << '\n';
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) return Fail("usage", "pack DOCUMENT.xml CLEANING.db");
    std::ifstream in(argv[1], std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (!in || text.empty()) return Fail(argv[1], "cannot be read, or is empty");
    std::uint8_t* bytes = nullptr;
    const std::uint32_t size = EncodeDbFile(text.data(), static_cast<std::uint32_t>(text.size()), &bytes);
    const std::unique_ptr<std::uint8_t, Free> owner(bytes);
    if (size == 0) return Fail(argv[1], "cannot be packed");
    std::ofstream out(argv[2], std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes), size);
    out.close();
    return out ? 0 : Fail(argv[2], "cannot be written");
}
