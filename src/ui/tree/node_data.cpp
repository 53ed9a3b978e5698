#include "ui/tree/node_data.h"

#include <cstdlib>
#include <cstring>
#include <memory>

#include "ui/tree/block_pool.h"

namespace {

// Lives to the end of the process: data may go with objects that are destroyed late.
BlockPool& DataPool() {
    static BlockPool* const pool = new BlockPool(sizeof(tagNODE_DATA));
    return *pool;
}

// False when there is no memory.
bool CopyText(const char* text, char*& copy) {
    if (text == nullptr) return true;
    copy = static_cast<char*>(std::malloc(std::strlen(text) + 1));
    if (copy == nullptr) return false;
    std::strcpy(copy, text);
    return true;
}

}  // namespace

tagNODE_DATA::~tagNODE_DATA() {
    std::free(label);
    std::free(help);
}

void* tagNODE_DATA::operator new(std::size_t) noexcept {
    return DataPool().Take();
}

void tagNODE_DATA::operator delete(void* data) noexcept {
    if (data != nullptr) DataPool().Give(data);
}

tagNODE_DATA* NewNodeData(DWORD type, HSCANITEM handle, const char* label, const char* help,
                          Gdiplus::Bitmap* image) {
    std::unique_ptr<tagNODE_DATA> data(new tagNODE_DATA);
    if (!data || !CopyText(label, data->label) || !CopyText(help, data->help)) return nullptr;
    data->type = type;
    data->handle = handle;
    data->image = image;
    return data.release();
}
