// The texts of contour elevation labels: the label unit a file's unit code stands for, and the
// number in that unit as the label shows it.
#pragma once

#include <string>

// The label unit of a file's "elevationUnit" (above 16 counts as 1).
int QelContourLabelUnit(int fileUnit);
// The label of an elevation given in metres, in label unit code: "12.5 m", "3'-6 1/2\"arch",
// "1:6.00 ft:in". False (after the units message) for a code past 16.
bool QelContourLabelText(double metres, int labelUnit, std::wstring& text);

// Feet and inches with a fraction of the given denominator: 0.5 gives 0'-6".
std::wstring QelFeetInchesText(double feet, int denominator);
// Feet and decimal inches with that many digits: 0.5 gives 0:6.00.
std::wstring QelFeetDecimalInchesText(double feet, int digits);
// A "%f" number with trailing zeros (and then its dot) dropped, at most the five last decimals.
std::wstring QelTrimFixed(const std::wstring& text);
