#include "console.h"

#include <win/strings.h>
#include <win/transcript.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <iostream>

namespace qelcad {

namespace {

// Set while the input echoes an answer the terminal has shown already.
bool echoing = false;
volatile std::sig_atomic_t interrupted = 0;

void onInterrupt(int) {
    interrupted = 1;
}

std::string utf8(const std::wstring& text) {
    return win::toUtf8(text);
}

} // namespace

void showTranscript(std::ostream& out) {
    win::Transcript::instance().addListener([&out](const win::Event& event) {
        switch (event.kind) {
        case win::EventKind::Print:
            if (!echoing) out << utf8(event.text) << std::flush;
            break;
        case win::EventKind::Alert:
            out << "\n** " << utf8(event.text) << " **\n" << std::flush;
            break;
        case win::EventKind::Progress:
            if (!event.text.empty()) out << utf8(event.text) << "\n" << std::flush;
            break;
        default:
            break;
        }
    });
}

TerminalInput::TerminalInput(std::istream& in) : in_(in) {}

std::optional<std::wstring> TerminalInput::ask(const std::wstring&, bool wholeLine) {
    if (ended_) return std::nullopt;
    interrupted = 0;
    std::string line;
    if (!std::getline(in_, line)) {
        if (interrupted) {
            in_.clear();
            std::clearerr(stdin);
            std::cout << "\n";
            return std::nullopt;
        }
        ended_ = true;
        return std::nullopt;
    }
    if (!line.empty() && line.back() == '\r') line.pop_back();
    std::wstring answer = win::fromUtf8(line);
    if (!wholeLine) {
        const auto first = answer.find_first_not_of(L" \t");
        answer = first == std::wstring::npos ? L"" : answer.substr(first);
        answer = answer.substr(0, answer.find_last_not_of(L" \t") + 1);
    }
    echoing = true;
    win::Transcript::instance().print(answer + L"\n");
    echoing = false;
    if (answer.find(L'\x1b') != std::wstring::npos) return std::nullopt;
    return answer;
}

void catchInterrupt() {
    struct sigaction action;
    std::memset(&action, 0, sizeof action);
    action.sa_handler = onInterrupt;
    sigemptyset(&action.sa_mask);
    action.sa_flags = 0; // no restart: the read returns and the prompt is cancelled
    sigaction(SIGINT, &action, nullptr);
}

} // namespace qelcad
