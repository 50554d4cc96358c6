#include "items.h"

#include "../ads/rbkind.h"
#include "../db/objectimpl.h"
#include "../db/text.h"

resbuf* acdbDxfToResbuf(const AcDbDxfItem& item) {
    resbuf* rb = acutNewRb(item.code);
    switch (acutRbKind(item.code)) {
    case RbKind::kReal:
        rb->resval.rreal = item.real();
        break;
    case RbKind::kPoint:
        rb->resval.rpoint[0] = item.point.x;
        rb->resval.rpoint[1] = item.point.y;
        rb->resval.rpoint[2] = item.point.z;
        break;
    case RbKind::kShort:
        rb->resval.rint = short(item.integer);
        break;
    case RbKind::kLong:
        rb->resval.rlong = Adesk::Int32(item.integer);
        break;
    case RbKind::kInt64:
        rb->resval.mnInt64 = item.integer;
        break;
    case RbKind::kString:
        rb->resval.rstring = acdbDupString(item.text);
        break;
    case RbKind::kName:
        rb->resval.rlname[0] = item.id.asOldId();
        rb->resval.rlname[1] = 0;
        break;
    default:
        break;
    }
    return rb;
}

AcDbDxfItem acdbDxfFromResbuf(const resbuf& rb) {
    AcDbDxfItem item;
    item.code = rb.restype;
    switch (acutRbKind(rb.restype)) {
    case RbKind::kReal:
        item.point.x = rb.resval.rreal;
        break;
    case RbKind::kPoint:
        item.point.set(rb.resval.rpoint[0], rb.resval.rpoint[1], rb.resval.rpoint[2]);
        break;
    case RbKind::kShort:
        item.integer = rb.resval.rint;
        break;
    case RbKind::kLong:
        item.integer = rb.resval.rlong;
        break;
    case RbKind::kInt64:
        item.integer = rb.resval.mnInt64;
        break;
    case RbKind::kString:
        item.text = rb.resval.rstring ? rb.resval.rstring : L"";
        break;
    case RbKind::kName:
        item.id.setFromOldId(rb.resval.rlname[0]);
        break;
    default:
        break;
    }
    return item;
}
