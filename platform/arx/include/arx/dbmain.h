// Database objects and entities: ownership, open and close, records riding on objects.
#pragma once

#include <memory>

#include "arx/acadstrc.h"
#include "arx/adsdef.h"
#include "arx/cm.h"
#include "arx/dbid.h"
#include "arx/gelinear.h"
#include "arx/rxobject.h"

struct AcDb {
    enum OpenMode { kNotOpen = -1, kForRead = 0, kForWrite = 1, kForNotify = 2 };
    enum Visibility { kVisible = 0, kInvisible = 1 };
    enum Poly2dType {
        k2dSimplePoly = 0,
        k2dFitCurvePoly = 1,
        k2dQuadSplinePoly = 2,
        k2dCubicSplinePoly = 3
    };
    enum Poly3dType { k3dSimplePoly = 0, k3dQuadSplinePoly = 1, k3dCubicSplinePoly = 2 };
    enum Vertex2dType {
        k2dVertex = 0,
        k2dSplineCtlVertex = 1,
        k2dSplineFitVertex = 2,
        k2dCurveFitVertex = 3
    };
    enum Vertex3dType { k3dSimpleVertex = 0, k3dControlVertex = 1, k3dFitVertex = 2 };
    enum PolyMeshType {
        kSimpleMesh = 0,
        kQuadSurfaceMesh = 5,
        kCubicSurfaceMesh = 6,
        kBezierSurfaceMesh = 8
    };
    enum PolyMeshVertexType {
        kPolyMeshVertex = 0,
        kPolyMeshControlVertex = 1,
        kPolyMeshFitVertex = 2
    };
    enum TextHorzMode {
        kTextLeft = 0,
        kTextCenter = 1,
        kTextRight = 2,
        kTextAlign = 3,
        kTextMid = 4,
        kTextFit = 5
    };
    enum TextVertMode { kTextBase = 0, kTextBottom = 1, kTextVertMid = 2, kTextTop = 3 };
    enum BoolOperType { kBoolUnite = 0, kBoolIntersect = 1, kBoolSubtract = 2 };
};

class AcDbDatabase;
class AcDbDictionary;

class AcDbExtents {
public:
    AcDbExtents();
    AcDbExtents(const AcGePoint3d& min, const AcGePoint3d& max) : min_(min), max_(max) {}
    AcGePoint3d minPoint() const { return min_; }
    AcGePoint3d maxPoint() const { return max_; }
    Acad::ErrorStatus set(const AcGePoint3d& min, const AcGePoint3d& max);
    void addPoint(const AcGePoint3d& p);
    void addExt(const AcDbExtents& other);
    // The box together with itself moved by v.
    void expandBy(const AcGeVector3d& v);
    // The box of the eight transformed corners.
    void transformBy(const AcGeMatrix3d& m);
    bool isEmpty() const { return min_.x > max_.x; }

private:
    AcGePoint3d min_, max_;
};

// Internal access of the host to objects; see src/db/objectimpl.h.
struct AcDbImpl;

class AcDbObject : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbObject);
    ~AcDbObject() override;

    AcDbObjectId objectId() const;
    AcDbObjectId ownerId() const;
    AcDbDatabase* database() const;
    AcDbHandle handle() const;
    void getAcDbHandle(AcDbHandle& handle) const { handle = this->handle(); }

    bool isNewObject() const { return stub_ == nullptr; }
    bool isErased() const;
    bool isReadEnabled() const { return readers_ > 0 || writeOpen_; }
    bool isWriteEnabled() const { return writeOpen_; }

    // Ends this opening. A new object, never added to a database, is left to its creator.
    Acad::ErrorStatus close();
    // From read to write: fails while another reader holds the object.
    Acad::ErrorStatus upgradeOpen();
    Acad::ErrorStatus downgradeOpen();
    // Erases, or with false brings an erased object back. Needs the object open for write.
    Acad::ErrorStatus erase(bool erasing = true);

    AcDbObjectId extensionDictionary() const;
    // eAlreadyInDb when the object has one already.
    Acad::ErrorStatus createExtensionDictionary();

    // Extended data of one registered application, or of all with null; a chain the caller
    // frees with acutRelRb, or null when there is none.
    resbuf* xData(const ACHAR* regappName = nullptr) const;
    // Replaces the data of each application named (group 1001) in the chain; an application
    // followed by no data loses its data. Each application must be registered in the database.
    Acad::ErrorStatus setXData(const resbuf* chain);

    void addPersistentReactor(AcDbObjectId id);
    Acad::ErrorStatus removePersistentReactor(AcDbObjectId id);
    bool hasPersistentReactor(AcDbObjectId id) const;
    // Reactors of the object; persistent ones are told apart by acdbIsPersistentReactor.
    const AcDbVoidPtrArray* reactors() const;

