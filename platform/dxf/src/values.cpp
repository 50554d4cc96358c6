#include <dxf/tags.h>

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <stdexcept>

namespace dxf {

DxfError::DxfError(const std::string& source, std::size_t line, const std::string& what)
    : std::runtime_error(line ? fmt::format("{}, line {}: {}", source, line, what)
                              : fmt::format("{}: {}", source, what)),
      m_line(line) {}

namespace {

// DXF values may carry blanks around them; numbers are read without them.
std::string_view trimmed(const std::string& s) {
    std::size_t a = 0, b = s.size();
    while (a < b && (s[a] == ' ' || s[a] == '\t'))
        ++a;
    while (b > a && (s[b - 1] == ' ' || s[b - 1] == '\t'))
        --b;
    return std::string_view(s).substr(a, b - a);
}

[[noreturn]] void bad(const Tag& tag, const std::string& where, const char* expected) {
    throw std::invalid_argument(fmt::format("{}: group {} value {} is not {}", where, tag.code,
                                            quotedValue(tag.value), expected));
}

} // namespace

double toDouble(const Tag& tag, const std::string& where) {
    const std::string_view text = trimmed(tag.value);
    double v = 0;
    auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (ec != std::errc() || end != text.data() + text.size() || !std::isfinite(v))
        bad(tag, where, "a number");
    return v;
}

std::int64_t toInteger(const Tag& tag, const std::string& where) {
    const std::string_view text = trimmed(tag.value);
    std::int64_t v = 0;
    auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (ec != std::errc() || end != text.data() + text.size()) bad(tag, where, "a whole number");
    return v;
}

std::uint64_t toHandle(const Tag& tag, const std::string& where) {
    const std::string_view text = trimmed(tag.value);
    std::uint64_t v = 0;
    auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), v, 16);
    if (text.empty() || text.size() > 16 || ec != std::errc() || end != text.data() + text.size())
        bad(tag, where, "a handle (1 to 16 hexadecimal digits)");
    return v;
}

std::string formatDouble(double value) {
    if (value == 0.0) return "0.0";
    // No reader takes "nan" or "inf" back, this one included: refused rather than written.
    if (!std::isfinite(value))
        throw std::invalid_argument("a real value that is not a finite number (" +
                                    std::to_string(value) + ") cannot be written");
    char text[64];
    auto [end, ec] = std::to_chars(text, text + sizeof text - 2, value);
    // Readers of other programs expect a decimal point or an exponent in a real value.
    if (std::find_if(text, end, [](char c) { return c == '.' || c == 'e'; }) == end) {
        *end++ = '.';
        *end++ = '0';
    }
    return std::string(text, end);
}

std::string quotedValue(std::string_view value) {
    constexpr std::size_t kShown = 40;
    if (value.size() <= kShown) return "'" + std::string(value) + "'";
    return "'" + std::string(value.substr(0, kShown)) + "...'";
}

std::string formatHandle(std::uint64_t handle) {
    return fmt::format("{:X}", handle);
}

} // namespace dxf
