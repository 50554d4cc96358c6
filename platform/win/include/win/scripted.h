// The scripted presenter: answers dialogs, message boxes and pickers from a list, in order.
//
// Answers file (UTF-8; '#' starts a comment):
//
//   dialog 1004             answers for the next dialog (the id is optional; with it, the
//     file = out.qel        answers wait for that dialog). Controls by key, id or label.
//     scope = Export Visible Objects
//     press 1001            press a button on the way
//     ok                    the button that ends the answers: ok (the default), cancel, or
//                           "end NAME" for any other button
//   box yes                 the next message box: ok, cancel, yes, no, abort, retry, ignore,
//                           or default
//   file /data/in.qel       the next file dialog; "file cancel" cancels it
//   folder /data/logs       the next folder dialog; "folder cancel"
//   progress cancel 3       the third pump of messages under a modeless dialog presses its Cancel
//
// A dialog without answers is accepted as it opened (its OK is pressed); a box without answer
// gets its default button; a picker without answer is cancelled. A dialog that stays open after
// the answers (its OK handler refused them) is handed to the fallback presenter when there is
// one, which shows the message and asks again; without one the dialog is cancelled and the
// message becomes a failure that the host reports.
#pragma once

#include <win/presenter.h>

#include <deque>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace win {

struct DialogStep {
    bool press = false; // else: set control to value
    std::wstring control;
    std::wstring value;
};

struct DialogAnswer {
    std::optional<UINT> id;
    std::vector<DialogStep> steps;
    std::wstring button = L"OK";
};

struct BoxAnswer {
    int button = 0; // 0: the box's default button
};

struct PickAnswer {
    bool folder = false;
    std::optional<std::wstring> path; // none: cancel
};

struct ProgressAnswer {
    int cancelAtPump = 1;
};

using Answer = std::variant<DialogAnswer, BoxAnswer, PickAnswer, ProgressAnswer>;

class ScriptedPresenter : public Presenter {
public:
    explicit ScriptedPresenter(std::shared_ptr<Presenter> fallback = nullptr);

    // Appends the answers of a file's text; false with "line N: why" in error.
    bool parse(const std::string& text, std::string& error);
    bool loadFile(const std::string& path, std::string& error);
    void add(Answer answer);
    // The answer for a dialog from options such as "file=x.qel", "ok", "cancel", "press=1030".
    static std::optional<DialogAnswer> dialogFromOptions(const std::vector<std::wstring>& options,
                                                         std::wstring& error);

    std::size_t pending() const { return answers_.size(); }
    bool failed() const { return !failures_.empty(); }
    const std::vector<std::wstring>& failures() const { return failures_; }

    int messageBox(const MessageBoxRequest& box, AnswerSource& source) override;
    void runModal(DialogDriver& dialog) override;
    std::optional<std::wstring> chooseFile(const FileRequest& request,
                                           AnswerSource& source) override;
    std::optional<std::wstring> chooseFolder(const FolderRequest& request,
                                             AnswerSource& source) override;
    void idle() override;

private:
    template <typename T>
    T* front();
    void giveUp(DialogDriver& dialog, const std::wstring& message);
    std::optional<std::wstring> pick(bool folder, AnswerSource& source);

    std::shared_ptr<Presenter> fallback_;
    std::deque<Answer> answers_;
    std::vector<std::wstring> failures_;
    int pumps_ = 0;
};

} // namespace win
