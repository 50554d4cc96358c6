// System variables: each with its type, where it is kept, its range and its default.
#include "host.h"

#include <arx/acdb.h>
#include <win/transcript.h>

#include <cmath>
#include <functional>

namespace qelhost {

namespace {

enum class Keep {
    kHost,     // one value for the session
    kDocument, // one value per open drawing
    kDrawing,  // read from and written to the drawing's own state
};

struct VarRow {
    const wchar_t* name;
    int type; // RTSHORT, RTREAL, RTSTR, RT3DPOINT
    Keep keep;
    bool readOnly;
    short low, high; // range of a short
    VarValue initial;
};

// The catalogue. Values kept with the drawing have no default of their own here.
// clang-format off
const VarRow kVariables[] = {
    // name          type        kept              read-only  range      default
    {L"ACADVER",      RTSTR,      Keep::kHost,      true,      0, 0,      std::wstring(L"19.1")},
    {L"CLAYER",       RTSTR,      Keep::kDrawing,   false,     0, 0,      std::wstring()},
    {L"CMDDIA",       RTSHORT,    Keep::kHost,      false,     0, 1,      short(1)},
    {L"CMDECHO",      RTSHORT,    Keep::kHost,      false,     0, 1,      short(1)},
    {L"DWGNAME",      RTSTR,      Keep::kDrawing,   true,      0, 0,      std::wstring()},
    {L"DWGPREFIX",    RTSTR,      Keep::kDrawing,   true,      0, 0,      std::wstring()},
    {L"ELEVATION",    RTREAL,     Keep::kDocument,  false,     0, 0,      0.0},
    {L"FILEDIA",      RTSHORT,    Keep::kHost,      false,     0, 1,      short(1)},
    {L"INSUNITS",     RTSHORT,    Keep::kDocument,  false,     0, 20,     short(4)},
    {L"MEASUREINIT",  RTSHORT,    Keep::kHost,      false,     0, 1,      short(1)},
    {L"MENUBAR",      RTSHORT,    Keep::kHost,      false,     0, 1,      short(0)},
    {L"OSMODE",       RTSHORT,    Keep::kHost,      false,     0, 32767,  short(4133)},
    {L"TEXTSIZE",     RTREAL,     Keep::kDocument,  false,     0, 0,      2.5},
    {L"THICKNESS",    RTREAL,     Keep::kDocument,  false,     0, 0,      0.0},
    {L"UCSFOLLOW",    RTSHORT,    Keep::kDocument,  false,     0, 1,      short(0)},
    {L"UCSICON",      RTSHORT,    Keep::kDocument,  false,     0, 3,      short(3)},
    {L"UCSORG",       RT3DPOINT,  Keep::kDrawing,   true,      0, 0,      AcGePoint3d()},
    {L"UCSXDIR",      RT3DPOINT,  Keep::kDrawing,   true,      0, 0,      AcGePoint3d()},
    {L"UCSYDIR",      RT3DPOINT,  Keep::kDrawing,   true,      0, 0,      AcGePoint3d()},
};
// clang-format on

std::map<std::wstring, VarValue>& hostValues() {
    static std::map<std::wstring, VarValue> values;
    return values;
}

const VarRow* findRow(const ACHAR* name) {
    if (name == nullptr) return nullptr;
    const std::wstring key = upper(name);
    for (const VarRow& row : kVariables)
        if (key == row.name) return &row;
    return nullptr;
}

AcGePoint3d asPoint(const AcGeVector3d& v) {
    return {v.x, v.y, v.z};
}

// Variables that are the drawing's own state.
std::optional<VarValue> drawingValue(const std::wstring& name, Document& doc) {
    AcDbDatabase* db = doc.database();
    if (name == L"DWGNAME") return doc.title;
    if (name == L"DWGPREFIX") return doc.prefix;
    if (name == L"UCSORG") return db->ucsorg();
    if (name == L"UCSXDIR") return asPoint(db->ucsxdir());
    if (name == L"UCSYDIR") return asPoint(db->ucsydir());
    if (name == L"CLAYER") {
        AcDbLayerTableRecord* layer = nullptr;
        if (acdbOpenObject(layer, db->clayer(), AcDb::kForRead) != Acad::eOk) return std::nullopt;
        std::wstring text = layer->name();
        layer->close();
        return text;
    }
    return std::nullopt;
}

// The current layer can be any existing layer that is not frozen.
bool setClayer(Document& doc, const std::wstring& name) {
    AcDbDatabase* db = doc.database();
    AcDbLayerTable* table = nullptr;
    if (db->getLayerTable(table, AcDb::kForRead) != Acad::eOk) return false;
    AcDbLayerTableRecord* layer = nullptr;
    const Acad::ErrorStatus es = table->getAt(name.c_str(), layer, AcDb::kForRead);
    table->close();
    if (es != Acad::eOk) return false;
    const bool frozen = layer->isFrozen();
    const AcDbObjectId id = layer->objectId();
    layer->close();
    return !frozen && db->setClayer(id) == Acad::eOk;
}

std::optional<VarValue> valueOf(const VarRow& row) {
    Document* doc = currentDocument();
    switch (row.keep) {
    case Keep::kHost: {
        auto it = hostValues().find(row.name);
        return it != hostValues().end() ? it->second : row.initial;
    }
    case Keep::kDocument: {
        if (doc == nullptr) return std::nullopt;
        auto it = doc->vars.find(row.name);
        return it != doc->vars.end() ? it->second : row.initial;
    }
    case Keep::kDrawing:
        if (doc == nullptr) return std::nullopt;
        return drawingValue(row.name, *doc);
    }
    return std::nullopt;
}

// Checks and stores a value of the row's type; false when the variable refuses it.
bool store(const VarRow& row, const VarValue& value) {
    if (row.type == RTSHORT) {
        const short v = std::get<short>(value);
        if (v < row.low || v > row.high) return false;
    }
    if (row.type == RTREAL) {
        const double v = std::get<double>(value);
        if (!std::isfinite(v) || (std::wstring_view(row.name) == L"TEXTSIZE" && v <= 0.0))
            return false;
    }
    Document* doc = currentDocument();
    switch (row.keep) {
    case Keep::kHost:
        hostValues()[row.name] = value;
        return true;
    case Keep::kDocument:
        if (doc == nullptr) return false;
        doc->vars[row.name] = value;
        return true;
    case Keep::kDrawing:
        if (doc == nullptr || std::wstring(row.name) != L"CLAYER") return false;
        return setClayer(*doc, std::get<std::wstring>(value));
    }
    return false;
}

// The value a buffer carries, if it has the row's type.
std::optional<VarValue> fromBuffer(const VarRow& row, const resbuf& rb) {
    switch (row.type) {
    case RTSHORT:
        if (rb.restype == RTSHORT) return rb.resval.rint;
        if (rb.restype == RTLONG && rb.resval.rlong >= -32768 && rb.resval.rlong <= 32767)
            return short(rb.resval.rlong);
        return std::nullopt;
    case RTREAL:
        if (rb.restype == RTREAL) return rb.resval.rreal;
        if (rb.restype == RTSHORT) return double(rb.resval.rint);
        return std::nullopt;
    case RTSTR:
        if (rb.restype == RTSTR && rb.resval.rstring != nullptr)
            return std::wstring(rb.resval.rstring);
        return std::nullopt;
    case RT3DPOINT:
        if (rb.restype == RT3DPOINT || rb.restype == RTPOINT)
            return AcGePoint3d(rb.resval.rpoint[0], rb.resval.rpoint[1],
                               rb.restype == RTPOINT ? 0.0 : rb.resval.rpoint[2]);
        return std::nullopt;
    }
    return std::nullopt;
}

} // namespace

// The value written as SETVAR shows it.
std::wstring variableText(const std::wstring& name, bool& known) {
    const VarRow* row = findRow(name.c_str());
    known = row != nullptr;
    if (!row) return {};
    std::optional<VarValue> value = valueOf(*row);
    if (!value) return L"(no drawing)";
    return std::visit(
        [](const auto& v) -> std::wstring {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, std::wstring>)
                return L"\"" + v + L"\"";
            else if constexpr (std::is_same_v<T, AcGePoint3d>)
                return std::to_wstring(v.x) + L"," + std::to_wstring(v.y) + L"," +
                       std::to_wstring(v.z);
            else
                return std::to_wstring(v);
        },
        *value);
}

