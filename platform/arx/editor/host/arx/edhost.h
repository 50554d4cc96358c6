// Host side of the editor: what the command line, the tests and qelcad drive. The module never
// includes this header.
#pragma once

#include "arx/acdocman.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace qelhost {

// Where the answers to prompts come from. ask gives the answer, or nothing when the user
// cancelled (Escape, Ctrl-C) or the input has ended. With wholeLine the answer may hold blanks.
class Input {
public:
    virtual ~Input() = default;
    virtual std::optional<std::wstring> ask(const std::wstring& prompt, bool wholeLine) = 0;
    // True once nothing more can come.
    virtual bool ended() const = 0;
    // A person at the keyboard, not a script: commands may then show their file dialogs.
    virtual bool interactive() const { return false; }
};

// Answers from the text of a script, as the host's scripts are written: each blank or line end
// ends an answer, an empty line is one Enter, and a whole-line answer takes the rest of its line.
// A line "\x1b" (Escape) or the word "^C" cancels the prompt it answers.
class ScriptInput : public Input {
public:
    explicit ScriptInput(std::wstring text);
    std::optional<std::wstring> ask(const std::wstring& prompt, bool wholeLine) override;
    bool ended() const override;
    // The line of the script the next answer comes from, counted from 1.
    int line() const { return line_; }

private:
    std::wstring text_;
    std::size_t pos_ = 0;
    int line_ = 1;
};

// The prompt and answers are echoed to the transcript, as a person would see them.
void setInput(std::shared_ptr<Input> input);
Input& input();

// Documents of the host.
// A new document with a default drawing ("Drawing1.dwg", "Drawing2.dwg", ...), made current;
// every loaded module gets kLoadDwgMsg for it.
AcApDocument* newDocument();
// Sends kUnloadDwgMsg to the modules (with the document current), tells the reactors, and
// deletes it; another open document becomes current. False for a document that isn't open.
bool closeDocument(AcApDocument* document);
// Closes every document as closeDocument does. With `atExit` (the process ends next) each
// drawing is told and put away but not deleted: its memory goes back with the process's, not by
// one free for each of its objects, which for a large drawing is a good part of a command. (Not
// in a build with the leak checker, which checks that close.)
void closeAllDocuments(bool atExit = false);
bool setCurrentDocument(AcApDocument* document);
// A new document holding the drawing of a DXF file, made current; the modules get kLoadDwgMsg.
// Null, with the reason in message, when the file cannot be read; nothing changes then.
AcApDocument* openDocument(const std::filesystem::path& path, std::string& message);
// Saves the document's drawing as DXF (the old file stays whole until the new one is
// complete); the document takes the path as its name. False, with the reason, on failure.
bool saveDocument(AcApDocument* document, const std::filesystem::path& path, std::string& message);
// Whether the document's drawing came from a file or was saved to one.
bool hasFile(const AcApDocument* document);

// Modules.
void setModuleFolder(const std::filesystem::path& folder);
std::filesystem::path moduleFolder();
// The module files of the loaded modules, in load order.
std::vector<std::string> loadedModules();
// Adds a run-time class to "ClassDictionary" of the system registry, for classes that libraries
// of the host bring beside the database's own (the boundary-representation classes, ...).
void addClassToDictionary(AcRxClass* cls);
// Unloads every module, newest first, whether locked or not (the host is ending).
void unloadAllModules();

// Commands.
// Runs one command typed at the command line: a host command (NEW, QUIT, SETVAR, LIST, ...),
// a command of the processor (UCS, -LAYER, ZOOM, ...) or a command that a module added, with
// its answers from the input. RTNORM, RTCAN when cancelled, RTERROR when unknown or failed.
int runCommand(const std::wstring& name);
// Reads and runs commands from the input until it ends or QUIT. An empty answer at the command
// prompt repeats the last command. The status of the last command that failed, else RTNORM.
int commandLoop();
bool quitRequested();
// The names of every command the command line knows, for help.
std::vector<std::wstring> commandNames();

// System variables from text, as SETVAR takes them: RTNORM, RTREJ for a read-only variable
// (unless evenReadOnly, which lets the host set its own ones such as ACADVER, for tests), RTERROR
// for an unknown name or a value the variable refuses.
int setSystemVariable(const std::wstring& name, const std::wstring& value, bool evenReadOnly);

// The pull-downs inserted by acedMenuCmd, as given.
std::vector<std::wstring> insertedMenus();
// Folders searched for menu files after the document's own folder.
void setSupportFolders(std::vector<std::filesystem::path> folders);

// Brings the host back to its first state: no documents, no modules, no selection sets,
// system variables at their defaults, empty input. For tests.
void resetHost();

} // namespace qelhost
