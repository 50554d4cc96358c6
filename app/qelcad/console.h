// The terminal side of qelcad: the transcript shown as it comes, and the user's answers read
// line by line, Escape or Ctrl-C cancelling the prompt.
#pragma once

#include <arx/edhost.h>

#include <iosfwd>

namespace qelcad {

// Shows printed text, alerts and progress of the transcript on out; the answers that the
// input echoes into the transcript are not shown twice.
void showTranscript(std::ostream& out);

class TerminalInput : public qelhost::Input {
public:
    explicit TerminalInput(std::istream& in);
    std::optional<std::wstring> ask(const std::wstring& prompt, bool wholeLine) override;
    bool ended() const override { return ended_; }

private:
    std::istream& in_;
    bool ended_ = false;
};

// Ctrl-C interrupts the read in progress instead of ending the program.
void catchInterrupt();

} // namespace qelcad
