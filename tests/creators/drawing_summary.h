// What a drawing holds after an import, as text: one line per entity of model space in order,
// then the entities of each block definition, the groups and the error count. Fixtures keep the
// expected text; numbers compare within a tolerance.
#pragma once

#include <arx/arx.h>

#include <functional>
#include <string>
#include <vector>

namespace creatorstest {

// The lines of the working database's summary:
//   <Kind> layer=<name> colour=<index> [hidden] group=<description or -> [rec=<type>/<object>/
//   <part>/<context>/<serial> <field>=<value>... [rgroup=<other>]] [xdata="a","b"] <geometry>
//   block "<name>": <entity line as above>
//   group "<description>" members=<n>
//   errors <n>
std::vector<std::string> SummariseDrawing();

// Whether an actual line matches an expected one. Quoted texts and words compare exactly;
// numbers within a tolerance: by default 1e-6 times the larger of 1 and the expected value, or
// the absolute tolerance written after the number as in "12.566~1e-3". A "*" in the expected
// line stands for any one word or number. On a mismatch why says where.
bool LineMatches(const std::string& expected, const std::string& actual, std::string& why);

// How many entities of the database's model space pass the test (each open for read while it
// runs); -1 when model space does not open.
int CountModelSpace(AcDbDatabase& db, const std::function<bool(AcDbEntity&)>& test);

} // namespace creatorstest
