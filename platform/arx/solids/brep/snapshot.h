// The boundary that a brep walks: the kernel's description of a body, shared by every walk
// object reached from one AcBrBrep::set.
#pragma once

#include <arxsolids/types.h>

#include "arx/brent.h"

namespace acbr {

struct Snapshot {
    arxsolids::Brep brep;
};

// Makes walk objects on a snapshot; the classes keep their constructors to themselves.
struct Access {
    template <class T>
    static T make(std::shared_ptr<const Snapshot> snapshot, int index, int sub = -1) {
        T object;
        object.snapshot_ = std::move(snapshot);
        object.index_ = index;
        object.sub_ = sub;
        return object;
    }
    static const std::shared_ptr<const Snapshot>& snapshot(const AcBrEntity& entity) {
        return entity.snapshot_;
    }
    static int index(const AcBrEntity& entity) { return entity.index_; }
    static int sub(const AcBrEntity& entity) { return entity.sub_; }
    static void setSnapshot(AcBrBrep& brep, std::shared_ptr<const Snapshot> snapshot) {
        brep.snapshot_ = std::move(snapshot);
        brep.index_ = -1;
        brep.sub_ = -1;
    }
};

} // namespace acbr
