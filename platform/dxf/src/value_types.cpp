// The catalogue of group-code ranges and what their values hold.
#include <dxf/tags.h>

#include <array>

namespace dxf {

namespace {

struct Range {
    int first, last;
    ValueType type;
};

// From the DXF reference, "Group Code Value Types".
constexpr Range kRanges[] = {
    {0, 4, ValueType::String},       {5, 5, ValueType::Handle},
    {6, 9, ValueType::String},       {10, 39, ValueType::Double},
    {40, 59, ValueType::Double},     {60, 79, ValueType::Int16},
    {90, 99, ValueType::Int32},      {100, 100, ValueType::String},
    {102, 102, ValueType::String},   {105, 105, ValueType::Handle},
    {110, 119, ValueType::Double},   {120, 129, ValueType::Double},
    {130, 139, ValueType::Double},   {140, 149, ValueType::Double},
    {160, 169, ValueType::Int64},    {170, 179, ValueType::Int16},
    {210, 239, ValueType::Double},   {270, 279, ValueType::Int16},
    {280, 289, ValueType::Int16},    {290, 299, ValueType::Bool},
    {300, 309, ValueType::String},   {310, 319, ValueType::Binary},
    {320, 329, ValueType::Handle},   {330, 369, ValueType::Handle},
    {370, 379, ValueType::Int16},    {380, 389, ValueType::Int16},
    {390, 399, ValueType::Handle},   {400, 409, ValueType::Int16},
    {410, 419, ValueType::String},   {420, 429, ValueType::Int32},
    {430, 439, ValueType::String},   {440, 449, ValueType::Int32},
    {450, 459, ValueType::Int32},    {460, 469, ValueType::Double},
    {470, 479, ValueType::String},   {480, 481, ValueType::Handle},
    {999, 999, ValueType::String},   {1000, 1003, ValueType::String},
    {1004, 1004, ValueType::Binary}, {1005, 1005, ValueType::Handle},
    {1006, 1009, ValueType::String}, {1010, 1059, ValueType::Double},
    {1060, 1070, ValueType::Int16},  {1071, 1071, ValueType::Int32},
    {-5, -1, ValueType::String},
};

constexpr const char* kNames[] = {"string",         "16-bit integer", "32-bit integer",
                                  "64-bit integer", "double",         "bool",
                                  "handle",         "binary",         "unknown"};

constexpr int kLowest = -5, kHighest = 1071;

// The catalogue by code, made once when compiled: every group of a file asks.
constexpr auto kByCode = [] {
    std::array<ValueType, kHighest - kLowest + 1> byCode{};
    byCode.fill(ValueType::Unknown);
    for (const Range& r : kRanges)
        for (int code = r.first; code <= r.last; ++code)
            if (byCode[code - kLowest] == ValueType::Unknown) byCode[code - kLowest] = r.type;
    return byCode;
}();

} // namespace

ValueType valueType(int code) {
    if (code < kLowest || code > kHighest) return ValueType::Unknown;
    return kByCode[code - kLowest];
}

const char* valueTypeName(ValueType type) {
    return kNames[static_cast<int>(type)];
}

} // namespace dxf
