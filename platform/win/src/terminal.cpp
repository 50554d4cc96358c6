#include <win/msgbox.h>
#include <win/strings.h>
#include <win/terminal.h>

#include <cerrno>
#include <cstdio>
#include <istream>
#include <ostream>

namespace win {

namespace {

std::wstring trim(const std::wstring& text) {
    auto first = text.find_first_not_of(L" \t\r");
    if (first == std::wstring::npos) return L"";
    return text.substr(first, text.find_last_not_of(L" \t\r") - first + 1);
}

std::wstring idColumn(int id) {
    std::wstring column = id == IDC_STATIC ? L"" : std::to_wstring(id);
    return L"  " + column + std::wstring(column.size() < 6 ? 6 - column.size() : 1, L' ');
}

std::wstring line(const ControlState& c) {
    std::wstring text;
    switch (c.kind) {
    case ControlKind::GroupBox:
        return L"  " + c.label + L":\n";
    case ControlKind::Static:
        if (c.id == IDC_STATIC) return L""; // a label: shown with its field
        text = c.text;
        break;
    case ControlKind::Edit:
        text = c.label + L": [" + c.text + L"]";
        break;
    case ControlKind::PushButton:
        text = L"<" + c.label + L">";
        break;
    case ControlKind::CheckBox:
        text = (c.check ? L"[x] " : L"[ ] ") + c.label;
        break;
    case ControlKind::RadioButton:
        text = (c.check ? L"(*) " : L"( ) ") + c.label;
        break;
    case ControlKind::ComboBox:
    case ControlKind::ListBox: {
        text = c.label + L": " +
               (c.kind == ControlKind::ComboBox ? c.text
                : c.selection >= 0              ? c.items[std::size_t(c.selection)]
                                                : std::wstring());
        std::wstring choices;
        for (const std::wstring& item : c.items)
            choices += (choices.empty() ? L"" : L" | ") + item;
        if (!choices.empty()) text += L"  {" + choices + L"}";
        break;
    }
    case ControlKind::Progress:
        text = c.label + L": " + std::to_wstring(c.pos) + L" of " + std::to_wstring(c.lower) +
               L".." + std::to_wstring(c.upper);
        break;
    }
    if (!c.key.empty()) text += L"  [" + c.key + L"]";
    if (!c.enabled) text += L"  (disabled)";
    if (!c.tip.empty()) text += L"  - " + c.tip;
    return idColumn(c.id) + text + L"\n";
}

// The lines of `now` that differ from `before`: what an action changed.
std::wstring changedLines(const std::wstring& before, const std::wstring& now) {
    auto split = [](const std::wstring& text) {
        std::vector<std::wstring> lines;
        std::size_t start = 0;
        for (std::size_t end; (end = text.find(L'\n', start)) != std::wstring::npos;
             start = end + 1)
            lines.push_back(text.substr(start, end - start + 1));
        return lines;
    };
    std::vector<std::wstring> old = split(before), fresh = split(now);
    if (old.size() != fresh.size()) return now;
    std::wstring out;
    for (std::size_t i = 0; i < fresh.size(); ++i)
        if (fresh[i] != old[i]) out += fresh[i];
    return out;
}

// A line holding the Escape character: the key that closes a dialog or box on screen.
bool isEscape(const std::wstring& answer) {
    return answer.find(L'\x1b') != std::wstring::npos;
}

// What Escape answers in a box: Cancel, or OK when it is the only button; 0 when the box has
// neither (Yes / No), which Escape does not close.
int escapeButton(const std::vector<int>& buttons) {
    for (int b : buttons)
        if (b == IDCANCEL) return b;
    return buttons.size() == 1 && buttons[0] == IDOK ? IDOK : 0;
}

} // namespace

TerminalPresenter::TerminalPresenter(std::istream& in, std::ostream& out) : in_(in), out_(out) {}

void TerminalPresenter::say(const std::wstring& text) {
    out_ << toUtf8(text) << std::flush;
}

bool TerminalPresenter::ask(const std::wstring& prompt, std::wstring& answer) {
    say(prompt);
    std::string raw;
    errno = 0;
    if (!std::getline(in_, raw)) {
        say(L"\n");
        // Ctrl-C interrupted the read: the stream is not at its end, and the answer is Escape.
        if (errno == EINTR) {
            in_.clear();
            std::clearerr(stdin);
            answer = L"\x1b";
            return true;
        }
        return false;
    }
    answer = trim(fromUtf8(raw));
    return true;
}

std::wstring TerminalPresenter::render(const DialogDriver& dialog) {
    std::wstring text = L"-- " + dialog.caption() + L" --\n";
    for (const ControlState& c : dialog.controls())
        if (c.visible) text += line(c);
    return text;
}

int TerminalPresenter::messageBox(const MessageBoxRequest& box, AnswerSource& source) {
    std::vector<int> buttons = buttonsOf(box.type);
    int fallback = defaultButton(box.type);
    std::wstring choices;
    for (int b : buttons)
        choices += (choices.empty() ? L"" : L" / ") + std::wstring(buttonName(b));
    say(L"\n[" + box.caption + L"] " + box.text + L"\n");
    for (;;) {
        std::wstring answer;
        if (!ask(choices + L" (Enter: " + buttonName(fallback) + L")? ", answer)) {
            source = AnswerSource::Default;
            return fallback;
        }
        source = AnswerSource::User;
        if (answer.empty()) return fallback;
        if (isEscape(answer)) {
            if (int b = escapeButton(buttons)) return b;
        } else {
            for (int b : buttons) {
                std::wstring name = buttonName(b);
                if (sameText(answer, name) || sameText(answer, name.substr(0, answer.size())))
                    return b;
            }
        }
        say(L"Please answer " + choices + L".\n");
    }
}

void TerminalPresenter::runModal(DialogDriver& dialog) {
    if (!dialog.remark().empty()) say(L"! " + dialog.remark() + L"\n");
    std::wstring shown = render(dialog);
    say(shown);
    say(L"Change a field with NAME = VALUE; press a button by its number or name; OK; Cancel; "
        L"? shows the dialog again.\n");
    while (dialog.open()) {
        std::wstring answer;
        if (!ask(L"dialog> ", answer) || isEscape(answer)) {
            dialog.press(IDCANCEL, AnswerSource::Default);
            if (dialog.open()) dialog.end(IDCANCEL);
            return;
        }
        if (answer.empty()) continue;
        if (answer == L"?") {
            say(shown = render(dialog));
            continue;
        }
        std::wstring error;
        if (auto eq = answer.find(L'='); eq != std::wstring::npos) {
            std::wstring name = trim(answer.substr(0, eq));
            int id = dialog.find(name);
            error = id ? dialog.set(id, trim(answer.substr(eq + 1)), AnswerSource::User)
                       : L"no control \"" + name + L"\"";
        } else {
            int id = sameText(answer, L"ok")       ? IDOK
                     : sameText(answer, L"cancel") ? IDCANCEL
                                                   : dialog.find(answer);
            error = id ? dialog.press(id, AnswerSource::User) : L"no button \"" + answer + L"\"";
        }
        if (!error.empty()) {
            say(L"! " + error + L"\n");
        } else if (dialog.open()) {
            std::wstring now = render(dialog);
            say(changedLines(shown, now));
            shown = now;
        }
    }
}

std::optional<std::wstring> TerminalPresenter::choosePath(const std::wstring& what,
                                                          const std::wstring& start,
                                                          AnswerSource& source) {
    std::wstring answer;
    std::wstring hint = start.empty() ? L"" : L"Enter: " + start + L", ";
    if (!ask(what + L" (" + hint + L"cancel to cancel): ", answer) || isEscape(answer) ||
        sameText(answer, L"cancel")) {
        source = AnswerSource::Default;
        return std::nullopt;
    }
    source = AnswerSource::User;
    if (answer.empty()) {
        if (start.empty()) return std::nullopt;
        return start;
    }
    return answer;
}

std::optional<std::wstring> TerminalPresenter::chooseFile(const FileRequest& request,
                                                          AnswerSource& source) {
    std::wstring what =
        request.title.empty() ? (request.open ? L"Open file" : L"Save file as") : request.title;
    if (!request.filter.empty()) what += L" [" + request.filter + L"]";
    return choosePath(what, request.fileName, source);
}

std::optional<std::wstring> TerminalPresenter::chooseFolder(const FolderRequest& request,
                                                            AnswerSource& source) {
    return choosePath(request.title.empty() ? L"Folder" : request.title, L"", source);
}

} // namespace win
