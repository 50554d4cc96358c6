#include <win/msgbox.h>
#include <win/scripted.h>
#include <win/strings.h>

#include "window_impl.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace win {

namespace {

std::wstring trim(std::wstring_view text) {
    auto first = text.find_first_not_of(L" \t\r");
    if (first == std::wstring_view::npos) return L"";
    auto last = text.find_last_not_of(L" \t\r");
    return std::wstring(text.substr(first, last - first + 1));
}

// Splits "word rest" at the first blank.
std::pair<std::wstring, std::wstring> firstWord(const std::wstring& line) {
    auto blank = line.find_first_of(L" \t");
    if (blank == std::wstring::npos) return {line, L""};
    return {line.substr(0, blank), trim(std::wstring_view(line).substr(blank))};
}

bool isTopLevel(const std::wstring& line) {
    auto [word, rest] = firstWord(line);
    bool keyword = sameText(word, L"dialog") || sameText(word, L"box") || sameText(word, L"file") ||
                   sameText(word, L"folder") || sameText(word, L"progress");
    return keyword && (rest.empty() || rest[0] != L'=');
}

// One line inside a dialog's answers: NAME = VALUE, press NAME, ok, cancel, end NAME.
bool parseStep(const std::wstring& line, DialogAnswer& answer, std::wstring& error) {
    if (auto eq = line.find(L'='); eq != std::wstring::npos) {
        DialogStep step;
        step.control = trim(std::wstring_view(line).substr(0, eq));
        step.value = trim(std::wstring_view(line).substr(eq + 1));
        if (step.control.empty()) {
            error = L"no control before '='";
            return false;
        }
        if (sameText(step.control, L"press")) {
            step.press = true;
            step.control = step.value;
        }
        answer.steps.push_back(step);
        return true;
    }
    auto [word, rest] = firstWord(line);
    if (sameText(word, L"press") && !rest.empty()) {
        answer.steps.push_back({true, rest, L""});
    } else if ((sameText(word, L"ok") || sameText(word, L"cancel")) && rest.empty()) {
        answer.button = sameText(word, L"ok") ? L"OK" : L"Cancel";
    } else if (sameText(word, L"end") && !rest.empty()) {
        answer.button = rest;
    } else {
        error = L"expected NAME = VALUE, press NAME, ok, cancel or end NAME";
        return false;
    }
    return true;
}

bool parseTopLevel(const std::wstring& line, std::deque<Answer>& out, std::wstring& error) {
    auto [word, rest] = firstWord(line);
    if (sameText(word, L"dialog")) {
        DialogAnswer answer;
        if (!rest.empty()) {
            try {
                std::size_t used = 0;
                answer.id = static_cast<UINT>(std::stoul(rest, &used));
                if (used != rest.size()) throw std::invalid_argument("id");
            } catch (const std::exception&) {
                error = L"dialog id \"" + rest + L"\" is not a number";
                return false;
            }
        }
        out.emplace_back(answer);
    } else if (sameText(word, L"box")) {
        BoxAnswer answer;
        if (!sameText(rest, L"default")) {
            answer.button = buttonFromName(rest);
            if (answer.button == 0) {
                error = L"\"" + rest + L"\" is not a message box button";
                return false;
            }
        }
        out.emplace_back(answer);
    } else if (sameText(word, L"file") || sameText(word, L"folder")) {
        PickAnswer answer;
        answer.folder = sameText(word, L"folder");
        if (rest.empty()) {
            error = word + L" needs a path or cancel";
            return false;
        }
        if (!sameText(rest, L"cancel")) answer.path = rest;
        out.emplace_back(answer);
    } else {
        auto [what, count] = firstWord(rest);
        ProgressAnswer answer;
        try {
            answer.cancelAtPump = std::stoi(count);
        } catch (const std::exception&) {
            answer.cancelAtPump = 0;
        }
        if (!sameText(what, L"cancel") || answer.cancelAtPump < 1) {
            error = L"expected progress cancel N, N at least 1";
            return false;
        }
        out.emplace_back(answer);
    }
    return true;
}

} // namespace

ScriptedPresenter::ScriptedPresenter(std::shared_ptr<Presenter> fallback)
    : fallback_(std::move(fallback)) {}

bool ScriptedPresenter::parse(const std::string& text, std::string& error) {
    std::deque<Answer> parsed;
    std::istringstream in(text);
    std::string raw;
    for (int number = 1; std::getline(in, raw); ++number) {
        std::wstring line = fromUtf8(raw);
        if (auto hash = line.find(L'#'); hash != std::wstring::npos) line.resize(hash);
        line = trim(line);
        if (line.empty()) continue;
        std::wstring why;
        bool ok = isTopLevel(line) ? parseTopLevel(line, parsed, why)
                  : !parsed.empty() && std::holds_alternative<DialogAnswer>(parsed.back())
                      ? parseStep(line, std::get<DialogAnswer>(parsed.back()), why)
                      : (why = L"a control's answer outside a dialog section", false);
        if (!ok) {
            error = "line " + std::to_string(number) + ": " + toUtf8(why);
            return false;
        }
    }
    answers_.insert(answers_.end(), parsed.begin(), parsed.end());
    return true;
}

