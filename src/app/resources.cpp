#include "app/resources.h"

#include "resources/ids.h"

namespace {

HMODULE g_module = nullptr;

}  // namespace

bool LoadResources() {
    g_module = ::LoadLibraryA("resources.dll");
    return g_module != nullptr && !ResourceText(IDS_PRODUCT).empty();
}

HMODULE ResourceModule() {
    return g_module;
}

std::string ResourceText(UINT id) {
    char text[1024];
    const int length = ::LoadStringA(g_module, id, text, static_cast<int>(sizeof text));
    return std::string(text, static_cast<std::size_t>(length > 0 ? length : 0));
}
