// A walk of every record of a symbol table (layers, blocks, UCSs), each opened for reading.
#pragma once

#include <arx/arx.h>

namespace qelcad {

template <class Record, class Each>
void forEachRecord(AcDbSymbolTableOf<Record>* table, Each each) {
    AcDbSymbolTableIteratorOf<Record>* it = nullptr;
    if (table->newIterator(it) != Acad::eOk) return;
    for (; !it->done(); it->step()) {
        Record* record = nullptr;
        if (it->getRecord(record) != Acad::eOk) continue;
        each(*record);
        record->close();
    }
    delete it;
}

} // namespace qelcad
