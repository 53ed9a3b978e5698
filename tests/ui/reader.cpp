#include "ui/reader.h"

#include <stdexcept>

namespace {

// Takes it.
LONG NumberOf(VARIANT& answer) {
    const LONG number = answer.vt == VT_I4 ? answer.lVal : answer.vt == VT_DISPATCH ? -2 : -1;
    ::VariantClear(&answer);
    return number;
}

struct Word {
    LONG value;
    const char* word;
};
constexpr Word kRoles[] = {{ROLE_SYSTEM_OUTLINE, "outline"}, {ROLE_SYSTEM_CHECKBUTTON, "check"},
                           {ROLE_SYSTEM_DIALOG, "dialog"},   {ROLE_SYSTEM_PAGETAB, "tab"},
                           {ROLE_SYSTEM_LINK, "link"},       {ROLE_SYSTEM_PUSHBUTTON, "button"}};
constexpr Word kStates[] = {{STATE_SYSTEM_CHECKED, " checked"},     {STATE_SYSTEM_EXPANDED, " expanded"},
                            {STATE_SYSTEM_COLLAPSED, " closed"},    {STATE_SYSTEM_SELECTED, " selected"},
                            {STATE_SYSTEM_FOCUSED, " focused"},     {STATE_SYSTEM_UNAVAILABLE, " off"},
                            {STATE_SYSTEM_OFFSCREEN, " offscreen"}, {STATE_SYSTEM_INVISIBLE, " invisible"}};

}  // namespace

Reader::Reader(HWND window) {
    IAccessible* object = nullptr;
    if (::AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                     reinterpret_cast<void**>(&object)) != S_OK) {
        throw std::runtime_error("the window cannot be asked");
    }
    m_object.reset(object);
}

VARIANT Reader::Id(LONG child) {
    VARIANT id = {};
    id.vt = VT_I4;
    id.lVal = child;
    return id;
}

std::vector<LONG> Reader::Children() const {
    LONG count = 0;
    m_object->get_accChildCount(&count);
    std::vector<VARIANT> children(static_cast<std::size_t>(count));
    ::AccessibleChildren(m_object.get(), 0, count, children.data(), &count);
    std::vector<LONG> numbers;
    for (VARIANT& child : children) numbers.push_back(NumberOf(child));
    return numbers;
}

std::string Reader::What(LONG child) const {
    VARIANT role = {};
    VARIANT state = {};
    m_object->get_accRole(Id(child), &role);
    m_object->get_accState(Id(child), &state);
    std::string what = Name(child) + "|";
    for (const Word& word : kRoles) {
        if (role.lVal == word.value) what += word.word;
    }
    what += "|";
    for (const Word& word : kStates) {
        if ((state.lVal & word.value) != 0) what += word.word + (what.back() == '|' ? 1 : 0);
    }
    return what;
}

RECT Reader::Place(LONG child) const {
    LONG left = 0, top = 0, width = 0, height = 0;
    m_object->accLocation(&left, &top, &width, &height, Id(child));
    return {left, top, left + width, top + height};
}

LONG Reader::At(POINT screen) const {
    VARIANT answer = {};
    m_object->accHitTest(screen.x, screen.y, &answer);
    return NumberOf(answer);
}

LONG Reader::Beside(LONG child, LONG direction) const {
    VARIANT answer = {};
    m_object->accNavigate(direction, Id(child), &answer);
    return NumberOf(answer);
}

LONG Reader::Focus() const {
    VARIANT answer = {};
    m_object->get_accFocus(&answer);
    return NumberOf(answer);
}

LONG Reader::Selection() const {
    VARIANT answer = {};
    m_object->get_accSelection(&answer);
    return NumberOf(answer);
}

std::string Reader::Text(LONG child, HRESULT (STDMETHODCALLTYPE IAccessible::*method)(VARIANT, BSTR*)) const {
    BSTR wide = nullptr;
    (m_object.get()->*method)(Id(child), &wide);
    if (wide == nullptr) return {};
    char text[200] = {};
    ::WideCharToMultiByte(CP_UTF8, 0, wide, -1, text, sizeof text - 1, nullptr, nullptr);
    ::SysFreeString(wide);
    return text;
}
