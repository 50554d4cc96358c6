#include <win/strings.h>
#include <win/transcript.h>

#include <algorithm>
#include <string>

namespace win {

namespace {

std::string escaped(std::wstring_view text) {
    std::string out;
    for (char c : toUtf8(text)) {
        if (c == '\n')
            out += "\\n";
        else if (c == '\r')
            out += "\\r";
        else if (c == '\t')
            out += "\\t";
        else if (c == '\\')
            out += "\\\\";
        else
            out += c;
    }
    return out;
}

} // namespace

const char* sourceName(AnswerSource source) {
    switch (source) {
    case AnswerSource::None:
        return "";
    case AnswerSource::User:
        return "user";
    case AnswerSource::Script:
        return "script";
    case AnswerSource::Default:
        return "default";
    }
    return "?";
}

std::string describe(const Event& e) {
    switch (e.kind) {
    case EventKind::Print:
        return "print: " + escaped(e.text);
    case EventKind::Alert:
        return "alert: " + escaped(e.text);
    case EventKind::Host:
        return "host: " + escaped(e.text);
    case EventKind::MessageBox:
        return "box: " + escaped(e.text) + " | caption=" + escaped(e.caption) +
               " type=" + std::to_string(e.type) + " answer=" + std::to_string(e.answer) + " (" +
               sourceName(e.source) + ")";
    case EventKind::Dialog:
        return "dialog " + std::to_string(e.id) + " " + escaped(e.what) +
               (e.text.empty() ? "" : ": " + escaped(e.text)) +
               (e.what == L"closed" ? " result=" + std::to_string(e.answer) : std::string()) +
               (e.source == AnswerSource::None ? ""
                                               : std::string(" (") + sourceName(e.source) + ")");
    case EventKind::Progress:
        return "progress " + std::to_string(e.id) + ": " + std::to_string(e.percent) + "% (" +
               std::to_string(e.pos) + " of " + std::to_string(e.lower) + ".." +
               std::to_string(e.upper) + ")";
    }
    return "?";
}

Transcript& Transcript::instance() {
    static Transcript* transcript = new Transcript; // outlives every static that prints
    return *transcript;
}

void Transcript::add(Event event) {
    std::lock_guard lock(mutex_);
    events_.push_back(event);
    if (file_) {
        std::string line = describe(event) + "\n";
        std::fwrite(line.data(), 1, line.size(), file_);
        std::fflush(file_);
    }
    auto listeners = listeners_; // a listener may add or remove listeners
    for (auto& [handle, listener] : listeners)
        listener(event);
}

void Transcript::addText(EventKind kind, std::wstring_view text) {
    Event e;
    e.kind = kind;
    e.text = text;
    add(std::move(e));
}

void Transcript::print(std::wstring_view text) {
    addText(EventKind::Print, text);
}

void Transcript::alert(std::wstring_view text) {
    addText(EventKind::Alert, text);
}

void Transcript::host(std::wstring_view text) {
    addText(EventKind::Host, text);
}

void Transcript::messageBox(std::wstring_view text, std::wstring_view caption, UINT type,
                            int answer, AnswerSource source) {
    Event e;
    e.kind = EventKind::MessageBox;
    e.text = text;
    e.caption = caption;
    e.type = type;
    e.answer = answer;
    e.source = source;
    add(std::move(e));
}

void Transcript::dialog(std::wstring_view what, int id, std::wstring_view caption,
                        std::wstring_view text, int result, AnswerSource source) {
    Event e;
    e.kind = EventKind::Dialog;
    e.what = what;
    e.id = id;
    e.caption = caption;
    e.text = text;
    e.answer = result;
    e.source = source;
    add(std::move(e));
}

void Transcript::progress(int id, int pos, int lower, int upper, int percent) {
    Event e;
    e.kind = EventKind::Progress;
    e.id = id;
    e.pos = pos;
    e.lower = lower;
    e.upper = upper;
    e.percent = percent;
    add(std::move(e));
}

std::vector<Event> Transcript::events(std::size_t from) const {
    std::lock_guard lock(mutex_);
    if (from >= events_.size()) return {};
    return {events_.begin() + static_cast<std::ptrdiff_t>(from), events_.end()};
}

std::size_t Transcript::size() const {
    std::lock_guard lock(mutex_);
    return events_.size();
}

std::wstring Transcript::printed(std::size_t from) const {
    std::wstring out;
    for (const Event& e : events(from))
        if (e.kind == EventKind::Print) out += e.text;
    return out;
}

void Transcript::clear() {
    std::lock_guard lock(mutex_);
    events_.clear();
}

bool Transcript::setFile(const std::string& path) {
    std::lock_guard lock(mutex_);
    if (file_) std::fclose(file_);
    file_ = nullptr;
    if (path.empty()) return true;
    file_ = std::fopen(path.c_str(), "a");
    return file_ != nullptr;
}

int Transcript::addListener(Listener listener) {
    std::lock_guard lock(mutex_);
    listeners_.emplace_back(nextListener_, std::move(listener));
    return nextListener_++;
}

void Transcript::removeListener(int handle) {
    std::lock_guard lock(mutex_);
    std::erase_if(listeners_, [handle](const auto& entry) { return entry.first == handle; });
}

} // namespace win
