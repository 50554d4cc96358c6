// The way to the companion module from the writers: the entity's handle as text, through the
// export's one call of the module.
#include "writers/patch_writers.h"

#include "export/invoke_on_entity.h"

resbuf* QelAskCompanion(const wchar_t* function, const AcDbObjectId& id,
                        const wchar_t* failureText) {
    return invokeOnEntity(function, QelHandleText(id), failureText);
}