// Sets a variable from text typed at the command line: RTNORM, RTREJ for a read-only one,
// RTERROR for an unknown name or a value it refuses.
int setSystemVariable(const std::wstring& name, const std::wstring& text, bool force) {
    const VarRow* row = findRow(name.c_str());
    if (!row) return RTERROR;
    if (row->readOnly && !force) return RTREJ;
    VarValue value;
    if (row->type == RTSHORT) {
        wchar_t* end = nullptr;
        const long v = std::wcstol(text.c_str(), &end, 10);
        if (text.empty() || *end != L'\0' || v < -32768 || v > 32767) return RTERROR;
        value = short(v);
    } else if (row->type == RTREAL) {
        wchar_t* end = nullptr;
        const double v = std::wcstod(text.c_str(), &end);
        if (text.empty() || *end != L'\0') return RTERROR;
        value = v;
    } else if (row->type == RTSTR) {
        value = text;
    } else {
        return RTERROR;
    }
    if (row->readOnly && force && row->keep == Keep::kHost) {
        hostValues()[row->name] = value;
        return RTNORM;
    }
    return store(*row, value) ? RTNORM : RTERROR;
}

bool isReadOnlyVariable(const std::wstring& name) {
    const VarRow* row = findRow(name.c_str());
    return row != nullptr && row->readOnly;
}

void resetVariables() {
    hostValues().clear();
}

} // namespace qelhost

using namespace qelhost;

int acedGetVar(const ACHAR* sym, resbuf* result) {
    const VarRow* row = findRow(sym);
    if (row == nullptr || result == nullptr) return RTERROR;
    std::optional<VarValue> value = valueOf(*row);
    if (!value) return RTERROR;
    // The buffer's old value is not looked at: callers pass buffers fresh from the stack.
    result->restype = short(row->type);
    switch (row->type) {
    case RTSHORT:
        result->resval.rint = std::get<short>(*value);
        break;
    case RTREAL:
        result->resval.rreal = std::get<double>(*value);
        break;
    case RTSTR:
        result->resval.rstring = acutNewString(std::get<std::wstring>(*value).c_str());
        break;
    case RT3DPOINT: {
        const AcGePoint3d p = std::get<AcGePoint3d>(*value);
        result->resval.rpoint[0] = p.x;
        result->resval.rpoint[1] = p.y;
        result->resval.rpoint[2] = p.z;
        break;
    }
    }
    return RTNORM;
}

int acedSetVar(const ACHAR* sym, const resbuf* value) {
    const VarRow* row = findRow(sym);
    if (row == nullptr || value == nullptr) return RTERROR;
    if (row->readOnly) return RTREJ;
    std::optional<VarValue> v = fromBuffer(*row, *value);
    if (!v) return RTERROR;
    return store(*row, *v) ? RTNORM : RTERROR;
}
