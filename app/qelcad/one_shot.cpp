#include "one_shot.h"

#include "console.h"

#include <win/progress_line.h>
#include <win/transcript.h>

#include <csignal>
#include <cstring>
#include <iostream>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace qelcad {

namespace {

constexpr std::size_t kDefaultWidth = 80;

void onInterrupt(int) {
    win::requestCancel();
}

std::size_t terminalWidth() {
    winsize size{};
    if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1) return size.ws_col - 1;
    return kDefaultWidth;
}

// Escape typed at the terminal, read without waiting for a line end.
bool escapePressed() {
    pollfd in{STDIN_FILENO, POLLIN, 0};
    while (poll(&in, 1, 0) > 0 && (in.revents & POLLIN)) {
        char c = 0;
        if (read(STDIN_FILENO, &c, 1) != 1) return false;
        if (c == '\x1b') return true;
    }
    return false;
}

} // namespace

// The terminal's modes and the Ctrl-C handler as they were before the session.
struct OneShotSession::Terminal {
    bool keys = false; // standard input was switched to single keys
    termios saved{};
    struct sigaction interrupt {};
};

OneShotSession::OneShotSession(std::shared_ptr<win::Presenter> answers, bool verbose,
                               std::ostream& shown)
    : terminal_(std::make_unique<Terminal>()) {
    if (!isatty(STDERR_FILENO)) {
        shown_ = showTranscript(shown, true, verbose);
        win::setPresenter(std::move(answers));
        return;
    }
    struct sigaction action;
    std::memset(&action, 0, sizeof action);
    action.sa_handler = onInterrupt;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, &terminal_->interrupt);
    std::function<bool()> cancelKey;
    if (isatty(STDIN_FILENO) && tcgetattr(STDIN_FILENO, &terminal_->saved) == 0) {
        termios keys = terminal_->saved;
        keys.c_lflag &= ~tcflag_t(ICANON | ECHO);
        keys.c_cc[VMIN] = 0;
        keys.c_cc[VTIME] = 0;
        terminal_->keys = tcsetattr(STDIN_FILENO, TCSANOW, &keys) == 0;
        if (terminal_->keys) cancelKey = escapePressed;
    }
    win::setPresenter(std::make_shared<win::ProgressLinePresenter>(std::move(answers), std::cerr,
                                                                   terminalWidth(), cancelKey));
    // After the presenter: its line is wiped before anything is shown.
    shown_ = showTranscript(shown, true, verbose);
}

OneShotSession::~OneShotSession() {
    win::Transcript::instance().removeListener(shown_);
    // The progress line goes with its presenter.
    win::setPresenter(nullptr);
    if (!isatty(STDERR_FILENO)) return;
    if (terminal_->keys) tcsetattr(STDIN_FILENO, TCSANOW, &terminal_->saved);
    sigaction(SIGINT, &terminal_->interrupt, nullptr);
}

} // namespace qelcad
