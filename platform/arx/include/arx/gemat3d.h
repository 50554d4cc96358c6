// AcGeMatrix3d: a 4 by 4 affine transformation acting on column vectors.
#pragma once

#include "arx/gevec.h"

class AcGeMatrix3d {
public:
    AcGeMatrix3d();
    static const AcGeMatrix3d kIdentity;

    AcGeMatrix3d& setToIdentity();
    AcGeMatrix3d& setToTranslation(const AcGeVector3d& v);
    // Rotation by angle (radians, right-handed) about the axis through center.
    AcGeMatrix3d& setToRotation(double angle, const AcGeVector3d& axis,
                                const AcGePoint3d& center = AcGePoint3d::kOrigin);
    AcGeMatrix3d& setToScaling(double scale, const AcGePoint3d& center = AcGePoint3d::kOrigin);
    // The matrix that takes the first system (origin and axes) onto the second: a point with
    // coordinates (a, b, c) in the first lands at the point with those coordinates in the second.
    AcGeMatrix3d& setToAlignCoordSys(const AcGePoint3d& fromOrigin, const AcGeVector3d& fromXAxis,
                                     const AcGeVector3d& fromYAxis, const AcGeVector3d& fromZAxis,
                                     const AcGePoint3d& toOrigin, const AcGeVector3d& toXAxis,
                                     const AcGeVector3d& toYAxis, const AcGeVector3d& toZAxis);
    AcGeMatrix3d& setToWorldToPlane(const AcGeVector3d& normal);
    AcGeMatrix3d& setToPlaneToWorld(const AcGeVector3d& normal);
    AcGeMatrix3d& setCoordSystem(const AcGePoint3d& origin, const AcGeVector3d& xAxis,
                                 const AcGeVector3d& yAxis, const AcGeVector3d& zAxis);
    void getCoordSystem(AcGePoint3d& origin, AcGeVector3d& xAxis, AcGeVector3d& yAxis,
                        AcGeVector3d& zAxis) const;

    static AcGeMatrix3d translation(const AcGeVector3d& v);
    static AcGeMatrix3d rotation(double angle, const AcGeVector3d& axis,
                                 const AcGePoint3d& center = AcGePoint3d::kOrigin);
    static AcGeMatrix3d scaling(double scale, const AcGePoint3d& center = AcGePoint3d::kOrigin);
    static AcGeMatrix3d alignCoordSys(const AcGePoint3d& fromOrigin, const AcGeVector3d& fromXAxis,
                                      const AcGeVector3d& fromYAxis, const AcGeVector3d& fromZAxis,
                                      const AcGePoint3d& toOrigin, const AcGeVector3d& toXAxis,
                                      const AcGeVector3d& toYAxis, const AcGeVector3d& toZAxis);
    static AcGeMatrix3d worldToPlane(const AcGeVector3d& normal);
    static AcGeMatrix3d planeToWorld(const AcGeVector3d& normal);

    AcGeVector3d translation() const;
    // The largest factor by which the matrix stretches a unit vector along a world axis.
    double scale() const;
    double det() const;
    // The inverse; a singular matrix gives itself back unchanged.
    AcGeMatrix3d inverse() const;
    AcGeMatrix3d& invert();
    AcGeMatrix3d transpose() const;
    bool isSingular(const AcGeTol& tol = AcGeContext::gTol) const;
    bool isEqualTo(const AcGeMatrix3d& m, const AcGeTol& tol = AcGeContext::gTol) const;
    // True when the matrix keeps lengths and angles up to one common factor.
    bool isUniScaledOrtho(const AcGeTol& tol = AcGeContext::gTol) const;

    AcGeMatrix3d& setToProduct(const AcGeMatrix3d& a, const AcGeMatrix3d& b);
    AcGeMatrix3d& preMultBy(const AcGeMatrix3d& left);
    AcGeMatrix3d& postMultBy(const AcGeMatrix3d& right);
    AcGeMatrix3d operator*(const AcGeMatrix3d& m) const;
    AcGeMatrix3d& operator*=(const AcGeMatrix3d& m);
    bool operator==(const AcGeMatrix3d& m) const { return isEqualTo(m); }

    double operator()(unsigned row, unsigned col) const { return entry[row][col]; }
    double& operator()(unsigned row, unsigned col) { return entry[row][col]; }

    double entry[4][4];
};
