// Every fault the library reports becomes a QelException with a reason a user can act on.
#pragma once

#include <qel/qel.h>

#include <fmt/format.h>

namespace qel {

template <typename... Args>
[[noreturn]] void fail(fmt::format_string<Args...> text, Args&&... args) {
    throw QelException(fmt::format(text, std::forward<Args>(args)...).c_str());
}

} // namespace qel
