// The transcript: everything a user of the host would have seen, in the order it happened.
//
// The host's printing (acutPrintf), alerts, message boxes with their type and answer, dialog
// events and progress all land here. Tests read the events; the host may also mirror them to a
// file, one line per event, and listeners (the terminal) may show them as they come.
#pragma once

#include <win/types.h>

#include <cstddef>
#include <cstdio>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace win {

enum class EventKind {
    Print,      // text printed on the command line, as given (a fragment, newlines included)
    Alert,      // an alert box of the host: text
    MessageBox, // text, caption, type (MB_*), answer (ID*), how it was answered
    Dialog,     // a dialog event: what (opened, set, pressed, closed, failed...), id, text
    Progress,   // a progress bar moved to a new percentage: id, pos, lower, upper, percent
    Host,       // a message of the host platform itself (a registry file set aside, ...)
};

// How a message box, a dialog's control or a picker got its answer; None for events that
// nobody answered (a dialog opening or closing).
enum class AnswerSource { None, User, Script, Default };

struct Event {
    EventKind kind = EventKind::Print;
    std::wstring text;    // printed text, alert or box text, dialog event detail
    std::wstring caption; // message box caption; dialog title
    std::wstring what;    // dialog event: "opened", "set", "pressed", "closed", "failed", ...
    UINT type = 0;        // message box type
    int answer = 0;       // message box answer, dialog result
    int id = 0;           // dialog template id, control id, progress bar id
    int pos = 0, lower = 0, upper = 0, percent = 0;
    AnswerSource source = AnswerSource::User;
};

// One line of text for an event, as written to the transcript file (newlines escaped as \n).
std::string describe(const Event& event);
const char* sourceName(AnswerSource source);

class Transcript {
public:
    using Listener = std::function<void(const Event&)>;

    static Transcript& instance();

    void print(std::wstring_view text);
    void alert(std::wstring_view text);
    void messageBox(std::wstring_view text, std::wstring_view caption, UINT type, int answer,
                    AnswerSource source);
    void dialog(std::wstring_view what, int id, std::wstring_view caption, std::wstring_view text,
                int result = 0, AnswerSource source = AnswerSource::None);
    void progress(int id, int pos, int lower, int upper, int percent);
    void host(std::wstring_view text);
    void add(Event event);

    // A copy of the events, all of them or those from a mark on (a mark is a size()).
    std::vector<Event> events(std::size_t from = 0) const;
    std::size_t size() const;
    // All printed text from a mark on, joined: what the command line showed.
    std::wstring printed(std::size_t from = 0) const;
    void clear();

    // Mirror every event, from now on, to a file (UTF-8, one line per event); an empty path
    // stops it. Returns false if the file can't be opened for appending.
    bool setFile(const std::string& path);

    // Listeners see each event after it is recorded; remove by the number add returns.
    int addListener(Listener listener);
    void removeListener(int handle);

private:
    Transcript() = default;
    void addText(EventKind kind, std::wstring_view text);
    mutable std::recursive_mutex mutex_;
    std::vector<Event> events_;
    std::vector<std::pair<int, Listener>> listeners_;
    int nextListener_ = 1;
    std::FILE* file_ = nullptr;
};

} // namespace win
