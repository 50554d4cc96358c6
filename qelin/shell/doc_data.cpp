#include "doc_data.h"

AsdkDataManager<CDocData>& QelDocDataManager() {
    // Made at first use, so that the host's document manager exists before it registers.
    static AsdkDataManager<CDocData> manager;
    return manager;
}

CDocData& QelDocData() {
    return QelDocDataManager().docData();
}
