#include "import_answers.h"

#include <win/strings.h>

#include <algorithm>
#include <cctype>

namespace qelcad {

namespace {

bool allDigits(const std::string& text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c); });
}

std::optional<int> boxButton(const std::string& word) {
    static const std::pair<const char*, int> buttons[] = {
        {"ok", IDOK},       {"cancel", IDCANCEL}, {"yes", IDYES},       {"no", IDNO},
        {"abort", IDABORT}, {"retry", IDRETRY},   {"ignore", IDIGNORE}, {"default", 0}};
    for (const auto& [name, id] : buttons)
        if (win::sameText(win::fromUtf8(word), win::fromUtf8(name))) return id;
    return std::nullopt;
}

// One dialog's answers, control by control as a user would go through it.
class DialogAnswers {
public:
    explicit DialogAnswers(std::optional<UINT> id) { answer_.id = id; }
    DialogAnswers& set(const wchar_t* control, const std::string& value) {
        answer_.steps.push_back({false, control, win::fromUtf8(value)});
        return *this;
    }
    DialogAnswers& tick(const wchar_t* control, bool on) { return set(control, on ? "on" : "off"); }
    win::DialogAnswer done() const { return answer_; }

private:
    win::DialogAnswer answer_;
};

} // namespace

std::vector<win::Answer> importAnswers(const ImportChoices& c, std::string& error) {
    if (c.blocks && c.solids) {
        error = "--blocks and --solids exclude each other";
        return {};
    }
    if (c.noLog && !c.logDir.empty()) {
        error = "--log-dir and --no-log exclude each other";
        return {};
    }
    DialogAnswers options(kImportOptionsDialog);
    options.set(L"file", c.input);
    if (c.solids) options.tick(L"solids", true);
    if (c.blocks) options.tick(L"blocks", true);
    options.tick(L"points", c.points).tick(L"layer-colour-override", c.layerColourOverride);
    if (c.suppressHidden) options.tick(L"suppress-hidden", true);
    options.tick(L"log", !c.noLog);
    if (!c.noLog) {
        options.tick(L"default-path", c.logDir.empty());
        if (!c.logDir.empty()) options.set(L"log-folder", c.logDir);
    }
    std::string units = c.units;
    if (units.empty() && c.scale) units = "User defined";
    if (!units.empty()) options.set(L"units", allDigits(units) ? "#" + units : units);
    if (c.scale) options.set(L"scale", *c.scale);
    std::vector<win::Answer> answers;
    answers.emplace_back(options.done());
    // The coordinate-system dialog, shown only when the file gives a choice.
    if (!c.coordinateSystem.empty())
        answers.emplace_back(
            DialogAnswers(kCoordinateSystemDialog).set(L"system", c.coordinateSystem).done());
    for (const std::string& box : c.boxes) {
        const std::optional<int> button = boxButton(box);
        if (!button) {
            error = "--box takes ok, cancel, yes, no, abort, retry, ignore or default: " + box;
            return {};
        }
        answers.emplace_back(win::BoxAnswer{*button});
    }
    return answers;
}

std::string importCancellation(std::size_t mark) {
    for (const win::Event& e : win::Transcript::instance().events(mark)) {
        if (e.kind != win::EventKind::Dialog) continue;
        const bool cancelled = e.what == L"closed" && e.answer == IDCANCEL;
        if (cancelled && e.id == static_cast<int>(kImportOptionsDialog))
            return "the import options dialog was cancelled: nothing was imported";
        if (cancelled && e.id == static_cast<int>(kCoordinateSystemDialog))
            return "the choice of coordinate system was cancelled: nothing was imported";
        // The progress dialog's one button is Cancel.
        if (e.what == L"pressed" && e.id == static_cast<int>(kImportProgressDialog))
            return "the import was cancelled from its progress dialog";
    }
    return {};
}

} // namespace qelcad
