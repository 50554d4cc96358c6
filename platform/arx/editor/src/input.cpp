// User input and output: the script input, acedGetString, acedInitGet / acedGetKword,
// acutPrintf and acedAlert.
#include "host.h"

#include <win/transcript.h>

#include <cstdarg>
#include <cwchar>
#include <cwctype>

namespace qelhost {

namespace {

// An input that has nothing: every prompt is cancelled.
class NoInput : public Input {
public:
    std::optional<std::wstring> ask(const std::wstring&, bool) override { return std::nullopt; }
    bool ended() const override { return true; }
};

std::shared_ptr<Input>& currentInput() {
    static std::shared_ptr<Input> input = std::make_shared<NoInput>();
    return input;
}

// Keywords set by acedInitGet for the next acedGetKword.
struct InitGet {
    int flags = 0;
    std::vector<std::wstring> keywords;
};
InitGet& initGet() {
    static InitGet state;
    return state;
}

int copyOut(const std::wstring& text, ACHAR* result, size_t bufLen) {
    if (result == nullptr) return RTERROR;
    if (text.size() + 1 > bufLen) {
        if (bufLen > 0) {
            std::wmemcpy(result, text.c_str(), bufLen - 1);
            result[bufLen - 1] = L'\0';
        }
        return RTINPUTTRUNCATED;
    }
    std::wmemcpy(result, text.c_str(), text.size() + 1);
    return RTNORM;
}

// The host's printf takes wide strings for %s and %c, as its own platform does; the C library
// wants %ls and %lc for those, and %s for narrow ones (%hs in the host's form).
std::wstring wideFormat(const ACHAR* format) {
    std::wstring out;
    for (const ACHAR* p = format; *p != L'\0'; ++p) {
        out += *p;
        if (*p != L'%') continue;
        if (p[1] == L'%') {
            out += *++p;
            continue;
        }
        while (p[1] != L'\0' && std::wcschr(L"-+ #0123456789.*", p[1]))
            out += *++p;
        if (p[1] == L'h' && (p[2] == L's' || p[2] == L'c')) {
            ++p; // narrow: the C library's plain form
        } else if (p[1] == L's' || p[1] == L'c') {
            out += L'l';
        }
    }
    return out;
}

// The buffer size the forms without one assume, as the host's documentation gives it.
constexpr size_t kDefaultBuffer = 133;

} // namespace

ScriptInput::ScriptInput(std::wstring text) : text_(std::move(text)) {}

std::optional<std::wstring> ScriptInput::ask(const std::wstring&, bool wholeLine) {
    if (pos_ >= text_.size()) return std::nullopt;
    // Blanks before a word at the start of an answer are skipped, except that a blank ending
    // the previous word already counted as its end.
    std::size_t end = pos_;
    if (wholeLine) {
        while (end < text_.size() && text_[end] != L'\n')
            ++end;
    } else {
        while (end < text_.size() && text_[end] != L'\n' && text_[end] != L' ' &&
               text_[end] != L'\t')
            ++end;
    }
    std::wstring answer = text_.substr(pos_, end - pos_);
    if (!answer.empty() && answer.back() == L'\r') answer.pop_back();
    if (end < text_.size() && text_[end] == L'\n') ++line_;
    pos_ = end < text_.size() ? end + 1 : end;
    win::Transcript::instance().print(answer + L"\n");
    if (answer == L"\x1b" || answer == L"^C") return std::nullopt;
    return answer;
}

bool ScriptInput::ended() const {
    return pos_ >= text_.size();
}

void setInput(std::shared_ptr<Input> input) {
    currentInput() = input ? std::move(input) : std::make_shared<NoInput>();
}

Input& input() {
    return *currentInput();
}

} // namespace qelhost

using namespace qelhost;

int acedGetString(int cronly, const ACHAR* prompt, ACHAR* result, size_t bufLen) {
    std::optional<std::wstring> answer = askUser(prompt ? prompt : L"", cronly != 0);
    if (!answer) return RTCAN;
    return copyOut(*answer, result, bufLen);
}

int acedGetString(int cronly, const ACHAR* prompt, ACHAR* result) {
    return acedGetString(cronly, prompt, result, kDefaultBuffer);
}

int acedInitGet(int val, const ACHAR* kwl) {
    InitGet& state = initGet();
    state.flags = val;
    state.keywords.clear();
    std::wstring word;
    for (const ACHAR* p = kwl ? kwl : L"";; ++p) {
        if (*p == L'\0' || *p == L' ') {
            if (!word.empty()) state.keywords.push_back(word);
            word.clear();
            if (*p == L'\0') break;
        } else {
            word += *p;
        }
    }
    return RTNORM;
}

int acedGetKword(const ACHAR* prompt, ACHAR* result, size_t bufLen) {
    const InitGet state = initGet();
    initGet() = InitGet{};
    for (;;) {
        std::optional<std::wstring> answer = askUser(prompt ? prompt : L"", false);
        if (!answer) return RTCAN;
        if (answer->empty()) {
            if (state.flags & RSG_NONULL) continue;
            if (result && bufLen > 0) result[0] = L'\0';
            return RTNONE;
        }
        std::wstring given = upper(*answer);
        while (!given.empty() && given.front() == L'_')
            given.erase(0, 1);
        for (const std::wstring& keyword : state.keywords)
            if (!given.empty() && upper(keyword).starts_with(given))
                return copyOut(keyword, result, bufLen);
        win::Transcript::instance().print(L"Invalid option keyword.\n");
        if (input().ended()) return RTERROR;
    }
}

int acedGetKword(const ACHAR* prompt, ACHAR* result) {
    return acedGetKword(prompt, result, kDefaultBuffer);
}

int acutPrintf(const ACHAR* format, ...) {
    if (format == nullptr) return 0;
    const std::wstring wide = wideFormat(format);
    std::va_list args;
    va_start(args, format);
    std::wstring text(256, L'\0');
    for (;;) {
        std::va_list copy;
        va_copy(copy, args);
        const int n = std::vswprintf(text.data(), text.size(), wide.c_str(), copy);
        va_end(copy);
        if (n >= 0) {
            text.resize(std::size_t(n));
            break;
        }
        if (text.size() > (1u << 20)) {
            text.clear();
            break;
        }
        text.resize(text.size() * 4);
    }
    va_end(args);
    win::Transcript::instance().print(text);
    return int(text.size());
}

int acedAlert(const ACHAR* text) {
    win::Transcript::instance().alert(text ? text : L"");
    return RTNORM;
}
