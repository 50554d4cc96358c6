// The answers that `qelcad import` gives the import's dialogs, from its options: the same
// dialogs a person fills in, so that a value the dialog refuses is refused with its own message.
#pragma once

#include <win/scripted.h>

#include <optional>
#include <string>
#include <vector>

namespace qelcad {

// The module's dialogs that an import shows.
inline constexpr UINT kImportOptionsDialog = 1001;
inline constexpr UINT kCoordinateSystemDialog = 1005;
inline constexpr UINT kImportProgressDialog = 1008; // the export's too
inline constexpr UINT kExportOptionsDialog = 1004;

struct ImportChoices {
    std::string input;                // the object file
    std::string units;                // a name of the unit list, or its index; empty: as stored
    std::optional<std::string> scale; // as typed; implies "User defined" without --units
    bool blocks = false, solids = false;
    bool points = false;
    bool layerColourOverride = false;
    bool suppressHidden = false;
    std::string logDir; // empty: the drawing's folder
    bool noLog = false;
    std::string coordinateSystem;   // empty: the dialog as it opens
    std::vector<std::string> boxes; // answers of the message boxes, in order
};

// One dialog's answers, control by control as a user would go through it.
class DialogAnswers {
public:
    explicit DialogAnswers(std::optional<UINT> id) { answer_.id = id; }
    DialogAnswers& set(const wchar_t* control, const std::string& value);
    DialogAnswers& tick(const wchar_t* control, bool on) { return set(control, on ? "on" : "off"); }
    win::DialogAnswer done() const { return answer_; }

private:
    win::DialogAnswer answer_;
};

// The unit list's answer for --units and --scale: a name, "#index" for an index, "User defined"
// for a scale alone; empty for neither.
std::string unitsAnswer(const std::string& units, bool scaled);
// The answers of the message boxes by --box, in order; false with the reason in error.
bool addBoxAnswers(const std::vector<std::string>& boxes, std::vector<win::Answer>& answers,
                   std::string& error);

// The answers of the scripted presenter for these choices, in order; empty with the reason in
// error when the choices contradict each other.
std::vector<win::Answer> importAnswers(const ImportChoices& choices, std::string& error);

struct ExportChoices {
    std::string output; // the object file to write
    bool reference = false, noReference = false;
    std::string scope; // all, visible, selected; empty: as stored
    std::string units; // as for the import
    std::optional<std::string> scale;
    std::vector<std::string> select; // answers of the selection prompt under scope selected
    std::vector<std::string> boxes;
};

std::vector<win::Answer> exportAnswers(const ExportChoices& choices, std::string& error);
// Why the export didn't run to its end, as importCancellation tells it for the import.
std::string exportCancellation(std::size_t mark);

// Why the import didn't run to its end, from what its dialogs did since the mark of the
// transcript: a cancelled dialog, or Cancel in the progress dialog. Empty when it ran through.
std::string importCancellation(std::size_t mark);

} // namespace qelcad
