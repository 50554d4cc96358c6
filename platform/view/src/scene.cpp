#include <view/scene.h>

#include "curves.h"

#include <arx/arx.h>
#include <arx/dbregion.h>
#include <arx/dbsol3d.h>
#include <arx/dbsurf.h>
#include <win/strings.h>

#include <algorithm>
#include <cmath>
#include <cwctype>
#include <map>
#include <memory>

namespace view {

namespace {

// Block references inside block references: deeper nesting than this is a cycle.
constexpr int kMaxNesting = 16;

struct LayerLook {
    bool shown = true;
    AcCmEntityColor colour;
};

std::wstring folded(std::wstring text) {
    for (wchar_t& c : text)
        c = static_cast<wchar_t>(std::towupper(c));
    return text;
}

Vec3 vec(const AcGePoint3d& p) {
    return {p.x, p.y, p.z};
}

class Collector {
public:
    Collector(AcDbDatabase& db, const SceneChoice& choice) : choice_(choice) {
        AcDbLayerTable* table = nullptr;
        if (db.getLayerTable(table) != Acad::eOk) return;
        AcDbSymbolTableIteratorOf<AcDbLayerTableRecord>* it = nullptr;
        if (table->newIterator(it) == Acad::eOk) {
            for (; !it->done(); it->step()) {
                AcDbLayerTableRecord* layer = nullptr;
                if (it->getRecord(layer) != Acad::eOk) continue;
                const ACHAR* name = nullptr;
                layer->getName(name);
                layers_[folded(name ? name : L"")] = {!layer->isOff() && !layer->isFrozen(),
                                                      layer->color().entityColor()};
                layer->close();
            }
            delete it;
        }
        table->close();
        for (const std::wstring& name : choice.layers)
            chosen_.push_back(folded(name));
    }

    void modelSpace(AcDbDatabase& db) {
        AcDbBlockTable* blocks = nullptr;
        if (db.getBlockTable(blocks) != Acad::eOk) return;
        AcDbBlockTableRecord* space = nullptr;
        const Acad::ErrorStatus opened = blocks->getAt(ACDB_MODEL_SPACE, space, AcDb::kForRead);
        blocks->close();
        if (opened != Acad::eOk) return;
        AcDbBlockTableRecordIterator* it = nullptr;
        if (space->newIterator(it) == Acad::eOk) {
            for (; !it->done(); it->step()) {
                AcDbEntity* entity = nullptr;
                if (it->getEntity(entity) != Acad::eOk) continue;
                topLevel(*entity);
                entity->close();
            }
            delete it;
        }
        space->close();
    }

    Scene scene;

private:
    void topLevel(const AcDbEntity& entity) {
        if (entity.visibility() != AcDb::kVisible) return;
        ACHAR* name = entity.layer();
        const std::wstring layer = folded(name ? name : L"");
        acutDelString(name);
        if (!chosen_.empty() && std::find(chosen_.begin(), chosen_.end(), layer) == chosen_.end())
            return;
        const auto look = layers_.find(layer);
        if (look != layers_.end() && !look->second.shown) return;
        const Rgb colour = resolve(entity.entityColor(), layer, choice_.foreground);
        if (draw(entity, colour, 0))
            ++scene.entities;
        else
            ++scene.skipped;
    }

    Rgb resolve(const AcCmEntityColor& colour, const std::wstring& layer, Rgb byBlock) const {
        if (colour.isByBlock()) return byBlock;
        if (colour.isByLayer()) {
            const auto look = layers_.find(layer);
            return look == layers_.end() ? choice_.foreground
                                         : resolve(look->second.colour, layer, byBlock);
        }
        if (colour.isByACI() && colour.colorIndex() == AcCmEntityColor::kACIforeground)
            return choice_.foreground;
        if (!colour.isByACI() && !colour.isByColor()) return choice_.foreground;
        return {colour.red(), colour.green(), colour.blue()};
    }

    void addTriangles(const std::vector<arxsolids::Triangle>& triangles, Rgb colour) {
        for (const arxsolids::Triangle& t : triangles)
            scene.triangles.push_back({t, colour});
    }

    // A solid or region: its facets, and the body itself for the hidden-line picture.
    template <class Body>
    bool addBody(const Body& body, Rgb colour, std::vector<Body>& bodies) {
        std::vector<arxsolids::Triangle> triangles;
        if (arxsolids::triangulate(body, triangles) != arxsolids::Status::eOk) return false;
        addTriangles(triangles, colour);
        bodies.push_back(body);
        return true;
    }

    // True when the entity has a picture.
    bool draw(const AcDbEntity& entity, Rgb colour, int depth) {
        if (const auto* solid = AcDb3dSolid::cast(&entity))
            return addBody(solid->body(), colour, scene.solids);
        if (const auto* region = AcDbRegion::cast(&entity))
            return addBody(region->body(), colour, scene.regions);
        if (const auto* face = AcDbFace::cast(&entity)) {
            AcGePoint3d p[4];
            for (Adesk::UInt16 i = 0; i < 4; ++i)
                face->getVertexAt(i, p[i]);
            addQuad(p, colour);
            return true;
        }
        if (const auto* point = AcDbPoint::cast(&entity)) {
            scene.dots.push_back({vec(point->position()), colour});
            return true;
        }
        if (const auto* text = AcDbText::cast(&entity)) {
            scene.labels.push_back({vec(text->position()), text->height(),
                                    win::toUtf8(text->textStringConst()), colour});
            return true;
        }
        if (std::vector<Vec3> points = curvePoints(entity); !points.empty()) {
            scene.lines.push_back({std::move(points), colour});
            return true;
        }
        return depth < kMaxNesting && drawPieces(entity, colour, depth);
    }

    // Polylines, meshes, surfaces and block references: by the pieces they explode into.
    bool drawPieces(const AcDbEntity& entity, Rgb colour, int depth) {
        AcDbVoidPtrArray pieces;
        if (entity.explode(pieces) != Acad::eOk) return false;
        bool any = false;
        for (int i = 0; i < pieces.length(); ++i) {
            std::unique_ptr<AcDbEntity> piece(static_cast<AcDbEntity*>(pieces[i]));
            if (piece == nullptr || piece->visibility() != AcDb::kVisible) continue;
            ACHAR* name = piece->layer();
            const std::wstring layer = folded(name ? name : L"");
            acutDelString(name);
            const auto look = layers_.find(layer);
            if (look != layers_.end() && !look->second.shown) continue;
            any = draw(*piece, resolve(piece->entityColor(), layer, colour), depth + 1) || any;
        }
        return any;
    }

    void addQuad(const AcGePoint3d (&p)[4], Rgb colour) {
        auto triangle = [&](int a, int b, int c) {
            const AcGeVector3d n = (p[b] - p[a]).crossProduct(p[c] - p[a]);
            if (n.length() <= 0.0) return; // the third corner of a triangle repeated
            const AcGeVector3d u = n.normal();
            scene.triangles.push_back(
                {{{vec(p[a]), vec(p[b]), vec(p[c])}, {u.x, u.y, u.z}}, colour});
        };
        triangle(0, 1, 2);
        triangle(0, 2, 3);
    }

    const SceneChoice& choice_;
    std::map<std::wstring, LayerLook> layers_;
    std::vector<std::wstring> chosen_;
};

} // namespace

Scene collectScene(AcDbDatabase& db, const SceneChoice& choice) {
    Collector collector(db, choice);
    collector.modelSpace(db);
    return std::move(collector.scene);
}

} // namespace view
