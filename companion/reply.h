// The reply of a function: a result-buffer list handed to the caller of acedInvoke.
#pragma once

#include <arx/arx.h>
#include <arx/editor.h>

namespace toviqelout {

// Builds the list item by item; send() hands the caller a copy. The list is freed with the
// object.
class Reply {
public:
    Reply() = default;
    ~Reply();
    Reply(const Reply&) = delete;
    Reply& operator=(const Reply&) = delete;

    // An item of group 90 (a 32-bit integer).
    void integer(Adesk::Int32 value);
    // A point, result type 5009.
    void point(const AcGePoint3d& p);
    int send() const;

private:
    resbuf* append(int type);
    resbuf* head_ = nullptr;
    resbuf** tail_ = &head_;
};

// The empty reply: the caller gets no list, prints its failure text and goes its other way.
int replyEmpty();

// Runs a function of the module; anything it throws becomes the empty reply, since no
// exception may reach the host.
int served(int (*function)());

} // namespace toviqelout