bool ScriptedPresenter::loadFile(const std::string& path, std::string& error) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = path + ": cannot be read";
        return false;
    }
    std::stringstream text;
    text << in.rdbuf();
    if (parse(text.str(), error)) return true;
    error = path + ": " + error;
    return false;
}

void ScriptedPresenter::add(Answer answer) {
    answers_.push_back(std::move(answer));
}

std::optional<DialogAnswer>
ScriptedPresenter::dialogFromOptions(const std::vector<std::wstring>& options,
                                     std::wstring& error) {
    DialogAnswer answer;
    for (const std::wstring& option : options)
        if (!parseStep(trim(option), answer, error)) {
            error = L"\"" + option + L"\": " + error;
            return std::nullopt;
        }
    return answer;
}

template <typename T>
T* ScriptedPresenter::front() {
    return answers_.empty() ? nullptr : std::get_if<T>(&answers_.front());
}

int ScriptedPresenter::messageBox(const MessageBoxRequest& box, AnswerSource& source) {
    int fallback = defaultButton(box.type);
    BoxAnswer* answer = front<BoxAnswer>();
    if (!answer) {
        source = AnswerSource::Default;
        return fallback;
    }
    int button = answer->button;
    answers_.pop_front();
    source = AnswerSource::Script;
    if (button == 0) return fallback;
    auto buttons = buttonsOf(box.type);
    if (std::find(buttons.begin(), buttons.end(), button) == buttons.end()) {
        failures_.push_back(L"message box \"" + box.text + L"\" has no button " +
                            buttonName(button));
        source = AnswerSource::Default;
        return fallback;
    }
    return button;
}

void ScriptedPresenter::giveUp(DialogDriver& dialog, const std::wstring& message) {
    if (fallback_) {
        Transcript::instance().dialog(L"reasked", static_cast<int>(dialog.templateId()),
                                      dialog.caption(), message);
        dialog.setRemark(message);
        fallback_->runModal(dialog);
        return;
    }
    failures_.push_back(dialog.caption() + L": " + message);
    Transcript::instance().dialog(L"failed", static_cast<int>(dialog.templateId()),
                                  dialog.caption(), message, 0, AnswerSource::Script);
    dialog.end(IDCANCEL);
}

void ScriptedPresenter::runModal(DialogDriver& dialog) {
    DialogAnswer answer;
    AnswerSource source = AnswerSource::Default;
    if (DialogAnswer* next = front<DialogAnswer>();
        next && (!next->id || *next->id == dialog.templateId())) {
        answer = *next;
        answers_.pop_front();
        source = AnswerSource::Script;
    }
    for (const DialogStep& step : answer.steps) {
        if (!dialog.open()) return;
        int id = dialog.find(step.control);
        std::wstring error = id == 0      ? L"no control \"" + step.control + L"\""
                             : step.press ? dialog.press(id, source)
                                          : dialog.set(id, step.value, source);
        if (!error.empty()) return giveUp(dialog, error);
    }
    if (!dialog.open()) return;
    int button = sameText(answer.button, L"OK")       ? IDOK
                 : sameText(answer.button, L"Cancel") ? IDCANCEL
                                                      : dialog.find(answer.button);
    if (button == 0) return giveUp(dialog, L"no button \"" + answer.button + L"\"");
    if (std::wstring error = dialog.press(button, source); !error.empty())
        return giveUp(dialog, error);
    if (dialog.open()) {
        auto messages = dialog.lastMessages();
        giveUp(dialog, messages.empty() ? dialog.describe(button) + L" left the dialog open"
                                        : messages.back());
    }
}

std::optional<std::wstring> ScriptedPresenter::pick(bool folder, AnswerSource& source) {
    PickAnswer* answer = front<PickAnswer>();
    if (!answer || answer->folder != folder) {
        source = AnswerSource::Default;
        return std::nullopt;
    }
    std::optional<std::wstring> path = answer->path;
    answers_.pop_front();
    source = AnswerSource::Script;
    return path;
}

std::optional<std::wstring> ScriptedPresenter::chooseFile(const FileRequest&,
                                                          AnswerSource& source) {
    return pick(false, source);
}

std::optional<std::wstring> ScriptedPresenter::chooseFolder(const FolderRequest&,
                                                            AnswerSource& source) {
    return pick(true, source);
}

void ScriptedPresenter::idle() {
    ProgressAnswer* answer = front<ProgressAnswer>();
    if (!answer || modelessDialogs().empty() || ++pumps_ < answer->cancelAtPump) return;
    answers_.pop_front();
    pumps_ = 0;
    detail::pressModelessCancel(AnswerSource::Script);
}

} // namespace win
