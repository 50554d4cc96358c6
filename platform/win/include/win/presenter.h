// Presenters: who plays the user. The host chooses one (the terminal, or answers from a script);
// dialogs, message boxes and pickers ask it, and everything it does goes to the transcript.
#pragma once

#include <win/dialog.h>
#include <win/transcript.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace win {

struct MessageBoxRequest {
    std::wstring text;
    std::wstring caption;
    UINT type = 0;
};

struct FileRequest {
    bool open = true; // an open dialog, else a save dialog
    std::wstring title;
    std::wstring defaultExt; // without the point
    std::wstring fileName;   // the start name
    std::wstring filter;     // "Qel Data Files (*.qel)|*.qel||"
    std::wstring initialDir;
    DWORD flags = 0; // OFN_*
};

struct FolderRequest {
    std::wstring title;
};

// A control of an open dialog as a user sees it.
struct ControlState {
    ControlKind kind = ControlKind::Static;
    int id = 0;
    std::wstring label, key, text, tip;
    bool enabled = true, visible = true, groupStart = false;
    int check = 0;
    std::vector<std::wstring> items;
    int selection = -1;
    int limit = 0;
    int pos = 0, lower = 0, upper = 0;
};

// What a presenter may do with a modal dialog: what a user can do with mouse and keyboard.
class DialogDriver {
public:
    explicit DialogDriver(CDialog& dialog);

    UINT templateId() const;
    std::wstring caption() const;
    std::vector<ControlState> controls() const; // template order
    std::optional<ControlState> control(int id) const;
    // A control by its id number, key or label (case ignored); 0 if there is none.
    int find(std::wstring_view name) const;
    std::wstring describe(int id) const; // "Scale Factor (1024)"

    // Each action returns an empty text when done, else why it can't be done (the control is
    // disabled, has no such item...). Setting: an edit is typed into and left; a check box
    // takes on/off; a radio is chosen by "on" or, on any radio of its group, by the label, key
    // or id of the one to choose; a combo or list box takes an item's text or "#index".
    std::wstring set(int id, const std::wstring& value, AnswerSource source);
    std::wstring press(int id, AnswerSource source);

    bool open() const;
    int result() const;
    void end(int result);
    // The texts of the message boxes shown since the last action began.
    std::vector<std::wstring> lastMessages() const;
    // Why the dialog is handed on to another presenter (a refused OK, an answer that couldn't be
    // given), for that presenter to tell the user first.
    void setRemark(std::wstring text) { remark_ = std::move(text); }
    const std::wstring& remark() const { return remark_; }

private:
    HWND window(int id) const;
    std::wstring setRadio(HWND control, const std::wstring& value);
    std::wstring choose(HWND control, const std::wstring& value);
    CDialog& dialog_;
    std::size_t actionMark_ = 0;
    std::wstring remark_;
};

class Presenter {
public:
    virtual ~Presenter() = default;
    // The button pressed; must be one the box shows.
    virtual int messageBox(const MessageBoxRequest& box, AnswerSource& source) = 0;
    // Acts on the dialog until it has ended (DialogDriver::open is false).
    virtual void runModal(DialogDriver& dialog) = 0;
    virtual std::optional<std::wstring> chooseFile(const FileRequest& request,
                                                   AnswerSource& source) = 0;
    virtual std::optional<std::wstring> chooseFolder(const FolderRequest& request,
                                                     AnswerSource& source) = 0;
    // The message pump found nothing to do: input for modeless dialogs may be posted now.
    virtual void idle() {}
};

// The current presenter. Until the host sets one, a scripted presenter without answers: every
// box gets its default button, every dialog is accepted as it opens.
Presenter& presenter();
void setPresenter(std::shared_ptr<Presenter> presenter);

// The modeless dialogs that are up, oldest first.
std::vector<HWND> modelessDialogs();

// Asks for Cancel to be pressed on the newest modeless dialog at the next pump of messages, as a
// user would to stop a long run. Safe to call from a signal handler (Ctrl-C at the terminal).
void requestCancel();

// Words for a check box's state: on, off, yes, no, true, false, 1, 0, checked, unchecked.
std::optional<bool> parseSwitch(std::wstring_view word);
bool sameText(std::wstring_view a, std::wstring_view b); // case ignored

} // namespace win
