#include <win/scripted.h>

namespace win {

namespace {

std::shared_ptr<Presenter>& current() {
    static auto* presenter = new std::shared_ptr<Presenter>(std::make_shared<ScriptedPresenter>());
    return *presenter;
}

} // namespace

Presenter& presenter() {
    return *current();
}

void setPresenter(std::shared_ptr<Presenter> presenter) {
    current() = presenter ? std::move(presenter) : std::make_shared<ScriptedPresenter>();
}

} // namespace win
