#include <win/cstring.h>
#include <win/format.h>
#include <win/strings.h>

#include "resources.h"

#include <algorithm>
#include <cstdarg>
#include <cwchar>
#include <cwctype>

namespace {

const std::wstring kSpace = L" \t\r\n\v\f";

wchar_t lower(wchar_t c) {
    return static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
}
wchar_t upper(wchar_t c) {
    return static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
}

int found(std::size_t at) {
    return at == std::wstring::npos ? -1 : static_cast<int>(at);
}

std::size_t clampIndex(int i, std::size_t size) {
    return i < 0 ? 0 : std::min(std::size_t(i), size);
}

} // namespace

CString::CString(LPCSTR text) : s_(text ? win::fromUtf8(text) : L"") {}

int CString::Compare(LPCWSTR text) const {
    return std::wcscmp(s_.c_str(), text ? text : L"");
}

int CString::CompareNoCase(LPCWSTR text) const {
    const wchar_t* a = s_.c_str();
    const wchar_t* b = text ? text : L"";
    for (;; ++a, ++b) {
        wchar_t x = lower(*a), y = lower(*b);
        if (x != y) return x < y ? -1 : 1;
        if (x == 0) return 0;
    }
}

int CString::Find(wchar_t c, int start) const {
    if (start < 0 || std::size_t(start) > s_.size()) return -1;
    return found(s_.find(c, std::size_t(start)));
}

int CString::Find(LPCWSTR text, int start) const {
    if (!text || start < 0 || std::size_t(start) > s_.size()) return -1;
    return found(s_.find(text, std::size_t(start)));
}

int CString::ReverseFind(wchar_t c) const {
    return found(s_.rfind(c));
}

int CString::FindOneOf(LPCWSTR chars) const {
    return chars ? found(s_.find_first_of(chars)) : -1;
}

CString CString::Left(int count) const {
    return CString(s_.substr(0, clampIndex(count, s_.size())));
}

CString CString::Right(int count) const {
    std::size_t n = clampIndex(count, s_.size());
    return CString(s_.substr(s_.size() - n));
}

CString CString::Mid(int first) const {
    return CString(s_.substr(clampIndex(first, s_.size())));
}

CString CString::Mid(int first, int count) const {
    std::size_t from = clampIndex(first, s_.size());
    return CString(s_.substr(from, clampIndex(count, s_.size() - from)));
}

CString CString::SpanIncluding(LPCWSTR chars) const {
    return Left(static_cast<int>(std::wcsspn(s_.c_str(), chars ? chars : L"")));
}

CString CString::SpanExcluding(LPCWSTR chars) const {
    return Left(static_cast<int>(std::wcscspn(s_.c_str(), chars ? chars : L"")));
}

CString& CString::MakeUpper() {
    std::transform(s_.begin(), s_.end(), s_.begin(), upper);
    return *this;
}

CString& CString::MakeLower() {
    std::transform(s_.begin(), s_.end(), s_.begin(), lower);
    return *this;
}

CString& CString::MakeReverse() {
    std::reverse(s_.begin(), s_.end());
    return *this;
}

CString& CString::Trim() {
    return TrimLeft().TrimRight();
}
CString& CString::Trim(LPCWSTR chars) {
    return TrimLeft(chars).TrimRight(chars);
}
CString& CString::TrimLeft() {
    return TrimLeft(kSpace.c_str());
}
CString& CString::TrimRight() {
    return TrimRight(kSpace.c_str());
}

CString& CString::TrimLeft(LPCWSTR chars) {
    std::size_t first = s_.find_first_not_of(chars ? chars : L"");
    s_.erase(0, first == std::wstring::npos ? s_.size() : first);
    return *this;
}

CString& CString::TrimRight(LPCWSTR chars) {
    std::size_t last = s_.find_last_not_of(chars ? chars : L"");
    s_.erase(last == std::wstring::npos ? 0 : last + 1);
    return *this;
}

int CString::Replace(wchar_t oldChar, wchar_t newChar) {
    int n = 0;
    for (wchar_t& c : s_)
        if (c == oldChar) {
            c = newChar;
            ++n;
        }
    return n;
}

int CString::Replace(LPCWSTR oldText, LPCWSTR newText) {
    if (!oldText || !*oldText) return 0;
    std::wstring from = oldText, to = newText ? newText : L"";
    int n = 0;
    for (std::size_t at = s_.find(from); at != std::wstring::npos;
         at = s_.find(from, at + to.size())) {
        s_.replace(at, from.size(), to);
        ++n;
    }
    return n;
}

int CString::Remove(wchar_t c) {
    auto n = std::erase(s_, c);
    return static_cast<int>(n);
}

int CString::Insert(int index, LPCWSTR text) {
    s_.insert(clampIndex(index, s_.size()), text ? text : L"");
    return GetLength();
}

int CString::Insert(int index, wchar_t c) {
    s_.insert(clampIndex(index, s_.size()), 1, c);
    return GetLength();
}

int CString::Delete(int index, int count) {
    std::size_t from = clampIndex(index, s_.size());
    s_.erase(from, clampIndex(count, s_.size() - from));
    return GetLength();
}

void CString::Format(LPCWSTR format, ...) {
    va_list args;
    va_start(args, format);
    s_ = win::formatV(format, args);
    va_end(args);
}

void CString::AppendFormat(LPCWSTR format, ...) {
    va_list args;
    va_start(args, format);
    s_ += win::formatV(format, args);
    va_end(args);
}

BOOL CString::LoadString(UINT id) {
    const std::wstring* text = win::findString(id);
    if (!text) return FALSE;
    s_ = *text;
    return TRUE;
}

LPWSTR CString::GetBuffer(int minLength) {
    if (minLength > 0 && std::size_t(minLength) > s_.size()) s_.resize(std::size_t(minLength));
    return s_.data();
}

LPWSTR CString::GetBufferSetLength(int length) {
    s_.resize(clampIndex(length, std::size_t(-1) >> 1));
    return s_.data();
}

void CString::ReleaseBuffer(int newLength) {
    if (newLength < 0)
        s_.resize(std::wcslen(s_.c_str()));
    else
        s_.resize(std::min(std::size_t(newLength), s_.size()));
}
