// ToviQel64: the QEL object-file library.
//
// A QEL file is a store of numbered objects. An object has a class name and an ordered list of
// named, typed params; a param may hold another object, which then lives inside its parent.
// Objects are numbered 0, 1, 2 ... in the order they were written, and can also be found by
// class name. The byte format is described in docs/qel-format.md.
//
// Ownership:
//  - QelObject is reference counted. Create() and QelReader::ReadObject() hand the caller one
//    reference, which the caller gives up with UnRef(); the object dies with its last reference.
//  - A param belongs to the object it was added to. A nested object belongs to its param: the
//    pointer from GetValue(QelObject*&) is borrowed and lives as long as its parent.
//  - QelParam::Create(name, QelObject*) takes a reference of its own; the caller still releases
//    the reference it got from Create().
//
// Errors: Open, ReadObject, WriteObject, Close and the opening constructors throw QelException
// (by value); its reason names the file, the object number and what is wrong.
#pragma once

#include <cstdint>

enum QelParamType : int {
    QelUnknownType = 0,
    QelBoolType = 1,
    QelShortType = 4,
    QelIntType = 6,
    QelUIntType = 7,
    QelFloatType = 8,
    QelDoubleType = 11,
    QelStringType = 12,
    QelObjectType = 13,
    // Arrays are their scalar's number plus 13.
    QelByteArrayType = 16,
    QelShortArrayType = 17,
    QelIntArrayType = 19,
    QelUIntArrayType = 20,
    QelFloatArrayType = 21,
    QelDoubleArrayType = 24,
};

class QelException {
public:
    explicit QelException(const char* reason);
    QelException(const QelException& other);
    QelException& operator=(const QelException& other);
    virtual ~QelException();

    // The text shown to the user as it stands.
    const char* GetReason() const;

private:
    char* m_reason;
};

class QelObject;
// The library's own access to the internals of its classes.
struct QelAccess;

class QelParam {
public:
    const char* GetName() const;
    QelParamType GetType() const;
    // Element count of an array param; 0 for scalars.
    unsigned GetArraySize() const;

    // Scalar reads. A read whose type does not match the param's throws QelException, except
    // that the integer and floating types convert among themselves as C++ does.
    void GetValue(bool& value) const;
    void GetValue(short& value) const;
    void GetValue(int& value) const;
    void GetValue(unsigned& value) const;
    void GetValue(float& value) const;
    void GetValue(double& value) const;
    // The text belongs to the param.
    void GetValue(const char*& value) const;
    // Borrowed: lives as long as the param's object.
    void GetValue(QelObject*& value) const;

    // Array reads. With copy == false the pointer is the param's own storage (for a param read
    // from a file, the mapped file itself): read in place, don't free. With copy == true the
    // caller receives a copy allocated with new[] and frees it with delete[]. An array of zero
    // elements gives count 0 and a null pointer. A mismatched element type throws.
    void GetValue(double*& values, unsigned& count, bool copy);
    void GetValue(float*& values, unsigned& count, bool copy);
    void GetValue(short*& values, unsigned& count, bool copy);
    void GetValue(unsigned char*& values, unsigned& count, bool copy);
    void GetValue(int*& values, unsigned& count, bool copy);
    void GetValue(unsigned*& values, unsigned& count, bool copy);

    static QelParam* Create(const char* name, const char* value);
    static QelParam* Create(const char* name, double value);
    static QelParam* Create(const char* name, int value);
    static QelParam* Create(const char* name, unsigned value);
    static QelParam* Create(const char* name, short value);
    static QelParam* Create(const char* name, float value);
    static QelParam* Create(const char* name, bool value);
    static QelParam* Create(const char* name, QelObject* value);
    // The values are copied.
    static QelParam* Create(const char* name, const double* values, unsigned count);
    static QelParam* Create(const char* name, const float* values, unsigned count);
    static QelParam* Create(const char* name, const int* values, unsigned count);
    static QelParam* Create(const char* name, const unsigned* values, unsigned count);
    static QelParam* Create(const char* name, const short* values, unsigned count);
    static QelParam* Create(const char* name, const unsigned char* values, unsigned count);

    QelParam(const QelParam&) = delete;
    QelParam& operator=(const QelParam&) = delete;

    struct Impl;

private:
    friend struct QelAccess;
    explicit QelParam(Impl* impl);
    ~QelParam();
    Impl* m_impl;
};

class QelObject {
public:
    // A new empty object with one reference held by the caller.
    static QelObject* Create(const char* className);

    const char* GetName() const;
    // The index-th param of that name (index 0: the first), or null.
    QelParam* GetParam(const char* name, unsigned index);
    // The param at that position in the object's order, or null past the end.
    QelParam* GetParam(unsigned position) const;
    unsigned GetParamCount() const;
    // Takes the param over. A param of the same name is replaced in place (keeping its
    // position); otherwise the param is appended. Null is ignored.
    void AddOrReplaceParam(QelParam* param);
    // Removes the first param of that name, if any.
    void DeleteParam(const char* name);

    void AddRef();
    void UnRef();

    QelObject(const QelObject&) = delete;
    QelObject& operator=(const QelObject&) = delete;

    struct Impl;
    Impl* GetImpl() const { return m_impl; }

private:
    friend struct QelAccess;
    explicit QelObject(Impl* impl);
    ~QelObject();
    Impl* m_impl;
};

class QelReader {
public:
    QelReader();
    explicit QelReader(const char* path);
    ~QelReader();

    void Open(const char* path);
    void Close();
    bool IsOpen() const;

    // The object with that reference number, or null when the file has no such number. A damaged
    // object throws. The caller owns one reference.
    QelObject* ReadObject(unsigned id);
    // The index-th object written with that class name, or null.
    QelObject* ReadObject(const char* className, unsigned index);

    // Number of objects in the file.
    unsigned GetObjectCount() const;
    // Stored size in bytes of one object, or 0 when there is no such number.
    std::uint64_t GetObjectSize(unsigned id) const;

    QelReader(const QelReader&) = delete;
    QelReader& operator=(const QelReader&) = delete;

    struct Impl;

private:
    Impl* m_impl;
};

class QelWriter {
public:
    QelWriter();
    // Opens for writing at once.
    explicit QelWriter(const char* path);
    // Without Close, what was written is dropped and any file already at the path is untouched.
    ~QelWriter();

    // Starts a new file. Objects go to a temporary file beside the target; the target is
    // replaced only when Close succeeds.
    void Open(const char* path);
    // Writes the object (and its nested objects) and returns its reference number.
    unsigned WriteObject(const QelObject* object);
    // Finishes the file and puts it in place of the target.
    void Close();
    bool IsOpen() const;

    QelWriter(const QelWriter&) = delete;
    QelWriter& operator=(const QelWriter&) = delete;

    struct Impl;

private:
    Impl* m_impl;
};

// Must be called before any reader or writer does work; repeated calls are harmless. The two
// numbers are 0 and 0; words points at QelInitWords.
void QelInit(unsigned reserved0, unsigned reserved1, const std::uint32_t* words);
extern const std::uint32_t QelInitWords[2];

// 3x3 rotation matrix (row by row) to and from the four-number rotation of a QEL "rotation"
// param: axis x, y, z, then the angle in radians. A zero rotation gives axis (0,0,1), angle 0.
void rotation_from_affine(double rotation[4], const double matrix[9]);
void rotation_to_affine(const double rotation[4], double matrix[9]);
