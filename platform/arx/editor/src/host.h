// State of the editor shared by its parts: documents, system variables, the command processor's
// input, selection sets.
#pragma once

#include "arx/acdocman.h"
#include "arx/aced.h"
#include "arx/edhost.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace qelhost {

// A value of a system variable: a short, a real, a text or a point.
using VarValue = std::variant<short, double, std::wstring, AcGePoint3d>;

class Document : public AcApDocument {
public:
    explicit Document(std::wstring name);
    AcDbDatabase* database() const override { return database_.get(); }
    const ACHAR* fileName() const override { return path_.c_str(); }
    const ACHAR* docTitle() const override { return name_.c_str(); }

    // Folder (with its trailing separator) and file name of the drawing.
    std::wstring prefix, name_;
    std::wstring path_;
    // Variables kept with the drawing.
    std::map<std::wstring, VarValue> vars;
    // The view after the last zoom: its box in world coordinates.
    AcDbExtents view;

private:
    std::unique_ptr<AcDbDatabase> database_;
};

Document* currentDocument();
std::vector<Document*> documents();

// Upper case, for names that compare without regard to case.
std::wstring upper(std::wstring_view text);
std::string narrow(std::wstring_view text);
std::wstring widen(std::string_view text);

// Prints a prompt, asks the input, echoes a cancel.
std::optional<std::wstring> askUser(const std::wstring& prompt, bool wholeLine);

// Transforms between the current UCS and the world.
AcGeMatrix3d ucsToWorld();
AcGePoint3d toWorld(const AcGePoint3d& ucsPoint);

// Selection sets, by name.
using SelectionSet = std::vector<AcDbObjectId>;
const SelectionSet* findSelection(const ads_name ss);
void clearSelections();

// Entities of the working drawing's model space that are not erased, in drawing order.
std::vector<AcDbObjectId> drawingEntities();
// The kind of an entity as a drawing names it ("LINE", "POINT", ...).
std::wstring entityKind(const AcDbEntity* entity);

// Modules get these as documents come and go.
void sendToModules(int message);
void resetModules();
void resetCommandStack();
void resetFunctions();
void resetMenus();
void resetVariables();
void resetDocuments();
std::vector<std::wstring> moduleCommandNames();
std::vector<std::wstring> variableNames();
void runLoadDwgFor(void* module);

// The host's own commands, run by name from the command line.
int runHostCommand(const std::wstring& name, bool& known);
int runModuleCommand(const std::wstring& name, bool& known);

} // namespace qelhost
