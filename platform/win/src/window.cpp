#include "window_impl.h"

#include <win/presenter.h>
#include <win/transcript.h>

#include <algorithm>
#include <csignal>
#include <cwchar>
#include <deque>
#include <mutex>
#include <set>

namespace win::detail {

namespace {

std::set<HWND>& live() {
    static auto* windows = new std::set<HWND>;
    return *windows;
}

std::deque<MSG>& queue() {
    static auto* messages = new std::deque<MSG>;
    return *messages;
}

bool isButton(HWND w) {
    return w->role == WindowRole::Control &&
           (w->kind == ControlKind::PushButton || w->kind == ControlKind::CheckBox ||
            w->kind == ControlKind::RadioButton);
}

void destroyTree(HWND window) {
    for (HWND child : window->children)
        destroyTree(child);
    if (window->permanent) window->permanent->m_hWnd = nullptr;
    if (window->temporary) window->temporary->m_hWnd = nullptr;
    std::erase_if(queue(), [window](const MSG& m) { return m.hwnd == window; });
    live().erase(window);
    delete window;
}

void reportProgress(HWND bar) {
    if (bar->upper <= bar->lower) return;
    int percent = static_cast<int>((static_cast<long long>(bar->pos) - bar->lower) * 100 /
                                   (static_cast<long long>(bar->upper) - bar->lower));
    if (percent == bar->percent) return;
    bar->percent = percent;
    Transcript::instance().progress(bar->id, bar->pos, bar->lower, bar->upper, percent);
}

LRESULT setPos(HWND bar, long long pos) {
    int old = bar->pos;
    bar->pos = static_cast<int>(std::clamp<long long>(pos, bar->lower, bar->upper));
    reportProgress(bar);
    return old;
}

LRESULT setRange(HWND bar, int lower, int upper) {
    LRESULT old = MAKELPARAM(static_cast<WORD>(bar->lower), static_cast<WORD>(bar->upper));
    bar->lower = lower;
    bar->upper = upper;
    bar->percent = -1;
    setPos(bar, bar->pos);
    return old;
}

LRESULT copyText(const std::wstring& text, WPARAM size, LPARAM buffer) {
    if (size == 0 || buffer == 0) return 0;
    std::size_t n = std::min<std::size_t>(text.size(), size - 1);
    auto* out = reinterpret_cast<wchar_t*>(buffer);
    std::wmemcpy(out, text.data(), n);
    out[n] = L'\0';
    return static_cast<LRESULT>(n);
}

LRESULT listMessage(HWND w, UINT message, WPARAM wParam, LPARAM lParam, bool combo) {
    auto count = static_cast<int>(w->items.size());
    int index = static_cast<int>(wParam);
    bool inRange = index >= 0 && index < count;
    switch (message) {
    case CB_ADDSTRING:
    case LB_ADDSTRING:
        w->items.emplace_back(reinterpret_cast<LPCWSTR>(lParam));
        return count;
    case CB_RESETCONTENT:
    case LB_RESETCONTENT:
        w->items.clear();
        w->selection = -1;
        if (combo) w->text.clear();
        return 0;
    case CB_GETCOUNT:
    case LB_GETCOUNT:
        return count;
    case CB_GETCURSEL:
    case LB_GETCURSEL:
        return w->selection;
    case CB_SETCURSEL:
    case LB_SETCURSEL:
        w->selection = inRange ? index : -1;
        if (combo) w->text = inRange ? w->items[std::size_t(index)] : L"";
        return inRange ? index : CB_ERR; // -1 also when clearing, as documented
    case CB_GETLBTEXTLEN:
    case LB_GETTEXTLEN:
        return inRange ? static_cast<LRESULT>(w->items[std::size_t(index)].size()) : -1;
    case CB_GETLBTEXT:
    case LB_GETTEXT: {
        if (!inRange) return -1;
        const std::wstring& item = w->items[std::size_t(index)];
        auto* out = reinterpret_cast<wchar_t*>(lParam);
        std::wmemcpy(out, item.c_str(), item.size() + 1);
        return static_cast<LRESULT>(item.size());
    }
    }
    return 0;
}

LRESULT progressMessage(HWND w, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case PBM_SETRANGE: // unsigned 16-bit bounds: larger ones are cut
        return setRange(w, LOWORD(static_cast<DWORD_PTR>(lParam)),
                        HIWORD(static_cast<DWORD_PTR>(lParam)));
    case PBM_SETRANGE32:
        return setRange(w, static_cast<int>(wParam), static_cast<int>(lParam));
    case PBM_SETPOS:
        return setPos(w, static_cast<int>(wParam));
    case PBM_DELTAPOS:
        return setPos(w, static_cast<long long>(w->pos) + static_cast<int>(wParam));
    case PBM_SETSTEP: {
        int old = w->step;
        w->step = static_cast<int>(wParam);
        return old;
    }
    case PBM_STEPIT: {
        // Past the upper bound the bar starts over from the beginning.
        long long next = static_cast<long long>(w->pos) + w->step;
        if (next > w->upper) next = w->lower;
        int old = w->pos;
        setPos(w, next);
        return old;
    }
    case PBM_GETPOS:
        return w->pos;
    case PBM_GETRANGE:
        return wParam ? w->lower : w->upper;
    }
    return 0;
}

} // namespace

