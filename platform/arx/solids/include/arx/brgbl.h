// Statuses and kinds of the boundary-representation walk.
#pragma once

struct AcBr {
    enum ErrorStatus {
        eOk = 0,
        eNotApplicable,       // a traverser stepped past its end
        eInvalidInput,        // an argument that is itself null or unset
        eWrongObjectType,     // an entity the walk does not cover
        eUninitialisedObject, // a walk object used before it was set
        eMissingTopology,     // an entity without a body (an empty solid)
        eDegenerateTopology,  // a face without loops (a whole sphere or torus)
    };
    enum LoopType {
        kLoopUnclassified = 0,
        kLoopExterior, // the outer boundary of a face
        kLoopInterior, // a hole
        kLoopWinding,  // one of the loops that wind round a closed surface (a cylinder's rims)
    };
};
