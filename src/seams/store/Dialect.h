// Dialect: turns one statement of the dialect the system's statements are
// written in into SQLite.
//
// The statement is split into tokens and written out again, token by token:
//   [name]            -> "name"; bare `index` (and a few other words SQLite
//                        reserves) used as a name -> "index"
//   #M/D/YYYY#        -> 'YYYY-MM-DD'
//   "text"            -> 'text' (a string, as the old engine read it)
//   true / false      -> 1 / 0
//   &                 -> ||
//   left(a,n)         -> substr(a,1,n);  mid(a,s[,n]) -> substr(a,s[,n])
//   len(a)            -> length(a);      ucase/lcase -> upper/lower
//   isnull(a)         -> (a IS NULL)
//   isdate, isnumeric, cint: functions registered on the connection
//                        (JetFunctions.h); iif, trim, min, max, sum, count:
//                        SQLite's own
//   ORDER BY terms    -> each term gets COLLATE JETTEXT, the old engine's
//                        text order ('-' below '+', no case), except a
//                        column that the caller knows to hold dates or
//                        numbers (see OrderHint)
//   text = 'literal'  -> the literal gets COLLATE JETTEXT, so comparisons
//                        of text ignore case as they did
//   DELETE * FROM     -> DELETE FROM
//   ALTER TABLE t ADD c type -> ALTER TABLE t ADD COLUMN c type
//
// Statement forms that need more than one SQLite step are described by the
// Translation and carried out by Connection:
//   SELECT cols INTO t [IN "file"] FROM ...   (form SelectInto)
//   INSERT INTO t IN "file" ..., UPDATE t IN "file" SET ...  (attachFile)
// A quoted text assigned to a column (UPDATE ... SET c='x', INSERT ...
// VALUES ('x')) becomes a numbered parameter; Connection converts it by the
// declared type of the column before binding (a number or date column gets
// a number or an ISO date, or the statement fails).
//
// Anything else (an unknown first word, a second statement, a bad date
// literal, an unterminated string) throws StoreError(Translate).
#pragma once

#include <QString>
#include <functional>
#include <vector>

namespace pelkor::store {

// A name as SQLite reads it: in double quotes, a quote inside doubled.
QString quoteName(const QString& name);

// The schema name under which a file named by IN "<file>" is attached.
inline constexpr const char* attachedSchema = "pk_in";

struct Translation {
    enum class Form { Plain, SelectInto };

    // A quoted text assigned to a column, bound as parameter ?N (N = index + 1).
    struct Assigned {
        QString column;     // the column's name, or empty when only its place is known
        int position = -1;  // its place in the table (INSERT without a column list)
        QString text;       // the literal's text, quotes removed
    };

    Form form = Form::Plain;
    // Plain: the SQLite statement. SelectInto: the source SELECT.
    QString sql;
    // SelectInto, INSERT, UPDATE: the table written (as written, unquoted).
    QString target;
    // IN "<file>": the file to attach as attachedSchema; the target (and
    // only the target) lives there.
    QString attachFile;
    std::vector<Assigned> assigned;
    // Whether the statement may return rows (SELECT).
    bool returnsRows = false;
    // SelectInto from a parenthesised derived table (a UNION of lines).
    bool derivedSource = false;
};

// Tells whether an ORDER BY term that is a bare column, [table.]column,
// sorts the same without the text collation: a column that holds stored
// dates (whose text order is their date order) or numbers (which SQLite
// never collates). table is empty when the term names none. Leaving the
// collation off such a term, the first term of the ledger's order above
// all, lets SQLite's sorter compare it directly, which is most of the
// sort's time.
using OrderHint = std::function<bool(const QString& table, const QString& column)>;

// Throws StoreError(Translate) naming the statement. Without a hint every
// ORDER BY term gets the collation.
Translation translate(const QString& statement, const OrderHint& plainOrder = {});

} // namespace pelkor::store
