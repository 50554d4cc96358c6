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
inline constexpr UINT kImportProgressDialog = 1008;

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

// The answers of the scripted presenter for these choices, in order; empty with the reason in
// error when the choices contradict each other.
std::vector<win::Answer> importAnswers(const ImportChoices& choices, std::string& error);

// Why the import didn't run to its end, from what its dialogs did since the mark of the
// transcript: a cancelled dialog, or Cancel in the progress dialog. Empty when it ran through.
std::string importCancellation(std::size_t mark);

} // namespace qelcad
