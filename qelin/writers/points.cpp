// Points and texts as Vertex3d.
#include "foundation/string_ring.h"
#include "shell/doc_data.h"
#include "writers/mesh_writers.h"
#include "writers/pose.h"

#include <arx/dbents.h>

#include <string>

namespace {

void writePosition(QelObject* target, const AcGePoint3d& position) {
    double metres[3];
    QelPointOut(position, metres);
    target->AddOrReplaceParam(QelParam::Create("position", metres, 3));
}

} // namespace

bool QelWriteVertex3d(const AcGeMatrix3d&, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    AcDbPoint* point = nullptr;
    if (acdbOpenObject(point, id, AcDb::kForRead) != Acad::eOk) return false;
    writePosition(target, point->position());
    point->close();
    return true;
}

bool QelWriteText(const AcGeMatrix3d&, QelObject* target, QelWriter&, const AcDbObjectId& id) {
    AcDbText* text = nullptr;
    if (acdbOpenObject(text, id, AcDb::kForRead) != Acad::eOk) return false;
    writePosition(target, text->position());
    // Each text of an export gets the next number as its annotation's name.
    const std::string key = std::to_string(++QelDocData().annotationNumber);
    QelObject* annotation = QelObject::Create("StrAnnotation");
    annotation->AddOrReplaceParam(
        QelParam::Create("value", QelNarrowFromWide(text->textStringConst())));
    text->close();
    QelObject* annotations = QelObject::Create("Annotations");
    annotations->AddOrReplaceParam(QelParam::Create(key.c_str(), annotation));
    annotation->UnRef();
    target->AddOrReplaceParam(QelParam::Create("annotations", annotations));
    annotations->UnRef();
    return true;
}
