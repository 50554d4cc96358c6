#include <win/cursor.h>

struct HCURSOR__ {
    int id;
};

namespace {

HCURSOR__ kCursors[] = {{32512}, {32513}, {32514}, {32515}, {32650}};
HCURSOR current = &kCursors[0];

} // namespace

HCURSOR LoadCursorW(HINSTANCE instance, LPCWSTR name) {
    auto id = static_cast<int>(reinterpret_cast<ULONG_PTR>(name));
    if (instance) return nullptr;
    for (HCURSOR__& cursor : kCursors)
        if (cursor.id == id) return &cursor;
    return nullptr;
}

HCURSOR SetCursor(HCURSOR cursor) {
    HCURSOR before = current;
    current = cursor;
    return before;
}

HCURSOR GetCursor() {
    return current;
}

int win::cursorId(HCURSOR cursor) {
    return cursor ? cursor->id : 0;
}
