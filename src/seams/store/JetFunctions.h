// JetFunctions: the functions and the text order of the old engine that
// SQLite lacks, registered on every connection.
//
//   isdate(x)     1 when x's raw value is a stored date ("YYYY-MM-DD"), else 0.
//                 Text that is no date, a number and Null are not dates: a
//                 damaged row is found by WHERE NOT isdate([date]).
//   isnumeric(x)  1 when x is a number or a text that reads as one in the
//                 old engine's forms ("1,234.50", "12-"), else 0; Null is 0.
//   cint(x)       x rounded half to even into -32768..32767 (cint(2.5) = 2,
//                 cint(3.5) = 4, cint('7') = 7); Null gives Null; a text that
//                 is no number fails with "Type mismatch", out of range with
//                 "Overflow", as the old engine did.
//   clng(x)       the same into 32 bits.
//   cdbl(x)       x as a double; the same failures.
//   COLLATE JETTEXT  text order ignoring ASCII case, with '-' below '+'
//                 (so Left(kind,1) DESC gives every '+' kind first); other
//                 characters in code point order.
//
// All are deterministic and allocate nothing: they run once per row of a
// sort of the whole ledger.
#pragma once

struct sqlite3;

namespace pelkor::store {

// Returns an SQLite result code.
int registerJetFunctions(sqlite3* db);

// The collation's comparison, for tests: <0, 0, >0.
int jetTextCompare(const char* a, int na, const char* b, int nb);

} // namespace pelkor::store
