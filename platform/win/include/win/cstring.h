// CString as a wide (UNICODE) program of MFC has it: a value string of wchar_t.
#pragma once

#include <win/types.h>

#include <string>

class CString {
public:
    CString() = default;
    CString(const CString&) = default;
    CString(CString&&) noexcept = default;
    CString(LPCWSTR text) : s_(text ? text : L"") {}
    CString(LPCWSTR text, int length) : s_(text, std::size_t(length)) {}
    CString(LPCSTR text); // narrow text is converted from the ANSI code page
    CString(wchar_t c, int repeat = 1) : s_(std::size_t(repeat), c) {}
    CString(std::wstring text) : s_(std::move(text)) {}

    CString& operator=(const CString&) = default;
    CString& operator=(CString&&) noexcept = default;
    CString& operator=(LPCWSTR text) {
        s_ = text ? text : L"";
        return *this;
    }
    CString& operator=(wchar_t c) {
        s_.assign(1, c);
        return *this;
    }

    operator LPCWSTR() const { return s_.c_str(); }
    LPCWSTR GetString() const { return s_.c_str(); }
    const std::wstring& str() const { return s_; }

    int GetLength() const { return static_cast<int>(s_.size()); }
    bool IsEmpty() const { return s_.empty(); }
    void Empty() { s_.clear(); }
    wchar_t GetAt(int i) const { return s_.at(std::size_t(i)); }
    void SetAt(int i, wchar_t c) { s_.at(std::size_t(i)) = c; }
    wchar_t operator[](int i) const { return GetAt(i); }

    CString& operator+=(const CString& other) {
        s_ += other.s_;
        return *this;
    }
    CString& operator+=(LPCWSTR text) {
        if (text) s_ += text;
        return *this;
    }
    CString& operator+=(wchar_t c) {
        s_ += c;
        return *this;
    }
    void Append(LPCWSTR text) { *this += text; }
    void AppendChar(wchar_t c) { s_ += c; }

    int Compare(LPCWSTR text) const;
    int CompareNoCase(LPCWSTR text) const;

    int Find(wchar_t c, int start = 0) const;
    int Find(LPCWSTR text, int start = 0) const;
    int ReverseFind(wchar_t c) const;
    int FindOneOf(LPCWSTR chars) const;

    CString Left(int count) const;
    CString Right(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;
    CString SpanIncluding(LPCWSTR chars) const;
    CString SpanExcluding(LPCWSTR chars) const;

    CString& MakeUpper();
    CString& MakeLower();
    CString& MakeReverse();
    CString& Trim();
    CString& Trim(LPCWSTR chars);
    CString& TrimLeft();
    CString& TrimLeft(LPCWSTR chars);
    CString& TrimRight();
    CString& TrimRight(LPCWSTR chars);

    int Replace(wchar_t oldChar, wchar_t newChar);
    int Replace(LPCWSTR oldText, LPCWSTR newText);
    int Remove(wchar_t c);
    int Insert(int index, LPCWSTR text);
    int Insert(int index, wchar_t c);
    int Delete(int index, int count = 1);

    // Formats with the Windows meaning of the conversions (see win/format.h).
    void Format(LPCWSTR format, ...);
    void AppendFormat(LPCWSTR format, ...);
    // Loads a string of the module's string table (win/resource.h); false if there is none.
    BOOL LoadString(UINT id);

    // A writable buffer of at least minLength characters and a terminator; ReleaseBuffer(-1)
    // takes the length up to the first terminator.
    LPWSTR GetBuffer(int minLength);
    LPWSTR GetBuffer() { return GetBuffer(0); }
    LPWSTR GetBufferSetLength(int length);
    void ReleaseBuffer(int newLength = -1);

private:
    std::wstring s_;
};

inline CString operator+(const CString& a, const CString& b) {
    return CString(a.str() + b.str());
}
inline CString operator+(const CString& a, LPCWSTR b) {
    return CString(a.str() + (b ? b : L""));
}
inline CString operator+(LPCWSTR a, const CString& b) {
    return CString((a ? a : L"") + b.str());
}
inline CString operator+(const CString& a, wchar_t b) {
    return CString(a.str() + b);
}
inline CString operator+(wchar_t a, const CString& b) {
    return CString(a + b.str());
}

inline bool operator==(const CString& a, const CString& b) {
    return a.str() == b.str();
}
inline bool operator==(const CString& a, LPCWSTR b) {
    return a.Compare(b) == 0;
}
inline bool operator==(LPCWSTR a, const CString& b) {
    return b.Compare(a) == 0;
}
inline bool operator!=(const CString& a, const CString& b) {
    return !(a == b);
}
inline bool operator!=(const CString& a, LPCWSTR b) {
    return !(a == b);
}
inline bool operator!=(LPCWSTR a, const CString& b) {
    return !(b == a);
}
inline bool operator<(const CString& a, const CString& b) {
    return a.str() < b.str();
}

using CStringW = CString;
