// Shared helpers of the drawing tests: fixtures, reading and writing in memory.
#pragma once

#include <dxf/drawing.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

inline std::string fixtureText(const std::string& name) {
    std::ifstream in(std::string(QEL_FIXTURES) + "/dxf/" + name, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

inline std::string drawingText(AcDbDatabase& db) {
    std::ostringstream out;
    dxf::writeDrawing(db, out);
    return out.str();
}

// The record of that handle in a DXF text, from its group 0 to the next one.
inline std::string recordWithHandle(const std::string& text, const std::string& handle) {
    const std::string key = "\n  5\n" + handle + "\n";
    const size_t at = text.find(key);
    if (at == std::string::npos) return "";
    const size_t begin = text.rfind("\n  0\n", at);
    const size_t end = text.find("\n  0\n", at);
    return text.substr(begin, end - begin);
}

// Where two drawing texts differ, line by line; "" when they are the same. With tolerance,
// values that are numbers may differ by that much relative to their size (the ellipse keeps
// angles and the file parameters, which convert with a rounding).
inline std::string textDifference(const std::string& a, const std::string& b,
                                  double tolerance = 0.0) {
    std::istringstream ina(a), inb(b);
    std::string la, lb;
    for (size_t line = 1;; ++line) {
        const bool moreA = bool(std::getline(ina, la));
        const bool moreB = bool(std::getline(inb, lb));
        if (!moreA && !moreB) return "";
        if (la == lb) continue;
        char* endA = nullptr;
        char* endB = nullptr;
        const double va = std::strtod(la.c_str(), &endA);
        const double vb = std::strtod(lb.c_str(), &endB);
        const bool numbers =
            moreA && moreB && !la.empty() && !lb.empty() && *endA == 0 && *endB == 0;
        if (numbers && std::abs(va - vb) <= tolerance * std::max(std::abs(va), 1.0)) continue;
        return "line " + std::to_string(line) + ": \"" + la + "\" against \"" + lb + "\"";
    }
}
