// The dispatcher: finds an object's class among its rows (import/class_table.h) and calls the
// creator that turns the object into entities. The row number is the object's type index.
#pragma once

#include "import/class_table.h"
#include "import/qel_job.h"

#include <qel/qel.h>
#include <win/win.h>

#include <array>

// For its lifetime the dispatcher calls creator in place of the creator of the class named, or
// of every class that makes something when no name is given: for watching an import's walk
// whichever creators the build has.
class QelCreatorSwap {
public:
    explicit QelCreatorSwap(QelCreator creator, const char* className = nullptr);
    ~QelCreatorSwap();
    QelCreatorSwap(const QelCreatorSwap&) = delete;
    QelCreatorSwap& operator=(const QelCreatorSwap&) = delete;

private:
    std::array<QelCreator, QelDispatchRowCount> m_saved;
};

// One object in the dispatcher's hands.
class QelInObject {
public:
    QelInObject() = default;
    virtual ~QelInObject() = default;

    // Rows from 0 up, names compared without regard to case, the first match wins; the row goes
    // to job.typeIndex. False (and typeIndex untouched) when no row matches.
    bool Lookup(QelJob& job, const char* className);

    void* parent = nullptr; // passed on to the creator
    int result = 0;         // 1 when the creator left its failure to the dispatcher
};
