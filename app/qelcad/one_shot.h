// What a one-shot conversion (import, export) shows at the terminal. Standard output gets what
// the commands print, alerts, message boxes and the summary; the dialog events of the scripted
// answers only with --verbose (the --transcript file has them all). While a progress dialog is
// up and standard error is a terminal, its line is drawn there, and Escape or Ctrl-C presses its
// Cancel.
#pragma once

#include <win/presenter.h>

#include <iostream>
#include <memory>

namespace qelcad {

class OneShotSession {
public:
    // Installs the presenter that answers from `answers` (with the progress line, at a
    // terminal) and shows the transcript on `shown` (standard error where standard output
    // carries data).
    OneShotSession(std::shared_ptr<win::Presenter> answers, bool verbose,
                   std::ostream& shown = std::cout);
    // Puts the terminal and Ctrl-C back as they were.
    ~OneShotSession();

    OneShotSession(const OneShotSession&) = delete;
    OneShotSession& operator=(const OneShotSession&) = delete;

private:
    struct Terminal;
    std::unique_ptr<Terminal> terminal_;
    int shown_ = 0; // the transcript's listener that shows it: one session, one showing
};

} // namespace qelcad
