// The shared recipe of the creators: reading params (lengths through the metres-to-drawing
// conversion), the pose as two matrices, the import transform of the chosen coordinate system,
// colour, model space, regions, the anonymous group of an object, its tag and centre lines.
#pragma once

#include "records/member_record.h"

#include <arx/arx.h>
#include <arx/dbregion.h>
#include <qel/qel.h>
#include <win/win.h>

// ---- Reading. True when the param was found; the output is left alone otherwise. With convert,
// lengths go from metres to drawing units by the import's unit row and scale.

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

// ---- Placement.

// The object's "pose" as a translation and a rotation about the axis through its origin.
// Without a pose, or without either part, that part is the identity (every class's default
// rotation has the angle 0).
void PoseMatrices(QelObject* object, AcGeMatrix3d& translation, AcGeMatrix3d& rotation);
// The same, also giving the translation read (origin without one).
void PoseMatrices(QelObject* object, AcGeMatrix3d& translation, AcGeMatrix3d& rotation,
                  AcGePoint3d& origin);
// From the file's chosen coordinate system to the host's world: a move by minus the selected
// translation, then the rotation by minus the selected angle about its axis at the origin.
void ApplyImportTransform(AcDbEntity* entity);
// The matrix ApplyImportTransform applies.
AcGeMatrix3d QelImportTransform();
// Colour by layer under the override; otherwise the nearest colour index of the appearance's
// "diffuseColor" (white without one), and hidden inside an exclusion volume.
void ApplyColour(QelObject* object, AcDbEntity* entity);

// ---- Model space. The entity comes in new, not yet in a database.

// Opens "*Model_Space"; "Could not get block table" and null on failure.
AcDbBlockTableRecord* OpenModelSpace(AcDb::OpenMode mode);
// Appends to model space and closes record and entity. On failure prints "\nError appending
// object to database.", deletes the entity and returns the status.
Acad::ErrorStatus AppendToModelSpace(AcDbEntity* entity);
// Appends to the current space of the working database and closes the record (the entity stays
// open); 3 when the record did not open.
Acad::ErrorStatus AddToCurrentSpace(AcDbEntity* entity);
// A reference to the block placed by translation, rotation and the import transform at scale 1,
// coloured and appended to model space (and closed); null after notFound when the block is not
// there, or after notAppended.
AcDbBlockReference* QelInsertBlock(QelObject* object, AcDbObjectId block,
                                   const AcGeMatrix3d& translation, const AcGeMatrix3d& rotation,
                                   const wchar_t* notFound, const wchar_t* notAppended);
// The first region made of the curves, appended to the record (open for write) and left open;
// null after the region message, counted as an error.
AcDbRegion* CreateRegion(const AcDbVoidPtrArray& curves, AcDbBlockTableRecord* blockRecord);
// The region of one curve (downgraded, then closed).
AcDbRegion* RegionFromCurve(AcDbCurve* curve, AcDbBlockTableRecord* blockRecord);

// ---- Names and numbers.

// Large enough for any double in the fixed form.
inline constexpr int QelFormatDoubleSize = 352;
// "%lf": six decimals whatever digits says. Writes into buffer and returns it.
const wchar_t* FormatDouble(double value, int digits, wchar_t* buffer);
// The same as a string.
CString QelFormatDouble(double value);
// Back to the world coordinate system through the host's command.
void ResetUcs();

// ---- Group and tag.

// One anonymous group of an object: made with the class's group name as its description,
// selectable, put into the group dictionary under key and made anonymous. The group stays open
// for write for the creator to append to and close; name gets the generated name. Null (and
// the group deleted) if the dictionary refused it.
AcDbGroup* QelMakeObjectGroup(const ACHAR* groupName, const ACHAR* key, CString& name);
// Appends the entity's id to the group when both exist.
void QelGroupAppend(AcDbGroup* group, AcDbObjectId id);
// Closes the group if there is one.
void QelCloseGroup(AcDbGroup* group);

// The parts of a record that say where the object came from: objectIndex, filePath, context,
// groupName, and groupSerial (maxGroupNumber inside a geometric group, else 0).
void QelFillRecordOrigin(QelMemberRecord& record, unsigned objIndex, const CString* filePath,
                         const CString& groupName);
// Stores the record on the entity and, when text is given, appends it to the entity's extended
// data.
void QelTagEntity(AcDbEntity* entity, QelMemberRecord& record, const ACHAR* text);
// Opens the entity for write to append one extended data text, then closes it.
void QelAddXDataById(AcDbObjectId id, const ACHAR* text);
// The group of an object with its one entity: the group made, the entity (when not null)
// appended to it, and the record, filled with where the object came from, stored on the entity
// with the extended data text. The group stays open for write (null if it could not be made).
AcDbGroup* QelGroupAndTag(AcDbEntity* entity, const ACHAR* groupName, const ACHAR* key,
                          QelMemberRecord& record, unsigned objIndex, const CString* filePath,
                          const ACHAR* text);
// The whole end of the recipe for an object of one entity: QelGroupAndTag without the text, the
// annotations placed by the two matrices and tied to the group, the group closed, then the
// extended data text on the entity.
void QelGroupTagAnnotate(QelObject* object, AcDbEntity* entity, const ACHAR* groupName,
                         const ACHAR* key, QelMemberRecord& record, unsigned objIndex,
                         const CString* filePath, const AcGeMatrix3d& translation,
                         const AcGeMatrix3d& rotation, const ACHAR* text);

// ---- Centre lines: a line coloured, placed by both matrices and the import transform, appended
// to model space and tagged with memberType 28 and "Center Line". Not a member of any group. The
// id of the line, null when it could not be appended.
AcDbObjectId AddCenterLine(QelObject* object, const AcGePoint3d& from, const AcGePoint3d& to,
                           const AcGeMatrix3d& translation, const AcGeMatrix3d& rotation,
                           unsigned objIndex, const CString* filePath);
// From the origin to (0, 0, height).
AcDbObjectId AddAxisCenterLine(QelObject* object, double height, const AcGeMatrix3d& translation,
                               const AcGeMatrix3d& rotation, unsigned objIndex,
                               const CString* filePath);