bool valid(HWND window) {
    return window && live().count(window);
}

HWND createWindow(WindowRole role, HWND parent, std::wstring text) {
    auto* w = new HWND__;
    w->role = role;
    w->parent = parent;
    w->text = std::move(text);
    live().insert(w);
    return w;
}

HWND createDialog(const DialogTemplate& layout, HWND parent, CWnd* owner) {
    HWND dialog = createWindow(WindowRole::Dialog, parent, layout.caption ? layout.caption : L"");
    dialog->layout = &layout;
    dialog->id = static_cast<int>(layout.id);
    dialog->permanent = owner;
    for (std::size_t i = 0; i < layout.controls.size(); ++i) {
        const ControlTemplate& t = layout.controls[i];
        HWND control = createWindow(WindowRole::Control, dialog, t.text ? t.text : L"");
        control->kind = t.kind;
        control->id = t.id;
        control->style = t.style;
        control->enabled = !(t.style & WS_DISABLED);
        control->index = i;
        dialog->children.push_back(control);
    }
    return dialog;
}

std::vector<HWND> radioGroup(HWND window) {
    std::vector<HWND> group;
    HWND parent = window->parent;
    if (!parent || window->kind != ControlKind::RadioButton) return group;
    auto& all = parent->children;
    auto at = std::find(all.begin(), all.end(), window);
    auto first = at;
    while (first != all.begin() && !((*first)->style & WS_GROUP))
        --first;
    for (auto it = first; it != all.end(); ++it) {
        if (it != first && ((*it)->style & WS_GROUP)) break;
        if ((*it)->kind == ControlKind::RadioButton) group.push_back(*it);
    }
    return group;
}

void notifyParent(HWND control, WORD code) {
    if (control->parent)
        SendMessageW(control->parent, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(control->id), code),
                     reinterpret_cast<LPARAM>(control));
}

void click(HWND control) {
    if (!valid(control) || !control->enabled || !isButton(control)) return;
    if (control->kind == ControlKind::CheckBox) control->check = control->check ? 0 : 1;
    if (control->kind == ControlKind::RadioButton) {
        for (HWND other : radioGroup(control))
            other->check = BST_UNCHECKED;
        control->check = BST_CHECKED;
    }
    notifyParent(control, BN_CLICKED);
}

void leave(HWND control) {
    if (valid(control) && control->kind == ControlKind::Edit) notifyParent(control, EN_KILLFOCUS);
}

