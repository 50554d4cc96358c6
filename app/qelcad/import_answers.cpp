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

} // namespace

DialogAnswers& DialogAnswers::set(const wchar_t* control, const std::string& value) {
    answer_.steps.push_back({false, control, win::fromUtf8(value)});
    return *this;
}

std::string unitsAnswer(const std::string& units, bool scaled) {
    const std::string name = units.empty() && scaled ? "User defined" : units;
    return allDigits(name) ? "#" + name : name;
}

bool addBoxAnswers(const std::vector<std::string>& boxes, std::vector<win::Answer>& answers,
                   std::string& error) {
    for (const std::string& box : boxes) {
        const std::optional<int> button = boxButton(box);
        if (!button) {
            error = "--box takes ok, cancel, yes, no, abort, retry, ignore or default: " + box;
            return false;
        }
        answers.emplace_back(win::BoxAnswer{*button});
    }
    return true;
}

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
    const std::string units = unitsAnswer(c.units, c.scale.has_value());
    if (!units.empty()) options.set(L"units", units);
    if (c.scale) options.set(L"scale", *c.scale);
    std::vector<win::Answer> answers;
    answers.emplace_back(options.done());
    // The coordinate-system dialog, shown only when the file gives a choice.
    if (!c.coordinateSystem.empty())
        answers.emplace_back(
            DialogAnswers(kCoordinateSystemDialog).set(L"system", c.coordinateSystem).done());
    if (!addBoxAnswers(c.boxes, answers, error)) return {};
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

std::vector<win::Answer> exportAnswers(const ExportChoices& c, std::string& error) {
    if (c.reference && c.noReference) {
        error = "--reference and --no-reference exclude each other";
        return {};
    }
    static const char* const scopes[] = {"all", "visible", "selected"};
    const bool knownScope = c.scope.empty() || std::find(std::begin(scopes), std::end(scopes),
                                                         c.scope) != std::end(scopes);
    if (!knownScope) {
        error = "--scope takes all, visible or selected: " + c.scope;
        return {};
    }
    DialogAnswers options(kExportOptionsDialog);
    options.set(L"file", c.output);
    if (c.reference) options.tick(L"reference", true);
    if (c.noReference) options.tick(L"no-reference", true);
    if (!c.scope.empty()) options.tick(win::fromUtf8(c.scope).c_str(), true);
    const std::string units = unitsAnswer(c.units, c.scale.has_value());
    if (!units.empty()) options.set(L"units", units);
    if (c.scale) options.set(L"scale", *c.scale);
    std::vector<win::Answer> answers;
    answers.emplace_back(options.done());
    if (!addBoxAnswers(c.boxes, answers, error)) return {};
    return answers;
}

std::string exportCancellation(std::size_t mark) {
    for (const win::Event& e : win::Transcript::instance().events(mark)) {
        if (e.kind != win::EventKind::Dialog) continue;
        if (e.what == L"closed" && e.answer == IDCANCEL &&
            e.id == static_cast<int>(kExportOptionsDialog))
            return "the export options dialog was cancelled: nothing was exported";
        if (e.what == L"pressed" && e.id == static_cast<int>(kImportProgressDialog))
            return "the export was cancelled from its progress dialog: the file holds the "
                   "objects written before";
    }
    return {};
}

} // namespace qelcad
