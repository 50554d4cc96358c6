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

int showTranscript(std::ostream& out, bool unattended, bool dialogEvents) {
    return win::Transcript::instance().addListener(
        [&out, unattended, dialogEvents](const win::Event& event) {
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
            case win::EventKind::MessageBox:
                // At the terminal the presenter shows these itself.
                if (unattended) out << "[" << win::describe(event) << "]\n" << std::flush;
                break;
            case win::EventKind::Dialog:
                if (unattended && dialogEvents)
                    out << "[" << win::describe(event) << "]\n" << std::flush;
                break;
            default:
                break;
            }
        });
}

TerminalInput::TerminalInput(std::istream& in) : in_(in) {}

std::optional<std::wstring> TerminalInput::ask(const std::wstring&, bool wholeLine) {
    if (!pending_) {
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
        pending_ = win::fromUtf8(line);
        // The user sees the line as typed; the transcript records it once.
        echoing = true;
        win::Transcript::instance().print(*pending_ + L"\n");
        echoing = false;
    }
    // As at the host's command line, a blank ends an answer unless the prompt takes blanks.
    std::wstring answer = *pending_;
    const auto blank = wholeLine ? std::wstring::npos : answer.find_first_of(L" \t");
    if (blank == std::wstring::npos) {
        pending_.reset();
    } else {
        pending_ = answer.substr(blank + 1);
        answer.resize(blank);
    }
    if (answer.find(L'\x1b') != std::wstring::npos) {
        pending_.reset();
        return std::nullopt;
    }
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