LRESULT controlProc(HWND w, UINT message, WPARAM wParam, LPARAM lParam) {
    if (w->role == WindowRole::ToolTip) { // its messages share numbers with the controls'
        if (message == TTM_RELAYEVENT) ++w->relayed;
        return 0;
    }
    switch (message) {
    case WM_SETTEXT:
        w->text = lParam ? reinterpret_cast<LPCWSTR>(lParam) : L"";
        return TRUE;
    case WM_GETTEXT:
        return copyText(w->text, wParam, lParam);
    case WM_GETTEXTLENGTH:
        return static_cast<LRESULT>(w->text.size());
    case WM_LBUTTONUP:
        click(w);
        return 0;
    case BM_CLICK:
        click(w);
        return 0;
    case BM_GETCHECK:
        return w->check;
    case BM_SETCHECK:
        w->check = static_cast<int>(wParam);
        return 0;
    case EM_LIMITTEXT:
        w->limit = wParam ? static_cast<int>(wParam) : 0x7FFFFFFE;
        return 0;
    case EM_GETLIMITTEXT:
        return w->limit;
    }
    if (w->kind == ControlKind::ComboBox && message >= CB_ADDSTRING && message <= CB_SETCURSEL)
        return listMessage(w, message, wParam, lParam, true);
    if (w->kind == ControlKind::ListBox && message >= LB_ADDSTRING && message <= LB_GETCOUNT)
        return listMessage(w, message, wParam, lParam, false);
    if (w->kind == ControlKind::Progress && message > WM_USER && message <= PBM_GETPOS)
        return progressMessage(w, message, wParam, lParam);
    return 0;
}

} // namespace win::detail

using namespace win::detail;

namespace win {

HWND mainWindow() {
    static HWND frame = createWindow(WindowRole::Frame, nullptr, L"qelcad");
    return frame;
}

} // namespace win

BOOL IsWindow(HWND window) {
    return valid(window);
}

BOOL DestroyWindow(HWND window) {
    if (!valid(window) || window == win::mainWindow()) return FALSE;
    if (window->parent) std::erase(window->parent->children, window);
    destroyTree(window);
    return TRUE;
}

HWND GetParent(HWND window) {
    return valid(window) ? window->parent : nullptr;
}

BOOL SetWindowTextW(HWND window, LPCWSTR text) {
    return valid(window) && SendMessageW(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
}

int GetWindowTextW(HWND window, LPWSTR buffer, int maxCount) {
    if (!valid(window) || maxCount <= 0) return 0;
    return static_cast<int>(SendMessageW(window, WM_GETTEXT, static_cast<WPARAM>(maxCount),
                                         reinterpret_cast<LPARAM>(buffer)));
}

int GetWindowTextLengthW(HWND window) {
    return valid(window) ? static_cast<int>(window->text.size()) : 0;
}

BOOL EnableWindow(HWND window, BOOL enable) {
    if (!valid(window)) return FALSE;
    BOOL wasDisabled = !window->enabled;
    window->enabled = enable != FALSE;
    return wasDisabled;
}

BOOL IsWindowEnabled(HWND window) {
    return valid(window) && window->enabled;
}

BOOL ShowWindow(HWND window, int command) {
    if (!valid(window)) return FALSE;
    BOOL wasVisible = window->visible;
    window->visible = command != SW_HIDE;
    return wasVisible;
}

BOOL IsWindowVisible(HWND window) {
    return valid(window) && window->visible;
}

HWND GetDlgItem(HWND dialog, int id) {
    if (!valid(dialog)) return nullptr;
    for (HWND child : dialog->children)
        if (child->role == WindowRole::Control && child->id == id) return child;
    return nullptr;
}

int GetDlgCtrlID(HWND window) {
    return valid(window) ? window->id : 0;
}

BOOL SetDlgItemTextW(HWND dialog, int id, LPCWSTR text) {
    HWND item = GetDlgItem(dialog, id);
    return item ? SetWindowTextW(item, text) : FALSE;
}

UINT GetDlgItemTextW(HWND dialog, int id, LPWSTR buffer, int maxCount) {
    HWND item = GetDlgItem(dialog, id);
    if (!item) {
        if (buffer && maxCount > 0) buffer[0] = L'\0';
        return 0;
    }
    return static_cast<UINT>(GetWindowTextW(item, buffer, maxCount));
}

BOOL CheckDlgButton(HWND dialog, int id, UINT check) {
    HWND item = GetDlgItem(dialog, id);
    if (!item) return FALSE;
    SendMessageW(item, BM_SETCHECK, check, 0);
    return TRUE;
}

UINT IsDlgButtonChecked(HWND dialog, int id) {
    HWND item = GetDlgItem(dialog, id);
    return item ? static_cast<UINT>(SendMessageW(item, BM_GETCHECK, 0, 0)) : 0;
}

BOOL CheckRadioButton(HWND dialog, int first, int last, int check) {
    if (!valid(dialog)) return FALSE;
    for (HWND child : dialog->children)
        if (child->role == WindowRole::Control && child->id >= first && child->id <= last)
            SendMessageW(child, BM_SETCHECK, child->id == check ? BST_CHECKED : BST_UNCHECKED, 0);
    return TRUE;
}

LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (!valid(window)) return 0;
    if (window->permanent) return window->permanent->WindowProc(message, wParam, lParam);
    if (window->role == WindowRole::Control || window->role == WindowRole::ToolTip)
        return controlProc(window, message, wParam, lParam);
    if (message == WM_SETTEXT) return controlProc(window, message, wParam, lParam);
    if (message == WM_GETTEXT || message == WM_GETTEXTLENGTH)
        return controlProc(window, message, wParam, lParam);
    return 0;
}

