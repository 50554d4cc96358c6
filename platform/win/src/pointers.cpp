#include <win/pointers.h>

BOOL IsBadReadPtr(const void* pointer, UINT_PTR size) {
    return size != 0 && pointer == nullptr;
}
BOOL IsBadWritePtr(void* pointer, UINT_PTR size) {
    return size != 0 && pointer == nullptr;
}
BOOL IsBadStringPtrW(LPCWSTR text, UINT_PTR maxChars) {
    return maxChars != 0 && text == nullptr;
}