protected:
    AcDbObject();
    // A copy has the data of the other object, its extended data included, but no identity:
    // no id, owner, extension dictionary or reactors, and it is new and open for write.
    AcDbObject(const AcDbObject& other);
    AcDbObject& operator=(const AcDbObject&) = delete;
    // Called once the object is resident; objects with parts (vertices) add them here.
    virtual void addedToDatabase() {}
    // Fails with eNotOpenForWrite unless the object is open for write.
    Acad::ErrorStatus assertWriteEnabled() const;

private:
    friend struct AcDbImpl;
    struct Extras;

    AcDbStub* stub_ = nullptr;
    AcDbStub* owner_ = nullptr;
    AcDbStub* extensionDictionary_ = nullptr;
    AcDbStub* firstReactor_ = nullptr;
    std::unique_ptr<unsigned char[]> xdata_;
    mutable std::unique_ptr<Extras> extras_;
    Adesk::UInt16 readers_ = 0;
    bool writeOpen_ = true;
    // Set by the two kinds that may fold when closed (dictionary, X-record): a closing asks
    // nothing more of other objects. Fills what was padding.
    Adesk::UInt8 foldKind_ = 0;
};

// Persistent reactors are object ids among the reactor pointers.
bool acdbIsPersistentReactor(void* reactor);
AcDbObjectId acdbPersistentReactorObjectId(void* reactor);

class AcDbEntity : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbEntity);

    AcDbObjectId blockId() const { return ownerId(); }
    // A copy of the layer name that the caller frees with acutDelString; null without a layer.
    ACHAR* layer() const;
    AcDbObjectId layerId() const;
    // eKeyNotFound when the layer does not exist in the entity's (or the working) database.
    Acad::ErrorStatus setLayer(const ACHAR* layerName, bool doSubents = true);
    Acad::ErrorStatus setLayer(AcDbObjectId layerId, bool doSubents = true);
    AcCmColor color() const { return AcCmColor(color_); }
    Acad::ErrorStatus setColor(const AcCmColor& color, bool doSubents = true);
    AcCmEntityColor entityColor() const { return color_; }
    Adesk::UInt16 colorIndex() const { return Adesk::UInt16(color_.colorIndex()); }
    // 0 by block, 256 by layer, 1 to 255 an index entry; other values give eInvalidInput.
    Acad::ErrorStatus setColorIndex(Adesk::UInt16 index, bool doSubents = true);
    AcDb::Visibility visibility() const { return visibility_; }
    Acad::ErrorStatus setVisibility(AcDb::Visibility visibility, bool doSubents = true);
    // Layer, colour and visibility of the other entity.
    Acad::ErrorStatus setPropertiesFrom(const AcDbEntity* other, bool doSubents = true);
    // Current layer of the database (the working one when null), colour by layer.
    void setDatabaseDefaults(AcDbDatabase* database = nullptr);

    virtual Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform);
    virtual Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const;
    // New entities, not in any database, that together draw this one; the caller owns them.
    virtual Acad::ErrorStatus explode(AcDbVoidPtrArray& entities) const;

protected:
    AcDbEntity() = default;
    // Copies the entity's own properties (not the geometry) onto a piece made by explode.
    void copyPropertiesTo(AcDbEntity* piece) const;

private:
    friend struct AcDbImpl;
    AcDbStub* layer_ = nullptr;
    AcCmEntityColor color_;
    AcDb::Visibility visibility_ = AcDb::kVisible;
};

// Curves: entities with start and end.
class AcDbCurve : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbCurve);
    virtual bool isClosed() const { return false; }
    virtual Acad::ErrorStatus getStartPoint(AcGePoint3d& point) const = 0;
    virtual Acad::ErrorStatus getEndPoint(AcGePoint3d& point) const = 0;

protected:
    AcDbCurve() = default;
};