BOOL PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (window && !valid(window)) return FALSE;
    MSG msg;
    msg.hwnd = window;
    msg.message = message;
    msg.wParam = wParam;
    msg.lParam = lParam;
    queue().push_back(msg);
    return TRUE;
}

namespace {

volatile std::sig_atomic_t cancelRequested = 0;

// A pending cancel request becomes a click on the newest modeless dialog's Cancel button.
void postRequestedCancel() {
    if (cancelRequested && win::detail::pressModelessCancel(win::AnswerSource::User))
        cancelRequested = 0;
}

} // namespace

bool win::detail::pressModelessCancel(AnswerSource source) {
    std::vector<HWND> dialogs = win::modelessDialogs();
    if (dialogs.empty()) return false;
    if (HWND cancel = GetDlgItem(dialogs.back(), IDCANCEL)) {
        win::Transcript::instance().dialog(L"pressed", dialogs.back()->id, dialogs.back()->text,
                                           L"Cancel (2)", 0, source);
        PostMessageW(cancel, WM_LBUTTONUP, 0, 0);
    }
    return true;
}

void win::requestCancel() {
    cancelRequested = 1;
}

BOOL PeekMessageW(LPMSG msg, HWND window, UINT filterMin, UINT filterMax, UINT remove) {
    postRequestedCancel();
    auto matches = [&](const MSG& m) {
        bool inWindow = !window || m.hwnd == window || (valid(m.hwnd) && m.hwnd->parent == window);
        bool inRange = (filterMin == 0 && filterMax == 0) ||
                       (m.message >= filterMin && m.message <= filterMax);
        return inWindow && inRange;
    };
    if (std::none_of(queue().begin(), queue().end(), matches)) win::presenter().idle();
    auto found = std::find_if(queue().begin(), queue().end(), matches);
    if (found == queue().end()) return FALSE;
    if (msg) *msg = *found;
    if (remove & PM_REMOVE) queue().erase(found);
    return TRUE;
}

BOOL TranslateMessage(const MSG*) {
    return FALSE;
}

LRESULT DispatchMessageW(const MSG* msg) {
    if (!msg || !valid(msg->hwnd)) return 0;
    return SendMessageW(msg->hwnd, msg->message, msg->wParam, msg->lParam);
}

BOOL IsDialogMessageW(HWND dialog, LPMSG msg) {
    if (!valid(dialog) || !msg || !valid(msg->hwnd)) return FALSE;
    if (msg->hwnd != dialog && msg->hwnd->parent != dialog) return FALSE;
    DispatchMessageW(msg);
    return TRUE;
}
