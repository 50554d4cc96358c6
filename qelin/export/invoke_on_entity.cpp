#include "export/invoke_on_entity.h"

#include "foundation/log_file.h"

#include <arx/aced.h>

CString QelHandleText(const AcDbObjectId& id) {
    if (id.isNull()) return CString();
    ACHAR text[32] = L"";
    if (!id.handle().getIntoAsciiBuffer(text, 32)) return CString();
    return CString(text);
}

resbuf* invokeOnEntity(LPCWSTR name, LPCWSTR handleText, LPCWSTR failureText) {
    resbuf* args = acutBuildList(RTSTR, name, RTSTR, handleText, 0);
    resbuf* result = nullptr;
    const int status = args ? acedInvoke(args, &result) : RTERROR;
    acutRelRb(args);
    if (status == RTNORM && result) return result;
    acutRelRb(result);
    acutPrintf(L"%s", failureText);
    QelLogAppend(failureText);
    return nullptr;
}

int QelCompanionType(const AcDbObjectId& id) {
    resbuf* reply =
        invokeOnEntity(L"getType", QelHandleText(id), L"\n Error (getting object type)");
    if (!reply) return -1;
    const int type = reply->restype == 90 ? static_cast<int>(reply->resval.rlong) : -1;
    acutRelRb(reply);
    return type;
}
