// The one way the importers read params: find the param by name, test its type where it could
// hold several, copy the value out (lengths, for the creators, in drawing units). Each returns
// false when the param is absent (or of the wrong type, which counts as absent) and then leaves
// the output alone. A mistyped param that is read untested is refused by the library; the
// dispatcher fails that object.
//
// Reals are checked where they are read: a value that is not a finite number is never handed
// out. It is told (object number, class, param and value) and the object being read is marked
// refused, so that the dispatcher counts it as failed.
#pragma once

#include "foundation/growing_array.h"

#include <arx/arx.h>

#include <qel/qel.h>
#include <win/win.h>

#include <memory>

// An object that came from ReadObject or Create, released with UnRef when its handling ends.
struct QelUnref {
    void operator()(QelObject* object) const {
        if (object) object->UnRef();
    }
};
using QelObjectRef = std::unique_ptr<QelObject, QelUnref>;

// The param of that name, or null (a null object too). Every param an importer reads by name is
// found here.
QelParam* QelParamOf(QelObject* object, const char* name);
// While set, told the object and the name of every param QelParamOf is asked for: for checking
// that the importers ask only for params the catalogue has. Null stops it.
using QelParamReadWatcher = void (*)(QelObject& object, const char* name);
void QelWatchParamReads(QelParamReadWatcher watcher);

// The object whose params are read during its lifetime, for messages about its values; the
// dispatcher sets one per object (nested ones, as for a group's members, stack).
class QelReadingObject {
public:
    QelReadingObject(const char* className, unsigned reference);
    ~QelReadingObject();
    // True when a value of this object was refused.
    bool Refused() const { return m_refused; }
    QelReadingObject(const QelReadingObject&) = delete;
    QelReadingObject& operator=(const QelReadingObject&) = delete;

private:
    friend bool QelRefuseValue(const char*, double, const char*);
    const char* m_className;
    unsigned m_reference;
    bool m_refused = false;
    QelReadingObject* m_outer;
};

// Tells a value that is not used, with the object being read, the param's name and why, and
// marks the object refused. Always false.
bool QelRefuseValue(const char* name, double value, const char* why);
// True when every value is a finite number. Otherwise the first that is not is told with the
// object being read and the param's name, the object is marked refused, and false comes back.
bool QelFiniteValues(const char* name, const double* values, unsigned count);

// True for the types a number can be read from (the library converts among them).
bool QelIsNumberType(QelParamType type);

// A string param, turned wide.
bool QelReadString(QelObject* object, const char* name, CString& out);
// An unsigned param; a null object counts as absent.
bool QelReadUnsigned(QelObject* object, const char* name, unsigned& out);
bool QelReadInt(QelObject* object, const char* name, int& out);
// A short param, read as the library converts any number to it.
bool QelReadShort(QelObject* object, const char* name, short& out);
bool QelReadBool(QelObject* object, const char* name, bool& out);
// The first three elements of a double array (fewer when it has fewer; the rest stay).
bool QelReadDouble3(QelObject* object, const char* name, double out[3]);
// The red, green and blue of "diffuseColor" in the nested object "appearance".
bool QelReadColour(QelObject* object, unsigned char& red, unsigned char& green,
                   unsigned char& blue);

// Arrays, appended element by element to the plug-in's own array. The unsigned array of no
// elements counts as absent; the others are present and empty.
bool QelReadUnsignedArray(QelObject* object, const char* name, QelArray<unsigned>& out);
bool QelReadIntArray(QelObject* object, const char* name, QelArray<int>& out);
bool QelReadShortArray(QelObject* object, const char* name, QelArray<short>& out);
bool QelReadByteArray(QelObject* object, const char* name, QelArray<unsigned char>& out);

// Lengths and points of the creators. With convert, lengths go from metres to drawing units by
// the import's unit row and scale.

// A metres value of the file in drawing units.
double QelToDrawing(double metres);

bool GetDoubleParam(QelObject* object, const char* name, double& value, bool convert);
bool GetFloatParam(QelObject* object, const char* name, float& value, bool convert);
// The first three doubles of the param.
bool GetPointParam(QelObject* object, const char* name, AcGePoint3d& point, bool convert);
// Arrays test for a double array and treat any other type as absent; elements are appended.
bool GetDoubleArrayParam(QelObject* object, const char* name, AcGeDoubleArray& values,
                         bool convert);
// n points from 3n doubles (a trailing part of a point is ignored).
bool GetPoint3dArrayParam(QelObject* object, const char* name, AcGePoint3dArray& points,
                          bool convert);
// As GetPoint3dArrayParam; with convert, a last point whose file values lie within 1e-5 of the
// first point's in each of x, y and z is dropped.
bool GetFitPointArrayParam(QelObject* object, const char* name, AcGePoint3dArray& points,
                           bool convert);
// n points from 2n doubles.
bool GetPoint2dArrayParam(QelObject* object, const char* name, AcGePoint2dArray& points,
                          bool convert);
// "translation" of the object held in param name, converted.
bool GetPoseTranslation(QelObject* object, const char* name, AcGePoint3d& point);
// "rotation" of that object: axis x, y, z (passed through the conversion) and the angle.
bool GetPoseRotation(QelObject* object, const char* name, double quad[4]);
// The double subName of the object held in param name, converted.
bool GetSubObjectDouble(QelObject* object, const char* name, const char* subName, double& value);
// That double, converted; 0.0 after "\nError getting <what> of object." when absent.
double GetWidth(QelObject* object);
double GetDepth(QelObject* object);
double GetFlangeThickness(QelObject* object);
double GetWebThickness(QelObject* object);
double GetLength(QelObject* object);
// A required length, converted: when absent the class's message is reported and false returned.
bool QelRequireLength(QelObject* object, const char* name, double& value, const wchar_t* message);
// The same for a value used as it stands (angles).
bool QelRequireValue(QelObject* object, const char* name, double& value, const wchar_t* message);
