#include "presenter/StreamOrder.h"

namespace TavNA {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// The run of digits starting at `at`, without its leading zeros; `at` moves
// past the run.
std::string_view digitRun(std::string_view s, std::size_t& at) {
    while (at < s.size() && s[at] == '0' && at + 1 < s.size() && isDigit(s[at + 1]))
        ++at;
    const std::size_t start = at;
    while (at < s.size() && isDigit(s[at]))
        ++at;
    return s.substr(start, at - start);
}

// Negative, zero or positive as `a` sorts before, with or after `b`, ignoring
// leading zeros.
int naturalCompare(std::string_view a, std::string_view b) {
    std::size_t i = 0, j = 0;
    while (i < a.size() && j < b.size()) {
        if (isDigit(a[i]) && isDigit(b[j])) {
            const std::string_view x = digitRun(a, i);
            const std::string_view y = digitRun(b, j);
            if (x.size() != y.size())
                return x.size() < y.size() ? -1 : 1;
            if (const int c = x.compare(y); c != 0)
                return c;
            continue;
        }
        if (a[i] != b[j])
            return static_cast<unsigned char>(a[i]) < static_cast<unsigned char>(b[j]) ? -1 : 1;
        ++i;
        ++j;
    }
    return (i < a.size()) - (j < b.size());
}

// MACs are written in one fixed form, but hex digits may come in either case.
int macCompare(std::string_view a, std::string_view b) {
    for (std::size_t i = 0; i < a.size() && i < b.size(); ++i)
        if (lower(a[i]) != lower(b[i]))
            return lower(a[i]) < lower(b[i]) ? -1 : 1;
    return (a.size() > b.size()) - (a.size() < b.size());
}

} // namespace

bool naturalLess(std::string_view a, std::string_view b) {
    if (const int c = naturalCompare(a, b); c != 0)
        return c < 0;
    return a < b;
}

bool streamBefore(const StreamSortKey& a, const StreamSortKey& b) {
    if (const int c = macCompare(a.dstMac, b.dstMac); c != 0)
        return c < 0;
    if (naturalLess(a.name, b.name) || naturalLess(b.name, a.name))
        return naturalLess(a.name, b.name);
    return macCompare(a.srcMac, b.srcMac) < 0;
}

} // namespace TavNA
