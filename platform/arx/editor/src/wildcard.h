// Wildcard patterns of the host, as selection filters and name prompts take them, case ignored:
// "*" any run, "?" any character, "#" a digit, "@" a letter, "." any character that is neither
// letter nor digit, "[...]" one of (with "~" first: none of) the characters or ranges, "`" takes
// the next character literally, "," separates alternatives, and "~" at the start of the
// pattern matches what the rest does not.
#pragma once

#include <string_view>

namespace qelhost {

bool wildcardMatch(std::wstring_view text, std::wstring_view pattern);

} // namespace qelhost
