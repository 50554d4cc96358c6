// The entities' side: which body an entity holds, and what happens when the text cannot become
// one.
#include "acis/sat.h"

#include <arx/dbregion.h>
#include <arx/dbsol3d.h>

#include <type_traits>

#include "geometry.h"
#include "read.h"
#include "write.h"

namespace acis {
namespace {

using arxsolids::Status;

Acad::ErrorStatus written(const arxsolids::Brep& brep, bool region, std::string& sat,
                          std::string& message) {
    try {
        sat = writeSat(brep, region);
        return Acad::eOk;
    } catch (const Unrepresentable& e) {
        message = std::string("cannot write ") + e.what();
        return Acad::eNotImplementedYet;
    }
}

// All lumps as one boundary, their indices shifted past those before.
arxsolids::Brep merged(const std::vector<arxsolids::Brep>& lumps) {
    arxsolids::Brep out;
    for (const arxsolids::Brep& lump : lumps) {
        const int e0 = static_cast<int>(out.edges.size());
        const int v0 = static_cast<int>(out.vertices.size());
        for (arxsolids::BrepFace face : lump.faces) {
            for (auto& loop : face.loops) {
                for (auto& c : loop.coedges)
                    c.edge += e0;
                for (int& v : loop.vertices)
                    v += v0;
            }
            out.faces.push_back(std::move(face));
        }
        for (arxsolids::BrepEdge edge : lump.edges) {
            edge.startVertex += v0;
            edge.endVertex += v0;
            out.edges.push_back(std::move(edge));
        }
        out.vertices.insert(out.vertices.end(), lump.vertices.begin(), lump.vertices.end());
    }
    return out;
}

// The solid of all lumps: each closes on its own, and together they are their union.
Status solidOf(const SatBody& body, arxsolids::Solid& solid) {
    arxsolids::Solid all;
    for (const arxsolids::Brep& lump : body.lumps) {
        arxsolids::Solid piece;
        if (Status s = piece.createFromBrep(lump); s != Status::eOk) return s;
        if (all.isNull()) {
            all = std::move(piece);
        } else if (Status s = all.booleanOper(arxsolids::BoolOperType::kBoolUnite, piece);
                   s != Status::eOk) {
            return s;
        }
    }
    if (body.transform)
        if (Status s = all.transformBy(*body.transform); s != Status::eOk) return s;
    solid = std::move(all);
    return Status::eOk;
}

Status regionOf(const SatBody& body, arxsolids::Region& region) {
    arxsolids::Region out;
    if (Status s = arxsolids::Region::createFromBrep(merged(body.lumps), out); s != Status::eOk)
        return s;
    if (body.transform)
        if (Status s = out.transformBy(*body.transform); s != Status::eOk) return s;
    region = std::move(out);
    return Status::eOk;
}

template <typename Entity>
Acad::ErrorStatus keptRaw(Entity* entity, const std::string& sat, const std::string& why,
                          std::string& message) {
    if (Acad::ErrorStatus es = entity->setRawSat(sat); es != Acad::eOk) {
        message = "the entity is not open for write";
        return es;
    }
    message = "kept as raw SAT text: " + why;
    return Acad::eOk;
}

template <typename Entity, typename Body, typename Build>
Acad::ErrorStatus applied(Entity* entity, const std::string& sat, const SatBody& read, Build build,
                          std::string& message) {
    Body body;
    if (Status s = build(read, body); s != Status::eOk)
        return keptRaw(entity, sat,
                       std::string("the host could not rebuild the body (") +
                           arxsolids::statusName(s) + ")",
                       message);
    if (Acad::ErrorStatus es = entity->setBody(std::move(body)); es != Acad::eOk) {
        message = "the entity is not open for write";
        return es;
    }
    if constexpr (std::is_same_v<Entity, AcDb3dSolid>) entity->setStoredSat(sat, nullptr);
    message.clear();
    return Acad::eOk;
}

// The body of text already read once without fault; false when the host cannot build it.
bool builtOnUse(const std::string& sat, arxsolids::Solid& solid) {
    try {
        return solidOf(readBody(parseSat(sat)), solid) == Status::eOk;
    } catch (const SatError&) {
        return false;
    } catch (const Unrepresentable&) {
        return false;
    }
}

} // namespace

Acad::ErrorStatus satFromEntity(const AcDbEntity* entity, std::string& sat, std::string& message) {
    if (const AcDb3dSolid* solid = AcDb3dSolid::cast(entity)) {
        if (!solid->storedSat().empty()) return sat = solid->storedSat(), Acad::eOk;
        if (!solid->rawSat().empty()) return sat = solid->rawSat(), Acad::eOk;
        if (solid->isNull()) {
            message = "the solid is empty: there is no body to write";
            return Acad::eNotApplicable;
        }
        const Acad::ErrorStatus es = written(solid->body().brep(), false, sat, message);
        if (es == Acad::eOk) solid->keepStoredSat(sat);
        return es;
    }
    if (const AcDbRegion* region = AcDbRegion::cast(entity)) {
        if (!region->rawSat().empty()) return sat = region->rawSat(), Acad::eOk;
        if (region->isNull()) {
            message = "the region is empty: there is no body to write";
            return Acad::eNotApplicable;
        }
        return written(region->body().brep(), true, sat, message);
    }
    message = "only solids and regions have SAT bodies";
    return Acad::eWrongObjectType;
}

Acad::ErrorStatus entityFromSat(const std::string& sat, AcDbEntity* entity, std::string& message,
                                BuildTime when) {
    AcDb3dSolid* solid = AcDb3dSolid::cast(entity);
    AcDbRegion* region = AcDbRegion::cast(entity);
    if (solid == nullptr && region == nullptr) {
        message = "only solids and regions have SAT bodies";
        return Acad::eWrongObjectType;
    }
    SatBody read;
    try {
        read = readBody(parseSat(sat));
    } catch (const SatError& e) {
        message = e.what();
        return Acad::eInvalidInput;
    } catch (const Unrepresentable& e) {
        return solid ? keptRaw(solid, sat, e.what(), message)
                     : keptRaw(region, sat, e.what(), message);
    }
    if (solid && when == BuildTime::kOnFirstUse) {
        message.clear();
        if (Acad::ErrorStatus es = solid->setStoredSat(sat, builtOnUse); es != Acad::eOk) {
            message = "the entity is not open for write";
            return es;
        }
        return Acad::eOk;
    }
    if (solid) return applied<AcDb3dSolid, arxsolids::Solid>(solid, sat, read, solidOf, message);
    return applied<AcDbRegion, arxsolids::Region>(region, sat, read, regionOf, message);
}

} // namespace acis
