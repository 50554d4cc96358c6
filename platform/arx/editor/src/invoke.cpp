// Functions that modules serve to each other by name, called through acedInvoke.
#include "host.h"

#include "ads/rbkind.h"

#include <algorithm>
#include <cstdlib>
#include <map>

namespace qelhost {

namespace {

struct Functions {
    std::map<std::wstring, short> codes; // upper-case name -> code
    std::map<int, int (*)()> handlers;   // code -> function
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

} // namespace qelhost

using namespace qelhost;

int acedDefun(const ACHAR* sname, short funcno) {
    if (sname == nullptr || *sname == L'\0') return RTERROR;
    functions().codes[upper(sname)] = funcno;
    return RTNORM;
}

int acedUndef(const ACHAR* sname, short funcno) {
    auto it = sname ? functions().codes.find(upper(sname)) : functions().codes.end();
    if (it == functions().codes.end() || it->second != funcno) return RTERROR;
    functions().codes.erase(it);
    return RTNORM;
}

int acedRegFunc(int (*fhdl)(), int fcode) {
    if (fhdl == nullptr)
        functions().handlers.erase(fcode);
    else
        functions().handlers[fcode] = fhdl;
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
    if (handler == f.handlers.end()) return RTERROR;
    // Calls may nest: keep the outer call's state.
    const resbuf* outerArgs = f.args;
    resbuf* outerAnswer = f.answer;
    const bool outerAnswered = f.answered;
    f.args = args->rbnext;
    f.answer = nullptr;
    f.answered = false;
    const int status = handler->second();
    resbuf* chain = f.answer;
    const bool answered = f.answered;
    f.args = outerArgs;
    f.answer = outerAnswer;
    f.answered = outerAnswered;
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

resbuf* acedGetArgs() {
    // The list belongs to the caller of acedInvoke; the function reads it and doesn't free it.
    return const_cast<resbuf*>(functions().args);
}

int acedRetList(const resbuf* rbuf) {
    return answer(copyChain(rbuf));
}

int acedRetStr(const ACHAR* s) {
    resbuf* rb = acutNewRb(RTSTR);
    rb->resval.rstring = acutNewString(s ? s : L"");
    return answer(rb);
}

int acedRetInt(int ival) {
    resbuf* rb = acutNewRb(RTSHORT);
    rb->resval.rint = short(ival);
    return answer(rb);
}

int acedRetReal(ads_real rval) {
    resbuf* rb = acutNewRb(RTREAL);
    rb->resval.rreal = rval;
    return answer(rb);
}

int acedRetNil() {
    return answer(acutNewRb(RTNIL));
}

int acedRetVoid() {
    return answer(acutNewRb(RTVOID));
}
