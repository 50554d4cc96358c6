// The state of one open document, kept between commands and shared by the layers of the
// plug-in, and the table that holds one such record per document.
#pragma once

#include "foundation/growing_array.h"

#include <arx/acdocman.h>
#include <win/win.h>

#include <map>

class CDocData {
public:
    CDocData() = default;
    CDocData(const CDocData&) = default; // the array and the string copy deeply
    CDocData& operator=(const CDocData&) = default;
    virtual ~CDocData() = default;

    int firstLoad = 0;
    int importOptionsValid = 0;
    int exportOptionsValid = 0;
    int scriptMode = 0;
    int hasOriginalFile = 0;
    int lastObjectRef = 0;
    int importUnitIndex = 0;
    int exportUnitIndex = 0;
    int createLog = 0;
    CString logFileName;
    int exportScope = 0;
    int importPoints = 0;
    int pointsSkipped = 0;
    int suppressHiddenClasses = 0;
    QelArray<unsigned> hiddenClasses;
    int annotationNumber = 0;
    int contoursSkipped = 0;
    int objectsLeft = 0;
    int modelObjectCount = 0;
    int layerColourFlag = 0;
    int useLayerColourOverride = 0;
    double importScale = 1.0;
    double exportScale = 1.0;
    int importContext = 0;
    unsigned char meshAnnotationsPending = 0;
    int maxGroupNumber = 0;
    double selectedRotation[4] = {0.0, 0.0, 1.0, 0.0};
    double selectedTranslation[3] = {0.0, 0.0, 0.0};
    int blockScanDone = 0;
};

// One record per document, made at the first lookup and dropped when the document goes.
template <typename T>
class AsdkDataManager : public AcApDocManagerReactor {
public:
    AsdkDataManager() {
        if (AcApDocManager* manager = acDocManagerPtr()) manager->addReactor(this);
    }
    ~AsdkDataManager() override {
        if (AcApDocManager* manager = acDocManagerPtr()) manager->removeReactor(this);
    }

    T& docData(AcApDocument* document) { return m_records[document]; }
    T& docData() { return docData(acDocManagerPtr()->curDocument()); }
    void documentToBeDestroyed(AcApDocument* document) override { m_records.erase(document); }
    std::size_t size() const { return m_records.size(); }

private:
    std::map<AcApDocument*, T> m_records;
};

// The record of the current document.
CDocData& QelDocData();
AsdkDataManager<CDocData>& QelDocDataManager();
