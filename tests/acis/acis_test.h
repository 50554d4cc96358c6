// Shared helpers of the SAT codec's tests: bodies to entities, entities through SAT and back,
// and the measures that must survive.
#pragma once

#include <acis/sat.h>

#include <arx/dbregion.h>
#include <arx/dbsol3d.h>
#include <type_traits>

#include "checks.h"

namespace acistest {

using namespace solidstest;

// The entity class that holds each kind of body.
template <typename Body>
using EntityOf = std::conditional_t<std::is_same_v<Body, Solid>, AcDb3dSolid, AcDbRegion>;

// SAT of a solid or region body, failing the test when the writer refuses it.
template <typename Body>
std::string satOf(const Body& body) {
    EntityOf<Body> entity;
    EXPECT_EQ(entity.setBody(body), Acad::eOk);
    std::string sat, message;
    EXPECT_EQ(acis::satFromEntity(&entity, sat, message), Acad::eOk) << message;
    return sat;
}

// The body a SAT text gives a fresh entity; empty (with a test failure) when it does not read.
template <typename Body>
Body bodyFromSat(const std::string& sat) {
    EntityOf<Body> entity;
    std::string message;
    EXPECT_EQ(acis::entityFromSat(sat, &entity, message), Acad::eOk) << message;
    EXPECT_TRUE(entity.rawSat().empty()) << message;
    return entity.body();
}
inline Solid solidFromSat(const std::string& sat) {
    return bodyFromSat<Solid>(sat);
}
inline Region regionFromSat(const std::string& sat) {
    return bodyFromSat<Region>(sat);
}

} // namespace acistest
