#include "rbkind.h"

#include <array>

#include "arx/adsdef.h"

namespace {

struct CodeRange {
    int first, last;
    RbKind kind;
};

// Group code ranges of drawing data, extended data and X-records, in code order.
constexpr CodeRange kGroupCodes[] = {
    {-5, -1, RbKind::kName},      {0, 9, RbKind::kString},       {10, 39, RbKind::kPoint},
    {40, 59, RbKind::kReal},      {60, 79, RbKind::kShort},      {90, 99, RbKind::kLong},
    {100, 102, RbKind::kString},  {105, 105, RbKind::kString},   {110, 139, RbKind::kPoint},
    {140, 149, RbKind::kReal},    {160, 169, RbKind::kInt64},    {170, 179, RbKind::kShort},
    {210, 239, RbKind::kPoint},   {270, 299, RbKind::kShort},    {300, 309, RbKind::kString},
    {310, 319, RbKind::kBinary},  {320, 329, RbKind::kString},   {330, 369, RbKind::kName},
    {370, 389, RbKind::kShort},   {390, 399, RbKind::kString},   {400, 409, RbKind::kShort},
    {410, 419, RbKind::kString},  {420, 429, RbKind::kLong},     {430, 439, RbKind::kString},
    {440, 459, RbKind::kLong},    {460, 469, RbKind::kReal},     {470, 481, RbKind::kString},
    {999, 1003, RbKind::kString}, {1004, 1004, RbKind::kBinary}, {1005, 1009, RbKind::kString},
    {1010, 1039, RbKind::kPoint}, {1040, 1059, RbKind::kReal},   {1060, 1070, RbKind::kShort},
    {1071, 1071, RbKind::kLong},
};

// Group codes from -5 to 1071, looked up in a table made from the ranges when compiling.
constexpr std::array<RbKind, 1077> kByCode = [] {
    std::array<RbKind, 1077> t{};
    t.fill(RbKind::kInvalid);
    for (const CodeRange& r : kGroupCodes)
        for (int code = r.first; code <= r.last; ++code)
            t[size_t(code + 5)] = r.kind;
    return t;
}();

} // namespace

RbKind acutRbKind(int type) {
    if (type >= -5 && type <= 1071) return kByCode[size_t(type + 5)];
    switch (type) {
    case RTREAL:
    case RTANG:
        return RbKind::kReal;
    case RTPOINT:
    case RT3DPOINT:
        return RbKind::kPoint;
    case RTSHORT:
        return RbKind::kShort;
    case RTLONG:
        return RbKind::kLong;
    case RTINT64:
        return RbKind::kInt64;
    case RTSTR:
    case RTDXF0:
        return RbKind::kString;
    case RTENAME:
    case RTPICKS:
        return RbKind::kName;
    case RTNONE:
    case RTLB:
    case RTLE:
    case RTDOTE:
    case RTNIL:
    case RTT:
    case RTVOID:
        return RbKind::kNone;
    default:
        break;
    }
    return RbKind::kInvalid;
}
