// The terminal side of qelcad: the transcript shown as it comes, and the user's answers read
// line by line (a blank ends an answer, as at the host's command line, unless the prompt takes
// blanks), Escape or Ctrl-C cancelling the prompt.
#pragma once

#include <arx/edhost.h>

#include <iosfwd>

namespace qelcad {

// Shows printed text, alerts and progress of the transcript on out; the answers that the
// input echoes into the transcript are not shown twice. Unattended, message boxes are shown too,
// as the answers gave them, and (unless dialogEvents is false) each dialog event. The number of
// the transcript's listener, for a caller that stops showing before the process ends.
int showTranscript(std::ostream& out, bool unattended, bool dialogEvents = true);

class TerminalInput : public qelhost::Input {
public:
    explicit TerminalInput(std::istream& in);
    std::optional<std::wstring> ask(const std::wstring& prompt, bool wholeLine) override;
    bool ended() const override { return ended_; }
    bool interactive() const override { return true; }

private:
    std::istream& in_;
    bool ended_ = false;
    // What is left of the line typed last, after the answers taken from it.
    std::optional<std::wstring> pending_;
};

// Ctrl-C interrupts the read in progress instead of ending the program.
void catchInterrupt();

} // namespace qelcad
