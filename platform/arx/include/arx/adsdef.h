// Result buffers, entity names and the result codes of the host's C interface.
#pragma once

#include "arx/adesk.h"

using ads_real = double;
using ads_point = ads_real[3];
using ads_name = Adesk::IntPtr[2];
using ads_namep = Adesk::IntPtr*;

// Result types.
constexpr int RTNONE = 5000;
constexpr int RTREAL = 5001;
constexpr int RTPOINT = 5002;
constexpr int RTSHORT = 5003;
constexpr int RTANG = 5004;
constexpr int RTSTR = 5005;
constexpr int RTENAME = 5006;
constexpr int RTPICKS = 5007;
constexpr int RTORINT = 5008;
constexpr int RT3DPOINT = 5009;
constexpr int RTLONG = 5010;
constexpr int RTVOID = 5014;
constexpr int RTLB = 5016;
constexpr int RTLE = 5017;
constexpr int RTDOTE = 5018;
constexpr int RTNIL = 5019;
constexpr int RTDXF0 = 5020;
constexpr int RTT = 5021;
constexpr int RTRESBUF = 5023;
constexpr int RTINT64 = 5031;

// Result status of host calls.
constexpr int RTNORM = 5100;
constexpr int RTERROR = -5001;
constexpr int RTCAN = -5002;
constexpr int RTREJ = -5003;
constexpr int RTFAIL = -5004;
constexpr int RTKWORD = -5005;
constexpr int RTINPUTTRUNCATED = -5008;

struct ads_binary {
    short clen;
    char* buf;
};

union ads_u_val {
    ads_real rreal;
    ads_real rpoint[3];
    short rint;
    ACHAR* rstring;
    Adesk::IntPtr rlname[2];
    Adesk::Int32 rlong;
    Adesk::Int64 mnInt64;
    ads_binary rbinary;
    unsigned char ihandle[8];
};

struct resbuf {
    resbuf* rbnext;
    short restype;
    ads_u_val resval;
};

// A zeroed buffer of the given type; strings are left null. Null when out of memory.
resbuf* acutNewRb(int type);
// Frees a whole chain, with the strings and binary chunks it holds.
int acutRelRb(resbuf* chain);
// A chain from pairs of type and value, ended by 0. Types are result types (RTSTR, RT3DPOINT,
// RTSHORT, ...) or group codes, whose value kind follows the group code's range: strings as
// const ACHAR*, reals as double, points as ads_point, 16-bit values and 32-bit values as int,
// entity names as ads_name. RTLB, RTLE, RTDOTE, RTNIL and RTT take no value. Null on an unknown
// type.
resbuf* acutBuildList(int type, ...);
// A copy of a string, allocated as result-buffer strings are (freed by acutRelRb).
ACHAR* acutNewString(const ACHAR* text);
void acutDelString(ACHAR*& text);

// Entity names.
inline void ads_name_set(const ads_name from, ads_name to) {
    to[0] = from[0];
    to[1] = from[1];
}
inline void ads_name_clear(ads_name name) {
    name[0] = name[1] = 0;
}
inline bool ads_name_nil(const ads_name name) {
    return name[0] == 0 && name[1] == 0;
}
inline bool ads_name_equal(const ads_name a, const ads_name b) {
    return a[0] == b[0] && a[1] == b[1];
}
