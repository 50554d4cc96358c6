#include "writers/mesh_params.h"

#include "writers/pose.h"

void QelWriteMeshParams(QelObject* target, const std::vector<AcGePoint3d>& vertices,
                        const std::vector<int>& indices) {
    std::vector<float> metres;
    metres.reserve(3 * vertices.size());
    for (const AcGePoint3d& point : vertices) {
        double out[3];
        QelPointOut(point, out);
        for (const double value : out)
            metres.push_back(static_cast<float>(value));
    }
    target->AddOrReplaceParam(QelParam::Create("vertexCount", static_cast<int>(vertices.size())));
    target->AddOrReplaceParam(
        QelParam::Create("vertices", metres.data(), static_cast<unsigned>(metres.size())));
    target->AddOrReplaceParam(QelParam::Create("faceCount", static_cast<int>(indices.size() / 3)));
    target->AddOrReplaceParam(
        QelParam::Create("triStripIndices", indices.data(), static_cast<unsigned>(indices.size())));
}
