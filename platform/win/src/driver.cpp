#include "window_impl.h"

#include <win/presenter.h>
#include <win/transcript.h>

#include <cwctype>

namespace win {

bool sameText(std::wstring_view a, std::wstring_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (std::towlower(static_cast<wint_t>(a[i])) != std::towlower(static_cast<wint_t>(b[i])))
            return false;
    return true;
}

std::optional<bool> parseSwitch(std::wstring_view word) {
    for (const wchar_t* on : {L"on", L"yes", L"true", L"1", L"checked"})
        if (sameText(word, on)) return true;
    for (const wchar_t* off : {L"off", L"no", L"false", L"0", L"unchecked"})
        if (sameText(word, off)) return false;
    return std::nullopt;
}

DialogDriver::DialogDriver(CDialog& dialog)
    : dialog_(dialog), actionMark_(Transcript::instance().size()) {}

UINT DialogDriver::templateId() const {
    return dialog_.templateId();
}

std::wstring DialogDriver::caption() const {
    return detail::valid(dialog_.m_hWnd) ? dialog_.m_hWnd->text : L"";
}

std::vector<ControlState> DialogDriver::controls() const {
    std::vector<ControlState> out;
    HWND dialog = dialog_.m_hWnd;
    if (!detail::valid(dialog)) return out;
    for (HWND w : dialog->children) {
        if (w->role != WindowRole::Control) continue;
        const ControlTemplate& t = dialog->layout->controls[w->index];
        ControlState c;
        c.kind = w->kind;
        c.id = w->id;
        c.label = labelOf(*dialog->layout, w->index);
        c.key = t.key ? t.key : L"";
        c.text = w->text;
        c.tip = w->tip;
        c.enabled = w->enabled;
        c.visible = w->visible;
        c.groupStart = (w->style & WS_GROUP) != 0;
        c.check = w->check;
        c.items = w->items;
        c.selection = w->selection;
        c.limit = w->limit;
        c.pos = w->pos;
        c.lower = w->lower;
        c.upper = w->upper;
        out.push_back(std::move(c));
    }
    return out;
}

std::optional<ControlState> DialogDriver::control(int id) const {
    for (ControlState& c : controls())
        if (c.id == id) return c;
    return std::nullopt;
}

int DialogDriver::find(std::wstring_view name) const {
    auto all = controls();
    for (const ControlState& c : all)
        if (c.id != IDC_STATIC && std::to_wstring(c.id) == name) return c.id;
    for (const ControlState& c : all)
        if (c.id != IDC_STATIC && !c.key.empty() && sameText(c.key, name)) return c.id;
    for (const ControlState& c : all)
        if (c.id != IDC_STATIC && c.kind != ControlKind::Static &&
            c.kind != ControlKind::GroupBox && sameText(c.label, name))
            return c.id;
    return 0;
}

std::wstring DialogDriver::describe(int id) const {
    auto c = control(id);
    std::wstring label = c && !c->label.empty() ? c->label + L" " : L"";
    return label + L"(" + std::to_wstring(id) + L")";
}

HWND DialogDriver::window(int id) const {
    return ::GetDlgItem(dialog_.m_hWnd, id);
}

std::wstring DialogDriver::setRadio(HWND control, const std::wstring& value) {
    HWND target = nullptr;
    if (auto on = parseSwitch(value)) {
        if (!*on) return describe(control->id) + L": a radio is cleared by choosing another";
        target = control;
    } else {
        for (HWND radio : detail::radioGroup(control)) {
            const ControlTemplate& t = dialog_.m_hWnd->layout->controls[radio->index];
            if (sameText(labelOf(*dialog_.m_hWnd->layout, radio->index), value) ||
                (t.key && sameText(t.key, value)) || std::to_wstring(radio->id) == value)
                target = radio;
        }
        if (!target) return describe(control->id) + L": no choice \"" + value + L"\"";
    }
    if (!target->enabled) return describe(target->id) + L" is disabled";
    MSG msg;
    msg.hwnd = target;
    msg.message = WM_LBUTTONUP;
    if (!dialog_.PreTranslateMessage(&msg)) ::DispatchMessageW(&msg);
    return L"";
}

std::wstring DialogDriver::choose(HWND control, const std::wstring& value) {
    bool combo = control->kind == ControlKind::ComboBox;
    int index = -1;
    for (std::size_t i = 0; i < control->items.size() && index < 0; ++i)
        if (sameText(control->items[i], value)) index = static_cast<int>(i);
    if (index < 0 && value.size() > 1 && value[0] == L'#') {
        try {
            index = std::stoi(value.substr(1));
        } catch (const std::exception&) {
            index = -1;
        }
        if (index >= static_cast<int>(control->items.size())) index = -1;
    }
    if (index < 0) {
        if (combo && (control->style & CBS_DROPDOWNLIST) == CBS_DROPDOWN) {
            control->text = value; // typed into the combo's own edit
            control->selection = -1;
            return L"";
        }
        return describe(control->id) + L": no item \"" + value + L"\"";
    }
    ::SendMessageW(control, combo ? CB_SETCURSEL : LB_SETCURSEL, static_cast<WPARAM>(index), 0);
    detail::notifyParent(control, combo ? CBN_SELCHANGE : LBN_SELCHANGE);
    return L"";
}

std::wstring DialogDriver::set(int id, const std::wstring& value, AnswerSource source) {
    HWND control = window(id);
    if (!control) return L"no control " + std::to_wstring(id);
    actionMark_ = Transcript::instance().size();
    // A radio group is named by any of its radios; the one chosen must be enabled.
    if (!control->enabled && control->kind != ControlKind::RadioButton)
        return describe(id) + L" is disabled";
    std::optional<bool> on = parseSwitch(value);
    switch (control->kind) {
    case ControlKind::Edit:
        if (value.size() > static_cast<std::size_t>(control->limit))
            return describe(id) + L" takes at most " + std::to_wstring(control->limit) +
                   L" characters";
        break;
    case ControlKind::CheckBox:
        if (!on) return describe(id) + L": \"" + value + L"\" is not on or off";
        break;
    case ControlKind::RadioButton:
    case ControlKind::ComboBox:
    case ControlKind::ListBox:
        break;
    default:
        return describe(id) + L" can't be changed";
    }
    Transcript::instance().dialog(L"set", static_cast<int>(templateId()), caption(),
                                  describe(id) + L" = " + value, 0, source);
    MSG click;
    click.hwnd = control;
    click.message = WM_LBUTTONUP;
    switch (control->kind) {
    case ControlKind::Edit:
        ::SetWindowTextW(control, value.c_str());
        detail::notifyParent(control, EN_CHANGE);
        detail::leave(control);
        return L"";
    case ControlKind::CheckBox:
        if ((control->check == BST_CHECKED) != *on && !dialog_.PreTranslateMessage(&click))
            ::DispatchMessageW(&click);
        return L"";
    case ControlKind::RadioButton:
        return setRadio(control, value);
    default:
        return choose(control, value);
    }
}

std::wstring DialogDriver::press(int id, AnswerSource source) {
    HWND control = window(id);
    actionMark_ = Transcript::instance().size();
    if (!control) return L"no control " + std::to_wstring(id);
    if (!control->enabled) return describe(id) + L" is disabled";
    if (control->kind != ControlKind::PushButton && control->kind != ControlKind::CheckBox &&
        control->kind != ControlKind::RadioButton)
        return describe(id) + L" is not a button";
    Transcript::instance().dialog(L"pressed", static_cast<int>(templateId()), caption(),
                                  describe(id), 0, source);
    MSG msg;
    msg.hwnd = control;
    msg.message = WM_LBUTTONUP;
    if (!dialog_.PreTranslateMessage(&msg)) ::DispatchMessageW(&msg);
    return L"";
}

bool DialogDriver::open() const {
    return !dialog_.ended();
}
int DialogDriver::result() const {
    return dialog_.modalResult();
}
void DialogDriver::end(int result) {
    dialog_.EndDialog(result);
}

std::vector<std::wstring> DialogDriver::lastMessages() const {
    std::vector<std::wstring> out;
    for (const Event& e : Transcript::instance().events(actionMark_))
        if (e.kind == EventKind::MessageBox) out.push_back(e.text);
    return out;
}

} // namespace win
