// Functions that modules serve to each other by name, called through acedInvoke.
#include "host.h"

#include "ads/rbkind.h"

#include <algorithm>
#include <cstdlib>
#include <map>

namespace qelhost {

namespace {

// Codes are each module's own: two modules may both number their functions from 1.
using Code = std::pair<void*, int>;

struct Functions {
    std::map<std::wstring, Code> codes; // upper-case name -> module and code
    std::map<Code, int (*)()> handlers; // module and code -> function
    int running = -1;                   // the code of the function being called
    // The call in progress: its arguments and the answer being built.
    const resbuf* args = nullptr;
    resbuf* answer = nullptr;
    bool answered = false;
};

Functions& functions() {
    static Functions instance;
    return instance;
}

resbuf* copyChain(const resbuf* chain) {
    resbuf* head = nullptr;
    resbuf** tail = &head;
    for (const resbuf* rb = chain; rb != nullptr; rb = rb->rbnext) {
        resbuf* copy = acutNewRb(rb->restype);
        copy->resval = rb->resval;
        const RbKind kind = acutRbKind(rb->restype);
        if (kind == RbKind::kString)
            copy->resval.rstring = rb->resval.rstring ? acutNewString(rb->resval.rstring) : nullptr;
        if (kind == RbKind::kBinary) {
            copy->resval.rbinary.buf = static_cast<char*>(
                std::malloc(std::size_t(std::max<short>(rb->resval.rbinary.clen, 1))));
            std::copy_n(rb->resval.rbinary.buf, std::max<short>(rb->resval.rbinary.clen, 0),
                        copy->resval.rbinary.buf);
        }
        *tail = copy;
        tail = &copy->rbnext;
    }
    return head;
}

int answer(resbuf* chain) {
    Functions& f = functions();
    acutRelRb(f.answer);
    f.answer = chain;
    f.answered = true;
    return RTNORM;
}

} // namespace

void resetFunctions() {
    functions().codes.clear();
    functions().handlers.clear();
}

void forgetFunctionsOf(void* appId) {
    std::erase_if(functions().codes,
                  [appId](const auto& entry) { return entry.second.first == appId; });
    std::erase_if(functions().handlers,
                  [appId](const auto& entry) { return entry.first.first == appId; });
}

} // namespace qelhost

using namespace qelhost;

int acedDefun(const ACHAR* sname, short funcno) {
    if (sname == nullptr || *sname == L'\0') return RTERROR;
    functions().codes[upper(sname)] = {currentModule(), funcno};
    return RTNORM;
}

int acedUndef(const ACHAR* sname, short funcno) {
    auto it = sname ? functions().codes.find(upper(sname)) : functions().codes.end();
    if (it == functions().codes.end() || it->second != Code{currentModule(), funcno})
        return RTERROR;
    functions().codes.erase(it);
    return RTNORM;
}

int acedRegFunc(int (*fhdl)(), int fcode) {
    const Code code{currentModule(), fcode};
    if (fhdl == nullptr)
        functions().handlers.erase(code);
    else
        functions().handlers[code] = fhdl;
    return RTNORM;
}

int acedInvoke(const resbuf* args, resbuf** result) {
    if (result) *result = nullptr;
    if (args == nullptr || args->restype != RTSTR || args->resval.rstring == nullptr)
        return RTERROR;
    Functions& f = functions();
    auto code = f.codes.find(upper(args->resval.rstring));
    if (code == f.codes.end()) return RTERROR;
    auto handler = f.handlers.find(code->second);
    // Calls may nest: keep the outer call's state.
    const resbuf* outerArgs = f.args;
    resbuf* outerAnswer = f.answer;
    const bool outerAnswered = f.answered;
    const int outerRunning = f.running;
    f.args = args->rbnext;
    f.answer = nullptr;
    f.answered = false;
    f.running = code->second.second;
    // A function without its own handler is served by its module's entry point.
    const int status =
        handler != f.handlers.end()
            ? handler->second()
            : (sendToModule(code->second.first, 5 /* kInvkSubrMsg */) == 0 ? RTNORM : RTERROR);
    resbuf* chain = f.answer;
    const bool answered = f.answered;
    f.args = outerArgs;
    f.answer = outerAnswer;
    f.answered = outerAnswered;
    f.running = outerRunning;
    if (status != RTNORM || !answered) {
        acutRelRb(chain);
        return RTERROR;
    }
    if (result)
        *result = chain;
    else
        acutRelRb(chain);
    return RTNORM;
}

int acedGetFunCode() {
    return functions().running;
}

resbuf* acedGetArgs() {
    // The list belongs to the caller of acedInvoke; the function reads it and doesn't free it.
    return const_cast<resbuf*>(functions().args);
}

int acedRetList(const resbuf* rbuf) {
    return answer(copyChain(rbuf));
}

int acedRetInt(int ival) {
    resbuf* rb = acutNewRb(RTSHORT);
    rb->resval.rint = short(ival);
    return answer(rb);
}
