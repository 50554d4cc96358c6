// Documents: each open drawing with its database, the manager that knows the current one,
// iteration over all of them, and reactors told when a document goes.
#pragma once

#include "arx/dbdatabase.h"
#include "arx/rxobject.h"

class AcApDocument : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcApDocument);
    virtual AcDbDatabase* database() const = 0;
    // The full path of the drawing, or its name ("Drawing1.dwg") while it has no file.
    virtual const ACHAR* fileName() const = 0;
    virtual const ACHAR* docTitle() const = 0;
};

class AcApDocumentIterator : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcApDocumentIterator);
    virtual bool done() const = 0;
    virtual void step() = 0;
    virtual AcApDocument* document() = 0;
};

class AcApDocManagerReactor : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcApDocManagerReactor);
    virtual void documentCreated(AcApDocument*) {}
    virtual void documentToBeActivated(AcApDocument*) {}
    virtual void documentBecameCurrent(AcApDocument*) {}
    // The document is still whole when this is called.
    virtual void documentToBeDestroyed(AcApDocument*) {}
};

class AcApDocManager : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcApDocManager);
    virtual AcApDocument* curDocument() const = 0;
    virtual AcApDocument* mdiActiveDocument() const = 0;
    virtual AcApDocument* document(const AcDbDatabase* database) const = 0;
    virtual int documentCount() const = 0;
    // The caller deletes the iterator.
    virtual AcApDocumentIterator* newAcApDocumentIterator() = 0;
    virtual void addReactor(AcApDocManagerReactor* reactor) = 0;
    virtual void removeReactor(AcApDocManagerReactor* reactor) = 0;
};

AcApDocManager* acDocManagerPtr();
#define acDocManager acDocManagerPtr()
inline AcApDocument* curDoc() {
    return acDocManagerPtr()->curDocument();
}
