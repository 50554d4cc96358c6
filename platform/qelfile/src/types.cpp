// The catalogue of param types: their element sizes and their names in texts.
#include "param_impl.h"

#include <qel/qel_types.h>

#include <string_view>

namespace qel {

namespace {
struct TypeRow {
    QelParamType type;
    const char* name;
    std::size_t elementSize; // arrays only
};

constexpr TypeRow kTypes[] = {
    {QelBoolType, "bool", 0},
    {QelShortType, "short", 0},
    {QelIntType, "int", 0},
    {QelUIntType, "uint", 0},
    {QelFloatType, "float", 0},
    {QelDoubleType, "double", 0},
    {QelStringType, "string", 0},
    {QelObjectType, "object", 0},
    {QelByteArrayType, "byte[]", 1},
    {QelShortArrayType, "short[]", 2},
    {QelIntArrayType, "int[]", 4},
    {QelUIntArrayType, "uint[]", 4},
    {QelFloatArrayType, "float[]", 4},
    {QelDoubleArrayType, "double[]", 8},
};

const TypeRow* find(QelParamType type) {
    for (const auto& row : kTypes)
        if (row.type == type) return &row;
    return nullptr;
}
} // namespace

std::size_t elementSize(QelParamType type) {
    const TypeRow* row = find(type);
    return row ? row->elementSize : 0;
}

bool isArray(QelParamType type) {
    return elementSize(type) != 0;
}

const char* typeName(QelParamType type) {
    const TypeRow* row = find(type);
    return row ? row->name : "unknown";
}

} // namespace qel

const char* QelTypeName(QelParamType type) {
    return qel::typeName(type);
}

QelParamType QelTypeFromName(const char* name) {
    if (!name) return QelUnknownType;
    for (const auto& row : qel::kTypes)
        if (std::string_view(row.name) == name) return row.type;
    return QelUnknownType;
}

unsigned QelArrayElementSize(QelParamType type) {
    return static_cast<unsigned>(qel::elementSize(type));
}
