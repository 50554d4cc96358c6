// The command processor: commands that take their answers one token at a time, from the list
// that acedCommand was given or from the user at the prompt.
#pragma once

#include "host.h"

#include <deque>
#include <span>

namespace qelhost {

// One answer to a prompt.
struct Token {
    enum Kind { kText, kPoint, kSelection, kEntity, kInteger, kReal } kind = kText;
    std::wstring text;
    AcGePoint3d point; // in the current UCS
    Adesk::IntPtr name[2] = {0, 0};
    long integer = 0;
    double real = 0.0;
};

// The tokens of a result-buffer list; false with the reason for a type no command takes.
bool tokensOf(const resbuf* list, std::deque<Token>& tokens, std::wstring& error);

class CommandContext {
public:
    // From tokens given by a caller: when they run out, the command is cancelled.
    explicit CommandContext(std::deque<Token>* tokens) : tokens_(tokens) {}

    // The next answer; nothing when cancelled.
    std::optional<Token> next(const std::wstring& prompt, bool wholeLine = false);
    // A word: text tokens as they are, numbers written out, empty for Enter. A point, set or
    // entity where a word is asked comes as "\x01", which no name or option matches.
    std::optional<std::wstring> word(const std::wstring& prompt, bool wholeLine = false);

    enum class Got { kValue, kEnter, kWord, kCancel, kInvalid };
    // A point, from a point token or "x,y[,z]" text; an empty answer is Enter; other text a
    // word. Points come back in the current UCS.
    Got point(const std::wstring& prompt, AcGePoint3d& point, std::wstring& word);
    // A number, from a number token or text.
    Got number(const std::wstring& prompt, double& value);

    // Reports input the command refuses.
    void invalid(const std::wstring& message);
    bool fromCaller() const { return tokens_ != nullptr; }

private:
    std::deque<Token>* tokens_;
};

// An option word matched against its short form and full name: "_W", "w" and "World" all match
// {L"W", L"WORLD"}. The leading underscore of the language-independent forms is dropped.
struct Option {
    const wchar_t* brief;
    const wchar_t* full;
};
// The index of the option matched, or -1.
int matchOption(std::wstring_view word, std::span<const Option> options);
// The word without its leading '_' or '.' prefixes, in upper case.
std::wstring bareName(std::wstring_view word);
bool parsePoint(std::wstring_view text, AcGePoint3d& point);

using CommandFunction = int (*)(CommandContext&);
struct ProcessorCommand {
    const wchar_t* name;
    CommandFunction run;
};
// The commands of each family, defined next to them.
std::span<const ProcessorCommand> ucsCommands();
std::span<const ProcessorCommand> layerCommands();
std::span<const ProcessorCommand> drawCommands();
std::span<const ProcessorCommand> viewCommands();
std::span<const ProcessorCommand> menuCommands();
std::span<const ProcessorCommand> menuStateCommands();
std::span<const ProcessorCommand> hostCommands();
std::span<const ProcessorCommand> curveCommands();
std::span<const ProcessorCommand> editCommands();
std::span<const ProcessorCommand> changeCommands();
std::span<const ProcessorCommand> solidCommands();
std::span<const ProcessorCommand> solidEditCommands();
std::span<const ProcessorCommand> inspectCommands();

// Every family of the processor; a name belongs to one family only.
using Family = std::span<const ProcessorCommand> (*)();
std::span<const Family> processorFamilies();

// The menu groups loaded, in load order, upper case.
std::vector<std::wstring> loadedMenuGroups();

// The processor command of that name (prefixes and case ignored), or null.
const ProcessorCommand* findProcessorCommand(std::wstring_view name);

} // namespace qelhost
