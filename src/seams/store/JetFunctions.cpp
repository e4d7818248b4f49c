#include "seams/store/JetFunctions.h"

#include "seams/store/TextForms.h"

#include <sqlite3.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace pelkor::store {

namespace {

// One weight per byte. ASCII upper case folds onto lower case; '-' and '+'
// trade places so that '-' < ',' < '+'. Bytes of multi-byte UTF-8 keep
// their value, which is above every ASCII weight, so comparing the first
// differing byte keeps code point order.
constexpr std::array<unsigned char, 256> makeWeights()
{
    std::array<unsigned char, 256> w{};
    for (int i = 0; i < 256; ++i)
        w[size_t(i)] = static_cast<unsigned char>(i);
    for (int c = 'A'; c <= 'Z'; ++c)
        w[size_t(c)] = static_cast<unsigned char>(c - 'A' + 'a');
    w['-'] = '+';
    w['+'] = '-';
    return w;
}
constexpr std::array<unsigned char, 256> weights = makeWeights();

int collate(void*, int na, const void* a, int nb, const void* b)
{
    return jetTextCompare(static_cast<const char*>(a), na, static_cast<const char*>(b), nb);
}

void isDate(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    int r = 0;
    if (sqlite3_value_type(argv[0]) == SQLITE_TEXT) {
        const auto* p = reinterpret_cast<const char*>(sqlite3_value_text(argv[0]));
        const int n = sqlite3_value_bytes(argv[0]);
        int y, m, d;
        r = p && text::parseIsoDate(p, p + n, y, m, d) ? 1 : 0;
    }
    sqlite3_result_int(ctx, r);
}

void isNumeric(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    // A stored infinity (written by another tool) is no sum: it would turn
    // every balance after it into nonsense.
    int r = 0;
    switch (sqlite3_value_type(argv[0])) {
    case SQLITE_INTEGER:
        r = 1;
        break;
    case SQLITE_FLOAT:
        r = std::isfinite(sqlite3_value_double(argv[0])) ? 1 : 0;
        break;
    case SQLITE_TEXT: {
        const auto* p = reinterpret_cast<const char*>(sqlite3_value_text(argv[0]));
        const int n = sqlite3_value_bytes(argv[0]);
        double v;
        r = p && text::parseNumber(p, p + n, v) && std::isfinite(v) ? 1 : 0;
        break;
    }
    default:
        break;
    }
    sqlite3_result_int(ctx, r);
}

// The argument as a double; false (and an error set) when it is no number.
bool argNumber(sqlite3_context* ctx, sqlite3_value* v, double& out)
{
    switch (sqlite3_value_type(v)) {
    case SQLITE_INTEGER:
        out = double(sqlite3_value_int64(v));
        return true;
    case SQLITE_FLOAT:
        out = sqlite3_value_double(v);
        return true;
    case SQLITE_TEXT: {
        const auto* p = reinterpret_cast<const char*>(sqlite3_value_text(v));
        const int n = sqlite3_value_bytes(v);
        if (p && text::parseNumber(p, p + n, out))
            return true;
        break;
    }
    default:
        break;
    }
    sqlite3_result_error(ctx, "Type mismatch", -1);
    return false;
}

template <long long Lo, long long Hi>
void toWhole(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL) {
        sqlite3_result_null(ctx);
        return;
    }
    if (sqlite3_value_type(argv[0]) == SQLITE_INTEGER) {
        const sqlite3_int64 i = sqlite3_value_int64(argv[0]);
        if (i < Lo || i > Hi)
            sqlite3_result_error(ctx, "Overflow", -1);
        else
            sqlite3_result_int64(ctx, i);
        return;
    }
    double d = 0;
    if (!argNumber(ctx, argv[0], d))
        return;
    // To nearest, ties to even, as the old engine rounded.
    const double r = std::nearbyint(d);
    if (!(r >= double(Lo) && r <= double(Hi)))
        sqlite3_result_error(ctx, "Overflow", -1);
    else
        sqlite3_result_int64(ctx, sqlite3_int64(r));
}

void toDouble(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL) {
        sqlite3_result_null(ctx);
        return;
    }
    double d = 0;
    if (argNumber(ctx, argv[0], d))
        sqlite3_result_double(ctx, d);
}

} // namespace

int jetTextCompare(const char* a, int na, const char* b, int nb)
{
    // Sorting the ledger compares mostly equal texts (the same detail, the
    // same sign) or texts equal up to late in them: the equal run is
    // skipped eight bytes at a time, and weights are looked up only where
    // the bytes differ.
    const auto* pa = reinterpret_cast<const unsigned char*>(a);
    const auto* pb = reinterpret_cast<const unsigned char*>(b);
    const int n = na < nb ? na : nb;
    int i = 0;
    for (;;) {
        while (i + 8 <= n) {
            std::uint64_t x, y;
            std::memcpy(&x, pa + i, 8);
            std::memcpy(&y, pb + i, 8);
            if (x != y)
                break;
            i += 8;
        }
        while (i < n && pa[i] == pb[i])
            ++i;
        if (i >= n)
            return na - nb;
        const int wa = weights[pa[i]];
        const int wb = weights[pb[i]];
        if (wa != wb)
            return wa - wb;
        ++i;  // the same letter in another case
    }
}

int registerJetFunctions(sqlite3* db)
{
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    struct Fn { const char* name; void (*fn)(sqlite3_context*, int, sqlite3_value**); };
    const Fn fns[] = {
        {"isdate", isDate},
        {"isnumeric", isNumeric},
        {"cint", toWhole<-32768, 32767>},
        {"clng", toWhole<-2147483648LL, 2147483647LL>},
        {"cdbl", toDouble},
    };
    for (const Fn& f : fns) {
        const int rc = sqlite3_create_function_v2(db, f.name, 1, flags, nullptr, f.fn, nullptr, nullptr, nullptr);
        if (rc != SQLITE_OK)
            return rc;
    }
    return sqlite3_create_collation_v2(db, "JETTEXT", SQLITE_UTF8, nullptr, collate, nullptr);
}

} // namespace pelkor::store
