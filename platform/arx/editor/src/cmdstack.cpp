// The command stack: groups of commands that modules add, looked up by the command line.
#include "host.h"

#include "arx/accmd.h"

#include <win/transcript.h>

#include <list>

AcRxClass* AcEdCommand::desc() {
    static AcRxClass cls(L"AcEdCommand", AcRxObject::desc());
    return &cls;
}
AcRxClass* AcEdCommand::isA() const {
    return desc();
}
AcRxClass* AcEdCommandStack::desc() {
    static AcRxClass cls(L"AcEdCommandStack", AcRxObject::desc());
    return &cls;
}
AcRxClass* AcEdCommandStack::isA() const {
    return desc();
}

namespace qelhost {

namespace {

class Command : public AcEdCommand {
public:
    Command(std::wstring global, std::wstring local, Adesk::Int32 flags, AcRxFunctionPtr f,
            int code)
        : global_(std::move(global)), local_(std::move(local)), flags_(flags), function_(f),
          code_(code) {}
    const ACHAR* globalName() const override { return global_.c_str(); }
    const ACHAR* localName() const override { return local_.c_str(); }
    Adesk::Int32 commandFlags() const override { return flags_; }
    AcRxFunctionPtr functionAddr() const override { return function_; }
    int functionCode() const override { return code_; }

private:
    std::wstring global_, local_;
    Adesk::Int32 flags_;
    AcRxFunctionPtr function_;
    int code_;
};

struct Group {
    std::wstring name;
    std::list<Command> commands;
};

class CommandStack : public AcEdCommandStack {
public:
    Acad::ErrorStatus addCommand(const ACHAR* group, const ACHAR* global, const ACHAR* local,
                                 Adesk::Int32 flags, AcRxFunctionPtr function, AcEdUIContext*,
                                 int fcode, HINSTANCE__*, AcEdCommand** out) override {
        if (group == nullptr || global == nullptr || *global == L'\0' || function == nullptr)
            return Acad::eInvalidInput;
        Group& g = groupNamed(group);
        const std::wstring key = upper(global);
        for (const Command& c : g.commands)
            if (upper(c.globalName()) == key) return Acad::eDuplicateKey;
        g.commands.emplace_back(global, local && *local ? local : global, flags, function, fcode);
        if (out) *out = &g.commands.back();
        return Acad::eOk;
    }

    AcEdCommand* lookupCmd(const ACHAR* name, bool globalFlag) const override {
        if (name == nullptr) return nullptr;
        const std::wstring key = upper(name);
        for (auto g = groups_.rbegin(); g != groups_.rend(); ++g)
            for (const Command& c : g->commands)
                if (upper(globalFlag ? c.globalName() : c.localName()) == key)
                    return const_cast<Command*>(&c);
        return nullptr;
    }

    Acad::ErrorStatus removeCmd(const ACHAR* group, const ACHAR* global) override {
        Group* g = find(group);
        if (g == nullptr || global == nullptr) return Acad::eKeyNotFound;
        const std::wstring key = upper(global);
        const auto before = g->commands.size();
        g->commands.remove_if([&](const Command& c) { return upper(c.globalName()) == key; });
        return before == g->commands.size() ? Acad::eKeyNotFound : Acad::eOk;
    }

    Acad::ErrorStatus removeGroup(const ACHAR* group) override {
        Group* g = find(group);
        if (g == nullptr) return Acad::eKeyNotFound;
        groups_.remove_if([g](const Group& x) { return &x == g; });
        return Acad::eOk;
    }

    std::vector<std::wstring> names() const {
        std::vector<std::wstring> out;
        for (const Group& g : groups_)
            for (const Command& c : g.commands)
                out.emplace_back(c.globalName());
        return out;
    }

    void clear() { groups_.clear(); }

private:
    Group* find(const ACHAR* name) {
        if (name == nullptr) return nullptr;
        const std::wstring key = upper(name);
        for (Group& g : groups_)
            if (upper(g.name) == key) return &g;
        return nullptr;
    }
    Group& groupNamed(const ACHAR* name) {
        if (Group* g = find(name)) return *g;
        groups_.push_back(Group{name, {}});
        return groups_.back();
    }

    std::list<Group> groups_;
};

CommandStack& stack() {
    static CommandStack instance;
    return instance;
}

} // namespace

int runModuleCommand(const std::wstring& name, bool& known) {
    std::wstring bare(name);
    while (!bare.empty() && (bare.front() == L'_' || bare.front() == L'.'))
        bare.erase(0, 1);
    AcEdCommand* command = stack().lookupCmd(bare.c_str(), true);
    if (command == nullptr) command = stack().lookupCmd(bare.c_str(), false);
    known = command != nullptr;
    if (!known) return RTERROR;
    command->functionAddr()();
    return RTNORM;
}

std::vector<std::wstring> moduleCommandNames() {
    return stack().names();
}

void resetCommandStack() {
    stack().clear();
}

} // namespace qelhost

AcEdCommandStack* acedRegCmds() {
    return &qelhost::stack();
}
