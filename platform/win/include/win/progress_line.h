// The face of a modeless progress dialog at a terminal: one line, redrawn in place, with what
// the dialog says, a bar, the percentage, the time spent and the time left.
#pragma once

#include <win/presenter.h>

#include <chrono>
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>

namespace win {

// What the newest modeless dialog shows: its texts (caption, then the static texts that are not
// empty, in template order, joined by blanks) and the percentage of its first progress bar, or
// nothing when no modeless dialog with a progress bar is up.
struct ProgressState {
    std::wstring text;
    int percent = 0;
};
std::optional<ProgressState> modelessProgress();

// The line for a state, at most `width` columns: the text (cut to fit), a bar, the percentage,
// the time spent and, once there is some progress to go by, the time left (m:ss or h:mm:ss).
std::string progressLine(const std::wstring& text, int percent, double elapsedSeconds,
                         std::size_t width);

// Plays another presenter, and at each pump of messages under a modeless progress dialog draws
// its line on `out` (at most ten times a second), after a carriage return; the line is wiped
// before anything else is shown (printed text, alerts, message boxes, dialogs) and when the
// dialog goes. When `cancelKey` says the user pressed the key that cancels, the dialog's Cancel
// is pressed, as a click on it would.
class ProgressLinePresenter : public Presenter {
public:
    using Clock = std::chrono::steady_clock;

    ProgressLinePresenter(std::shared_ptr<Presenter> inner, std::ostream& out, std::size_t width,
                          std::function<bool()> cancelKey = {});
    ~ProgressLinePresenter() override;

    int messageBox(const MessageBoxRequest& box, AnswerSource& source) override;
    void runModal(DialogDriver& dialog) override;
    std::optional<std::wstring> chooseFile(const FileRequest& request,
                                           AnswerSource& source) override;
    std::optional<std::wstring> chooseFolder(const FolderRequest& request,
                                             AnswerSource& source) override;
    void idle() override;

    // The time the presenter goes by; a test sets its own.
    void setClock(std::function<Clock::time_point()> now) { now_ = std::move(now); }

private:
    void wipe();

    std::shared_ptr<Presenter> inner_;
    std::ostream& out_;
    std::size_t width_;
    std::function<bool()> cancelKey_;
    std::function<Clock::time_point()> now_ = [] { return Clock::now(); };
    int listener_ = 0;
    std::optional<Clock::time_point> started_; // when the dialog was first seen
    std::optional<Clock::time_point> drawn_;   // when the line was last drawn
    std::size_t shownWidth_ = 0;               // columns of the line on screen, 0 when wiped
};

} // namespace win
