#include "import/object_dispatch.h"

#include "foundation/error_report.h"
#include "foundation/log_file.h"
#include "foundation/state_guards.h"
#include "foundation/string_ring.h"
#include "import/read_qel_file.h"
#include "objectfile/param_read.h"
#include "shell/doc_data.h"

#include <arx/aced.h>

#include <cstring>
#include <string>
#include <strings.h>

namespace {

// Every row passes 0 as the creator's subtype.
constexpr int kRowArgument = 0;

// Creators standing in for the rows' own (QelCreatorSwap); null where the row's own is called.
std::array<QelCreator, QelDispatchRowCount> g_swapped{};

// The message of an unknown class has a wide format of 16-bit characters and passes the narrow
// name as it is, so the user sees the name's bytes taken two by two as one character each.
std::wstring NarrowAsWide(const char* name) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(name);
    const std::size_t count = std::strlen(name);
    std::wstring garbled;
    for (std::size_t i = 0; i < count; i += 2) {
        const wchar_t unit = wchar_t(bytes[i] | (i + 1 < count ? bytes[i + 1] << 8 : 0));
        if (unit >= 0xD800 && unit < 0xE000) break; // half of a pair: the name ends here
        garbled += unit;
    }
    return garbled;
}

// The creator on the object, with its values checked as they are read. A value refused there, or
// a read the library refused (a param of a type the reader did not expect), fails this object
// only; it is counted once, unless the creator counted an error of its own meanwhile.
QelCreated createGuarded(QelCreator creator, QelObject* object, void* parent,
                         unsigned char asAcisSolids, unsigned reference, const CString* fileName) {
    const unsigned before = QelErrorsCountedHere();
    QelReadingObject reading(object->GetName(), reference);
    QelCreated created = QelCreated::Done;
    try {
        created = creator(object, parent, kRowArgument, asAcisSolids, reference, fileName);
    } catch (const QelException& e) {
        CString text;
        text.Format(L"\nObject %u (%hs): %hs", reference, object->GetName(), e.GetReason());
        QelReportError(text);
        created = QelCreated::Failed;
    }
    if (created != QelCreated::Failed && reading.Refused() && QelErrorsCountedHere() == before)
        QelCountError();
    return created;
}

} // namespace

QelCreatorSwap::QelCreatorSwap(QelCreator creator, const char* className) : m_saved(g_swapped) {
    for (int row = 0; row < QelDispatchRowCount; ++row) {
        const QelClassRow* entry = QelDispatchRow(row);
        if (!entry) continue;
        const bool named = className && ::strcasecmp(entry->className, className) == 0;
        if (named || (!className && entry->creator != QelCreateNothing))
            g_swapped[std::size_t(row)] = creator;
    }
}

QelCreatorSwap::~QelCreatorSwap() {
    g_swapped = m_saved;
}

bool QelInObject::Lookup(QelJob& job, const char* className) {
    for (int row = 0; row < QelDispatchRowCount; ++row)
        if (const QelClassRow* entry = QelDispatchRow(row);
            entry && ::strcasecmp(entry->className, className) == 0) {
            job.typeIndex = unsigned(row);
            return true;
        }
    return false;
}

void DispatchObject(QelJob& job, QelObject* object, void* parent, unsigned char asAcisSolids,
                    unsigned reference, const CString* fileName) {
    QelUcsWorld();
    QelInObject in;
    in.parent = parent;
    const char* name = object->GetName();
    if (!in.Lookup(job, name)) {
        acutPrintf(L"\n Skipping unrecognized object: %s\n", NarrowAsWide(name).c_str());
        return;
    }
    const CDocData& doc = QelDocData();
    if (doc.suppressHiddenClasses == 1)
        for (unsigned i = 0; i < doc.hiddenClasses.GetCount(); ++i)
            if (doc.hiddenClasses[i] == job.typeIndex) return;
    const int row = int(job.typeIndex);
    if (const QelClassRow* entry = QelDispatchRow(row)) {
        const QelCreator creator =
            g_swapped[std::size_t(row)] ? g_swapped[std::size_t(row)] : entry->creator;
        const QelCreated created =
            createGuarded(creator, object, in.parent, asAcisSolids, reference, fileName);
        // Only a failure the creator has left to the dispatcher counts here.
        in.result = created == QelCreated::Failed ? 1 : 0;
    }
    if (in.result != 0) {
        QelReportErrorNoLog(L"\nReturned Error Processing Object!");
        QelCountError();
        QelLogWrite(L"\n      Returned Error Processing Object!\n", job.logFilePath);
    }
}
