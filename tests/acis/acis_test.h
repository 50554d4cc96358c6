// Shared helpers of the SAT codec's tests: bodies to entities, entities through SAT and back,
// and the measures that must survive.
#pragma once

#include <acis/sat.h>
#include <arx/dbregion.h>
#include <arx/dbsol3d.h>

#include "checks.h"

namespace acistest {

using namespace solidstest;

// SAT of a solid body, failing the test when the writer refuses it.
inline std::string satOf(const Solid& body) {
    AcDb3dSolid entity;
    EXPECT_EQ(entity.setBody(body), Acad::eOk);
    std::string sat, message;
    EXPECT_EQ(acis::satFromEntity(&entity, sat, message), Acad::eOk) << message;
    return sat;
}

inline std::string satOf(const Region& body) {
    AcDbRegion entity;
    EXPECT_EQ(entity.setBody(body), Acad::eOk);
    std::string sat, message;
    EXPECT_EQ(acis::satFromEntity(&entity, sat, message), Acad::eOk) << message;
    return sat;
}

// The body a SAT text gives a fresh solid; empty (with a test failure) when it does not read.
inline Solid solidFromSat(const std::string& sat) {
    AcDb3dSolid entity;
    std::string message;
    EXPECT_EQ(acis::entityFromSat(sat, &entity, message), Acad::eOk) << message;
    EXPECT_TRUE(entity.rawSat().empty()) << message;
    return entity.body();
}

inline Region regionFromSat(const std::string& sat) {
    AcDbRegion entity;
    std::string message;
    EXPECT_EQ(acis::entityFromSat(sat, &entity, message), Acad::eOk) << message;
    EXPECT_TRUE(entity.rawSat().empty()) << message;
    return entity.body();
}

} // namespace acistest
