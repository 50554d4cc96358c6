// State of the editor shared by its parts: documents, system variables, the command processor's
// input, selection sets.
#pragma once

#include "arx/acdocman.h"
#include "arx/aced.h"
#include "arx/edhost.h"

#include <filesystem>
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
    // A drawing read from the file at path.
    Document(const std::filesystem::path& path, std::unique_ptr<AcDbDatabase> database);
    // Takes the path as the drawing's file.
    void setFile(const std::filesystem::path& path);
    AcDbDatabase* database() const override { return database_.get(); }
    const ACHAR* fileName() const override { return path.c_str(); }
    const ACHAR* docTitle() const override { return title.c_str(); }

    // Folder (with its trailing separator), file name, and full path of the drawing; a drawing
    // never saved has its name as its path.
    std::wstring prefix, title;
    std::wstring path;
    bool hasFile = false;
    // The database's count of write closings when it was read or last saved.
    Adesk::UInt64 savedWrites = 0;
    // True when the drawing changed since it was read or last saved.
    bool changed() const;
    // Variables kept with the drawing.
    std::map<std::wstring, VarValue> vars;

private:
    std::unique_ptr<AcDbDatabase> database_;
};

Document* currentDocument();
std::vector<Document*> documents();

// Upper case, for names that compare without regard to case.
std::wstring upper(std::wstring_view text);

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
// Sends one message to one module, which is the running module meanwhile; its answer.
int sendToModule(void* appId, int message);
// The module whose entry point or command runs now; null for the host.
void* currentModule();
// Drops the functions a module defined, when it goes.
void forgetFunctionsOf(void* appId);
void resetModules();
void resetCommandStack();
void resetFunctions();
void resetMenus();
void resetVariables();
void resetDocuments();
std::vector<std::wstring> moduleCommandNames();
// A variable's value as SETVAR shows it; known false for an unknown name.
std::wstring variableText(const std::wstring& name, bool& known);
bool isReadOnlyVariable(const std::wstring& name);
// QUIT: the command loop ends after the command.
void requestQuit();
void runLoadDwgFor(void* module);

// The host's own commands, run by name from the command line.
int runHostCommand(const std::wstring& name, bool& known);
int runModuleCommand(const std::wstring& name, bool& known);

} // namespace qelhost
