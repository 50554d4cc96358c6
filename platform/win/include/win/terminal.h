// The terminal presenter: a person at the console plays the user. A dialog is shown as a list of
// its controls with labels and values; the person changes them (NAME = VALUE), presses buttons
// by number or name, and ends with OK or Cancel. Message boxes and pickers are asked at the prompt.
// End of input cancels a dialog and gives a box its default button.
#pragma once

#include <win/presenter.h>

#include <iosfwd>

namespace win {

class TerminalPresenter : public Presenter {
public:
    TerminalPresenter(std::istream& in, std::ostream& out);

    int messageBox(const MessageBoxRequest& box, AnswerSource& source) override;
    void runModal(DialogDriver& dialog) override;
    std::optional<std::wstring> chooseFile(const FileRequest& request,
                                           AnswerSource& source) override;
    std::optional<std::wstring> chooseFolder(const FolderRequest& request,
                                             AnswerSource& source) override;

    // The dialog as the terminal shows it.
    static std::wstring render(const DialogDriver& dialog);

private:
    bool ask(const std::wstring& prompt, std::wstring& answer);
    void say(const std::wstring& text);
    std::optional<std::wstring> choosePath(const std::wstring& what, const std::wstring& start,
                                           AnswerSource& source);

    std::istream& in_;
    std::ostream& out_;
};

} // namespace win
