// Traversers of the boundary walk: the faces of a brep, the loops of a face, and the edges and
// vertices of a loop, each in the order the body holds them. A traverser starts on its first
// element; done() tells when it has passed the last, and next() then answers eNotApplicable.
#pragma once

#include "arx/brent.h"

class AcBrTraverser : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcBrTraverser);

    bool isNull() const { return snapshot_ == nullptr; }
    bool done() const { return isNull() || position_ >= count_; }
    AcBr::ErrorStatus next();
    AcBr::ErrorStatus restart();

protected:
    AcBrTraverser() = default;
    // Starts on the first of count elements of the given snapshot.
    void start(std::shared_ptr<const acbr::Snapshot> snapshot, int count);
    // eUninitialisedObject when unset, eNotApplicable when done, else eOk.
    AcBr::ErrorStatus current() const;

    std::shared_ptr<const acbr::Snapshot> snapshot_;
    int position_ = 0;
    int count_ = 0;
};

class AcBrBrepFaceTraverser : public AcBrTraverser {
public:
    ACRX_DECLARE_MEMBERS(AcBrBrepFaceTraverser);
    AcBrBrepFaceTraverser() = default;

    // eUninitialisedObject for a brep that was never set.
    AcBr::ErrorStatus setBrep(const AcBrBrep& brep);
    AcBr::ErrorStatus getFace(AcBrFace& face) const;
};

class AcBrFaceLoopTraverser : public AcBrTraverser {
public:
    ACRX_DECLARE_MEMBERS(AcBrFaceLoopTraverser);
    AcBrFaceLoopTraverser() = default;

    // eDegenerateTopology, with the traverser done, for a face without loops (a whole sphere
    // or torus).
    AcBr::ErrorStatus setFace(const AcBrFace& face);
    AcBr::ErrorStatus getLoop(AcBrLoop& loop) const;

private:
    int face_ = -1;
};

// The edges of a loop in the order the loop runs them.
class AcBrLoopEdgeTraverser : public AcBrTraverser {
public:
    ACRX_DECLARE_MEMBERS(AcBrLoopEdgeTraverser);
    AcBrLoopEdgeTraverser() = default;

    AcBr::ErrorStatus setLoop(const AcBrLoop& loop);
    AcBr::ErrorStatus getEdge(AcBrEdge& edge) const;
    // False when the loop runs the edge from its end to its start.
    AcBr::ErrorStatus getEdgeOrientToLoop(Adesk::Boolean& orient) const;

private:
    int face_ = -1, loop_ = -1;
};

// The vertices of a loop in the order the loop runs through them, each at the start of the
// edge that leaves it: a loop of one closed edge (a circle) has one vertex.
class AcBrLoopVertexTraverser : public AcBrTraverser {
public:
    ACRX_DECLARE_MEMBERS(AcBrLoopVertexTraverser);
    AcBrLoopVertexTraverser() = default;

    AcBr::ErrorStatus setLoop(const AcBrLoop& loop);
    AcBr::ErrorStatus getVertex(AcBrVertex& vertex) const;

private:
    int face_ = -1, loop_ = -1;
};
