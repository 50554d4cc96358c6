#include "resources.h"

#include <win/msgbox.h>
#include <win/presenter.h>
#include <win/transcript.h>

#include <algorithm>
#include <cwctype>

namespace win {

namespace {

struct ButtonSet {
    UINT type;
    std::vector<int> buttons;
};

const ButtonSet kButtonSets[] = {
    {MB_OK, {IDOK}},
    {MB_OKCANCEL, {IDOK, IDCANCEL}},
    {MB_ABORTRETRYIGNORE, {IDABORT, IDRETRY, IDIGNORE}},
    {MB_YESNOCANCEL, {IDYES, IDNO, IDCANCEL}},
    {MB_YESNO, {IDYES, IDNO}},
    {MB_RETRYCANCEL, {IDRETRY, IDCANCEL}},
    {MB_CANCELTRYCONTINUE, {IDCANCEL, IDTRYAGAIN, IDCONTINUE}},
};

struct ButtonName {
    int id;
    const wchar_t* name;
};

const ButtonName kButtonNames[] = {
    {IDOK, L"OK"},       {IDCANCEL, L"Cancel"},      {IDABORT, L"Abort"},
    {IDRETRY, L"Retry"}, {IDIGNORE, L"Ignore"},      {IDYES, L"Yes"},
    {IDNO, L"No"},       {IDTRYAGAIN, L"Try Again"}, {IDCONTINUE, L"Continue"},
};

std::wstring& appName() {
    static auto* name = new std::wstring(L"qelcad");
    return *name;
}

} // namespace

std::vector<int> buttonsOf(UINT type) {
    for (const ButtonSet& set : kButtonSets)
        if (set.type == (type & MB_TYPEMASK)) return set.buttons;
    return {};
}

int defaultButton(UINT type) {
    std::vector<int> buttons = buttonsOf(type);
    std::size_t index = (type & MB_DEFMASK) >> 8;
    if (buttons.empty()) return 0;
    return buttons[index < buttons.size() ? index : 0];
}

const wchar_t* buttonName(int id) {
    for (const ButtonName& b : kButtonNames)
        if (b.id == id) return b.name;
    return L"?";
}

int buttonFromName(std::wstring_view name) {
    for (const ButtonName& b : kButtonNames) {
        std::wstring_view known = b.name;
        if (known.size() != name.size()) continue;
        bool same = true;
        for (std::size_t i = 0; i < name.size() && same; ++i)
            same = std::towlower(static_cast<wint_t>(known[i])) ==
                   std::towlower(static_cast<wint_t>(name[i]));
        if (same) return b.id;
    }
    return 0;
}

void setApplicationName(std::wstring name) {
    appName() = std::move(name);
}
const std::wstring& applicationName() {
    return appName();
}

} // namespace win

int MessageBoxW(HWND, LPCWSTR text, LPCWSTR caption, UINT type) {
    if (win::buttonsOf(type).empty()) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    win::MessageBoxRequest box{text ? text : L"", caption ? caption : L"Error", type};
    win::AnswerSource source = win::AnswerSource::Default;
    int answer = win::presenter().messageBox(box, source);
    auto buttons = win::buttonsOf(type);
    if (std::find(buttons.begin(), buttons.end(), answer) == buttons.end()) {
        answer = win::defaultButton(type); // a box can only be answered by one of its buttons
        source = win::AnswerSource::Default;
    }
    win::Transcript::instance().messageBox(box.text, box.caption, type, answer, source);
    return answer;
}

int AfxMessageBox(LPCTSTR text, UINT type, UINT) {
    return MessageBoxW(nullptr, text, win::applicationName().c_str(), type);
}

int AfxMessageBox(UINT promptId, UINT type, UINT helpId) {
    const std::wstring* text = win::findString(promptId);
    return AfxMessageBox(text ? text->c_str() : L"", type, helpId);
}
