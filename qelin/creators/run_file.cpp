#include "creators/object_sets.h"

#include "foundation/error_report.h"
#include "foundation/string_ring.h"
#include "shell/settings_store.h"

CString QelRunFileName(const wchar_t* failureText) {
    CString path;
    if (!ReadString(QEL_SETTINGS_KEY, L"LastOpenDir", path)) {
        QelReportError(failureText);
        path.Empty();
    }
    return path;
}

void QelOpenRunFile(QelReader& reader, const CString& path) {
    QelInit(0, 0, QelInitWords);
    try {
        reader.Open(QelNarrowFromWide(path));
    } catch (const QelException& e) {
        AfxMessageBox(QelWideFromNarrow(e.GetReason()));
    } catch (...) {
        AfxMessageBox(L"Caught unknown exception opening qel file.");
    }
}
