// The solid-model text of 3DSOLID, REGION and BODY entities: in the file it stands in groups 1
// (one per line of the model text) and 3 (the continuation of a line longer than 255
// characters), each character coded as the file format wants; here it is one plain text with a
// line end after each line.
#pragma once

#include <dxf/tags.h>

#include <string>

namespace dxf {

// The model text of the groups 1 and 3 among tags, in order; other groups are passed over.
std::string satFromTags(const Tags& tags);
// The groups 1 and 3 that carry the model text.
Tags tagsFromSat(const std::string& sat);
// Those groups as the file holds them, written out (what TagWriter makes of tagsFromSat).
std::string formattedSatGroups(const std::string& sat);

} // namespace dxf
