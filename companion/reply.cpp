#include "reply.h"

#include <exception>

namespace toviqelout {

Reply::~Reply() {
    acutRelRb(head_);
}

resbuf* Reply::append(int type) {
    resbuf* item = acutNewRb(type);
    if (item == nullptr) throw std::bad_alloc();
    *tail_ = item;
    tail_ = &item->rbnext;
    return item;
}

void Reply::integer(Adesk::Int32 value) {
    append(90)->resval.rlong = value;
}

void Reply::point(const AcGePoint3d& p) {
    resbuf* item = append(RT3DPOINT);
    item->resval.rpoint[0] = p.x;
    item->resval.rpoint[1] = p.y;
    item->resval.rpoint[2] = p.z;
}

int Reply::send() const {
    return acedRetList(head_);
}

int replyEmpty() {
    return acedRetList(nullptr);
}

int served(int (*function)()) {
    try {
        return function();
    } catch (const std::exception&) {
        return replyEmpty();
    }
}

} // namespace toviqelout
