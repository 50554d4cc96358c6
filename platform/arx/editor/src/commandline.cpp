// The command line: runs commands by name with answers from the input, repeats the last one on
// Enter, and ends at QUIT or the end of the input.
#include "processor.h"

#include <win/transcript.h>

namespace qelhost {

namespace {

struct LineState {
    bool quit = false;
    std::wstring last;
};

LineState& state() {
    static LineState instance;
    return instance;
}

} // namespace

void requestQuit() {
    state().quit = true;
}

bool quitRequested() {
    return state().quit;
}

int runCommand(const std::wstring& name) {
    if (const ProcessorCommand* command = findProcessorCommand(name)) {
        if (currentDocument() == nullptr && bareName(name) != L"NEW" && bareName(name) != L"QUIT") {
            win::Transcript::instance().print(L"\nNo drawing is open: use NEW.\n");
            return RTERROR;
        }
        CommandContext context(nullptr);
        return command->run(context);
    }
    bool known = false;
    const int status = runModuleCommand(name, known);
    if (!known)
        win::Transcript::instance().print(L"\nUnknown command \"" + bareName(name) + L"\".\n");
    return status;
}

int commandLoop() {
    int result = RTNORM;
    while (!quitRequested() && !input().ended()) {
        std::optional<std::wstring> name = askUser(L"\nCommand: ", false);
        if (!name) continue; // Escape at the command prompt: nothing to cancel
        std::wstring command = *name;
        if (command.empty()) {
            if (state().last.empty()) continue;
            command = state().last;
        }
        state().last = command;
        const int status = runCommand(command);
        if (status != RTNORM) result = status;
    }
    return result;
}

std::vector<std::wstring> commandNames() {
    std::vector<std::wstring> names;
    for (Family family : processorFamilies())
        for (const ProcessorCommand& command : family())
            names.emplace_back(command.name);
    for (const std::wstring& name : moduleCommandNames())
        names.push_back(name);
    return names;
}

void resetHost() {
    unloadAllModules();
    resetDocuments();
    resetCommandStack();
    resetFunctions();
    resetMenus();
    resetVariables();
    clearSelections();
    setInput(nullptr);
    state() = LineState{};
}

} // namespace qelhost
