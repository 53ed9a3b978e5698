#include "base/ini_value_name.h"

#include "fuzz.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = InputText(data, size);
    const auto name = SplitIniValueName(text);
    const std::size_t close = text.find(']');
    FUZZ_CHECK(name.has_value() == (close <= 261));  // false for npos as well
    if (!name) return 0;
    FUZZ_CHECK(name->section.size() == (close > 0 ? close - 1 : 0));
    FUZZ_CHECK(text == (close > 0 ? text.substr(0, 1) : "") + name->section + ']' + name->key);
    return 0;
}
