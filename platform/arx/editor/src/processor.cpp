// Dispatch of commands by name, and acedCommand / acedCmd over a token list.
#include "processor.h"

#include <win/transcript.h>

#include <cstdarg>
#include <cwctype>

namespace qelhost {

namespace {

const Family kFamilies[] = {
    ucsCommands,       layerCommands,     drawCommands,    viewCommands, menuCommands,
    menuStateCommands, hostCommands,      curveCommands,   editCommands, changeCommands,
    solidCommands,     solidEditCommands, inspectCommands,
};

bool echoOn() {
    resbuf value;
    value.restype = RTNONE;
    return acedGetVar(L"CMDECHO", &value) == RTNORM && value.resval.rint != 0;
}

std::wstring describe(const Token& token) {
    switch (token.kind) {
    case Token::kText:
        return token.text;
    case Token::kPoint:
        return std::to_wstring(token.point.x) + L"," + std::to_wstring(token.point.y) + L"," +
               std::to_wstring(token.point.z);
    case Token::kSelection:
        return L"<selection set>";
    case Token::kEntity:
        return L"<entity>";
    case Token::kInteger:
        return std::to_wstring(token.integer);
    case Token::kReal:
        return std::to_wstring(token.real);
    }
    return {};
}

// Runs the commands of a token list one after the other.
int runTokens(std::deque<Token>& tokens) {
    while (!tokens.empty()) {
        const Token head = tokens.front();
        tokens.pop_front();
        if (head.kind != Token::kText) return RTERROR;
        if (head.text.empty()) continue; // Enter at the command prompt with nothing to repeat
        const ProcessorCommand* command = findProcessorCommand(head.text);
        if (command == nullptr) {
            win::Transcript::instance().print(L"\nUnknown command \"" + bareName(head.text) +
                                              L"\".\n");
            return RTERROR;
        }
        if (echoOn()) win::Transcript::instance().print(L"\nCommand: " + head.text + L"\n");
        CommandContext context(&tokens);
        const int status = command->run(context);
        if (status != RTNORM) return status;
    }
    return RTNORM;
}

} // namespace

std::span<const Family> processorFamilies() {
    return kFamilies;
}

std::wstring bareName(std::wstring_view word) {
    while (!word.empty() && (word.front() == L'_' || word.front() == L'.'))
        word.remove_prefix(1);
    return upper(word);
}

int matchOption(std::wstring_view word, std::span<const Option> options) {
    const std::wstring bare = bareName(word);
    if (bare.empty()) return -1;
    for (std::size_t i = 0; i < options.size(); ++i) {
        const std::wstring_view brief = options[i].brief, full = options[i].full;
        if (bare == brief) return int(i);
        if (bare.size() >= brief.size() && full.starts_with(bare)) return int(i);
    }
    return -1;
}

bool parsePoint(std::wstring_view text, AcGePoint3d& point) {
    double values[3] = {0.0, 0.0, 0.0};
    int count = 0;
    std::wstring rest(text);
    const wchar_t* p = rest.c_str();
    while (count < 3) {
        wchar_t* end = nullptr;
        values[count] = std::wcstod(p, &end);
        if (end == p) return false;
        ++count;
        p = end;
        if (*p == L'\0') break;
        if (*p != L',') return false;
        ++p;
    }
    if (*p != L'\0' || count < 2) return false;
    point.set(values[0], values[1], values[2]);
    return true;
}

const ProcessorCommand* findProcessorCommand(std::wstring_view name) {
    const std::wstring bare = bareName(name);
    for (Family family : kFamilies)
        for (const ProcessorCommand& command : family())
            if (bare == command.name) return &command;
    return nullptr;
}

std::optional<Token> CommandContext::next(const std::wstring& prompt, bool wholeLine) {
    if (tokens_ == nullptr) {
        std::optional<std::wstring> answer = askUser(prompt, wholeLine);
        if (!answer) return std::nullopt;
        Token token;
        token.text = *answer;
        return token;
    }
    if (tokens_->empty()) return std::nullopt;
    Token token = tokens_->front();
    tokens_->pop_front();
    if (echoOn()) win::Transcript::instance().print(prompt + describe(token) + L"\n");
    return token;
}

std::optional<std::wstring> CommandContext::word(const std::wstring& prompt, bool wholeLine) {
    std::optional<Token> token = next(prompt, wholeLine);
    if (!token) return std::nullopt;
    if (token->kind == Token::kInteger) return std::to_wstring(token->integer);
    return token->kind == Token::kText ? token->text : L"\x01";
}

CommandContext::Got CommandContext::point(const std::wstring& prompt, AcGePoint3d& point,
                                          std::wstring& word) {
    std::optional<Token> token = next(prompt);
    if (!token) return Got::kCancel;
    if (token->kind == Token::kPoint) {
        point = token->point;
        return Got::kValue;
    }
    if (token->kind != Token::kText) return Got::kInvalid;
    if (token->text.empty()) return Got::kEnter;
    if (parsePoint(token->text, point)) return Got::kValue;
    word = token->text;
    return Got::kWord;
}

CommandContext::Got CommandContext::number(const std::wstring& prompt, double& value) {
    std::optional<Token> token = next(prompt);
    if (!token) return Got::kCancel;
    switch (token->kind) {
    case Token::kInteger:
        value = double(token->integer);
        return Got::kValue;
    case Token::kReal:
        value = token->real;
        return Got::kValue;
    case Token::kText: {
        if (token->text.empty()) return Got::kEnter;
        wchar_t* end = nullptr;
        value = std::wcstod(token->text.c_str(), &end);
        return *end == L'\0' ? Got::kValue : Got::kInvalid;
    }
    default:
        return Got::kInvalid;
    }
}

void CommandContext::invalid(const std::wstring& message) {
    win::Transcript::instance().print(L"\n" + message + L"\n");
}

bool tokensOf(const resbuf* list, std::deque<Token>& tokens, std::wstring& error) {
    for (const resbuf* rb = list; rb != nullptr; rb = rb->rbnext) {
        Token token;
        switch (rb->restype) {
        case RTNONE:
            return true;
        case RTSTR:
            token.text = rb->resval.rstring ? rb->resval.rstring : L"";
            break;
        case RTPOINT:
        case RT3DPOINT:
            token.kind = Token::kPoint;
            token.point.set(rb->resval.rpoint[0], rb->resval.rpoint[1],
                            rb->restype == RTPOINT ? 0.0 : rb->resval.rpoint[2]);
            break;
        case RTPICKS:
        case RTENAME:
            token.kind = rb->restype == RTPICKS ? Token::kSelection : Token::kEntity;
            token.name[0] = rb->resval.rlname[0];
            token.name[1] = rb->resval.rlname[1];
            break;
        case RTSHORT:
            token.kind = Token::kInteger, token.integer = rb->resval.rint;
            break;
        case RTLONG:
            token.kind = Token::kInteger, token.integer = rb->resval.rlong;
            break;
        case RTREAL:
        case RTANG:
        case RTORINT:
            token.kind = Token::kReal, token.real = rb->resval.rreal;
            break;
        default:
            error = L"result type " + std::to_wstring(rb->restype);
            return false;
        }
        tokens.push_back(std::move(token));
    }
    return true;
}

} // namespace qelhost

