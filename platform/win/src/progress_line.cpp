#include <win/progress_line.h>
#include <win/strings.h>

#include <algorithm>
#include <cstdio>
#include <ostream>

#include "window_impl.h"

namespace win {

namespace {

constexpr std::size_t kBarCells = 20;
constexpr auto kRedrawEvery = std::chrono::milliseconds(100);

std::wstring clock(double seconds) {
    const long s = std::max(0L, static_cast<long>(seconds + 0.5));
    wchar_t text[32];
    if (s >= 3600)
        std::swprintf(text, 32, L"%ld:%02ld:%02ld", s / 3600, s / 60 % 60, s % 60);
    else
        std::swprintf(text, 32, L"%ld:%02ld", s / 60, s % 60);
    return text;
}

HWND firstProgressBar(HWND dialog) {
    for (HWND child : dialog->children)
        if (child->kind == ControlKind::Progress) return child;
    return nullptr;
}

} // namespace

std::optional<ProgressState> modelessProgress() {
    const std::vector<HWND> dialogs = modelessDialogs();
    if (dialogs.empty()) return std::nullopt;
    HWND dialog = dialogs.back();
    HWND bar = firstProgressBar(dialog);
    if (!bar) return std::nullopt;
    ProgressState state;
    state.text = dialog->text;
    for (HWND child : dialog->children)
        if (child->kind == ControlKind::Static && child->visible && !child->text.empty())
            state.text += (state.text.empty() ? L"" : L" ") + child->text;
    const long span = long(bar->upper) - long(bar->lower);
    state.percent =
        span > 0 ? int(std::clamp((long(bar->pos) - bar->lower) * 100 / span, 0L, 100L)) : 0;
    return state;
}

std::string progressLine(const std::wstring& text, int percent, double elapsedSeconds,
                         std::size_t width) {
    percent = std::clamp(percent, 0, 100);
    const std::size_t filled = kBarCells * std::size_t(percent) / 100;
    std::wstring tail = L" [" + std::wstring(filled, L'#') +
                        std::wstring(kBarCells - filled, L'-') + L"] " + std::to_wstring(percent) +
                        L"%  " + clock(elapsedSeconds) + L" spent";
    if (percent > 0 && percent < 100)
        tail += L", " + clock(elapsedSeconds * (100 - percent) / percent) + L" left";
    std::wstring line = text;
    for (wchar_t& c : line)
        if (c == L'\n' || c == L'\r' || c == L'\t') c = L' ';
    const std::size_t room = width > tail.size() ? width - tail.size() : 0;
    if (line.size() > room) line = room > 3 ? line.substr(0, room - 3) + L"..." : L"";
    line += tail;
    if (line.size() > width) line.resize(width);
    return toUtf8(line);
}

ProgressLinePresenter::ProgressLinePresenter(std::shared_ptr<Presenter> inner, std::ostream& out,
                                             std::size_t width, std::function<bool()> cancelKey)
    : inner_(std::move(inner)), out_(out), width_(width), cancelKey_(std::move(cancelKey)) {
    // Whatever else is shown starts on a clean line.
    listener_ = Transcript::instance().addListener([this](const Event& event) {
        if (event.kind != EventKind::Progress) wipe();
    });
}

ProgressLinePresenter::~ProgressLinePresenter() {
    Transcript::instance().removeListener(listener_);
    wipe();
}

int ProgressLinePresenter::messageBox(const MessageBoxRequest& box, AnswerSource& source) {
    wipe();
    return inner_->messageBox(box, source);
}

void ProgressLinePresenter::runModal(DialogDriver& dialog) {
    wipe();
    inner_->runModal(dialog);
}

std::optional<std::wstring> ProgressLinePresenter::chooseFile(const FileRequest& request,
                                                              AnswerSource& source) {
    wipe();
    return inner_->chooseFile(request, source);
}

std::optional<std::wstring> ProgressLinePresenter::chooseFolder(const FolderRequest& request,
                                                                AnswerSource& source) {
    wipe();
    return inner_->chooseFolder(request, source);
}

void ProgressLinePresenter::idle() {
    inner_->idle();
    const std::optional<ProgressState> state = modelessProgress();
    if (!state) {
        wipe();
        started_.reset();
        return;
    }
    if (cancelKey_ && cancelKey_()) requestCancel();
    const Clock::time_point now = now_();
    if (!started_) started_ = now;
    if (drawn_ && now - *drawn_ < kRedrawEvery) return;
    drawn_ = now;
    const double spent = std::chrono::duration<double>(now - *started_).count();
    const std::string line = progressLine(state->text, state->percent, spent, width_);
    const std::size_t columns = std::wstring(fromUtf8(line)).size();
    out_ << '\r' << line;
    if (columns < shownWidth_) out_ << std::string(shownWidth_ - columns, ' ');
    out_ << std::flush;
    shownWidth_ = std::max(shownWidth_, columns);
}

void ProgressLinePresenter::wipe() {
    if (shownWidth_ == 0) return;
    out_ << '\r' << std::string(shownWidth_, ' ') << '\r' << std::flush;
    shownWidth_ = 0;
    drawn_.reset();
}

} // namespace win
