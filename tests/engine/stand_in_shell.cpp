#include "engine/stand_in_shell.h"

#include <cstring>

// The shell's interfaces have no destructor; their objects end by Release.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

namespace {

int g_live = 0;

// The beginning of a counted object that supports one interface.
template <class Interface>
class Counted : public Interface {
  public:
    Counted() { ++g_live; }
    virtual ~Counted() { --g_live; }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --m_references;
        if (left == 0) delete this;
        return left;
    }

  private:
    ULONG m_references = 1;
};

constexpr std::size_t kTextSize = 300;

// An entry's identifier: the usual size in front, the entry's number, the text of its path, and the end mark.
struct Id {
    USHORT size;
    USHORT number;
    char text[kTextSize];
    USHORT end;
};

class Listing : public Counted<IEnumIDList> {
  public:
    explicit Listing(const std::vector<DeletedEntry>& entries) : m_entries(entries) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG, ITEMIDLIST** list, ULONG*) override {
        if (m_next == m_entries.size()) return S_FALSE;
        *list = MakeStandInId(m_next);
        std::strncpy(reinterpret_cast<Id*>(*list)->text, m_entries[m_next++].path.c_str(), kTextSize - 1);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IEnumIDList**) override { return E_NOTIMPL; }

  private:
    const std::vector<DeletedEntry>& m_entries;
    std::size_t m_next = 0;
};

class StandInFolder : public Counted<IShellFolder2> {
  public:
    explicit StandInFolder(const std::vector<DeletedEntry>& entries) : m_entries(entries) {}

    HRESULT STDMETHODCALLTYPE EnumObjects(HWND, SHCONTF flags, IEnumIDList** list) override {
        if (flags != 0xE0) return E_INVALIDARG;
        *list = new Listing(m_entries);
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE GetDisplayNameOf(LPCITEMIDLIST id, SHGDNF flags, STRRET* name) override {
        if (flags != SHGDN_FORPARSING && flags != SHGDN_NORMAL) return E_INVALIDARG;
        const DeletedEntry& entry = EntryOf(id);
        switch (entry.form) {
            case NameForm::Wide: {
                name->uType = STRRET_WSTR;
                const auto capacity = static_cast<int>(entry.path.size() + 1);
                name->pOleStr = static_cast<wchar_t*>(::CoTaskMemAlloc(capacity * sizeof(wchar_t)));
                ::MultiByteToWideChar(CP_ACP, 0, entry.path.c_str(), -1, name->pOleStr, capacity);
                return S_OK;
            }
            case NameForm::Offset:
                name->uType = STRRET_OFFSET;
                name->uOffset = offsetof(Id, text);
                return S_OK;
            case NameForm::Inline:
                name->uType = STRRET_CSTR;
                std::memcpy(name->cStr, entry.path.c_str(), entry.path.size() + 1);
                return S_OK;
            case NameForm::Unknown:
                name->uType = 7;
                return S_OK;
            case NameForm::Fails:
                break;
        }
        return E_FAIL;
    }

    HRESULT STDMETHODCALLTYPE BindToObject(LPCITEMIDLIST id, IBindCtx*, REFIID what, void** object) override {
        *object = nullptr;
        if (what != IID_IShellFolder2 && what != IID_IShellFolder) return E_NOINTERFACE;
        const DeletedEntry& entry = EntryOf(id);
        if (SUCCEEDED(entry.bind)) *object = new StandInFolder(entry.children);
        return entry.bind;
    }

    HRESULT STDMETHODCALLTYPE ParseDisplayName(HWND, IBindCtx*, LPWSTR, ULONG*, ITEMIDLIST**,
                                               ULONG*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE BindToStorage(LPCITEMIDLIST, IBindCtx*, REFIID, void**) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE CompareIDs(LPARAM, LPCITEMIDLIST, LPCITEMIDLIST) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CreateViewObject(HWND, REFIID, void**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetAttributesOf(UINT, LPCITEMIDLIST*, SFGAOF*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetUIObjectOf(HWND, UINT, LPCITEMIDLIST*, REFIID, UINT*, void**) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetNameOf(HWND, LPCITEMIDLIST, LPCWSTR, SHGDNF, ITEMIDLIST**) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetDefaultSearchGUID(GUID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumSearches(IEnumExtraSearch**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetDefaultColumn(DWORD, ULONG*, ULONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetDefaultColumnState(UINT, SHCOLSTATEF*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetDetailsEx(LPCITEMIDLIST, const SHCOLUMNID*, VARIANT*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetDetailsOf(LPCITEMIDLIST, UINT, SHELLDETAILS*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE MapColumnToSCID(UINT, SHCOLUMNID*) override { return E_NOTIMPL; }

  private:
    const DeletedEntry& EntryOf(LPCITEMIDLIST id) const {
        return m_entries.at(reinterpret_cast<const Id*>(id)->number);
    }

    const std::vector<DeletedEntry>& m_entries;
};

}  // namespace

IShellFolder2* MakeStandInFolder(const std::vector<DeletedEntry>& entries) {
    return new StandInFolder(entries);
}

ITEMIDLIST* MakeStandInId(std::size_t number) {
    auto* const id = static_cast<Id*>(::CoTaskMemAlloc(sizeof(Id)));
    *id = {offsetof(Id, end), static_cast<USHORT>(number), "", 0};
    return reinterpret_cast<ITEMIDLIST*>(id);
}

int LiveStandIns() {
    return g_live;
}