using namespace qelhost;

int acedCmd(const resbuf* rbp) {
    std::deque<Token> tokens;
    std::wstring error;
    if (!tokensOf(rbp, tokens, error)) {
        win::Transcript::instance().print(L"\nacedCommand: no command takes a " + error + L"\n");
        return RTERROR;
    }
    if (currentDocument() == nullptr) return RTERROR;
    return runTokens(tokens);
}

int acedCommand(int rtype, ...) {
    // The variable arguments become a result-buffer list, the form acedCmd takes.
    std::va_list args;
    va_start(args, rtype);
    resbuf* head = nullptr;
    resbuf** tail = &head;
    bool known = true;
    for (int type = rtype; type != 0 && type != RTNONE; type = va_arg(args, int)) {
        resbuf* rb = acutNewRb(type);
        *tail = rb;
        tail = &rb->rbnext;
        switch (type) {
        case RTSTR: {
            const ACHAR* text = va_arg(args, const ACHAR*);
            rb->resval.rstring = acutNewString(text ? text : L"");
            break;
        }
        case RTPOINT:
        case RT3DPOINT: {
            const double* p = va_arg(args, const double*);
            for (int i = 0; i < 3; ++i)
                rb->resval.rpoint[i] = p[i];
            break;
        }
        case RTPICKS:
        case RTENAME: {
            const Adesk::IntPtr* name = va_arg(args, const Adesk::IntPtr*);
            rb->resval.rlname[0] = name[0];
            rb->resval.rlname[1] = name[1];
            break;
        }
        case RTSHORT:
            rb->resval.rint = short(va_arg(args, int));
            break;
        case RTLONG:
            rb->resval.rlong = va_arg(args, int);
            break;
        case RTREAL:
        case RTANG:
        case RTORINT:
            rb->resval.rreal = va_arg(args, double);
            break;
        default:
            known = false;
            break;
        }
        if (!known) break;
    }
    va_end(args);
    const int status = known ? acedCmd(head) : RTERROR;
    acutRelRb(head);
    return status;
}
