#include "seams/store/Dialect.h"

#include "seams/store/StoreError.h"
#include "seams/store/TextForms.h"

#include <array>

namespace pelkor::store {

namespace {

struct Tok {
    enum Kind : unsigned char {
        Word,   // a bare word: keyword, name or function
        Name,   // [bracketed name]
        Str,    // 'text' or "text"
        Num,    // 12, 1.5, 1e3
        Date,   // #M/D/YYYY#, text holds the ISO form
        Op,     // punctuation and operators
        Param,  // ?N, made by the translator for an assigned text
    };
    Kind kind;
    QString text;
};

[[noreturn]] void fail(const QString& why, const QString& statement)
{
    throw StoreError(StoreError::Kind::Translate, why, statement);
}

bool isWordChar(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('_');
}

// #M/D/YYYY# (month first, as the statements write dates) or #YYYY-MM-DD#;
// a time after a blank is ignored.
QString dateLiteral(QStringView body, const QString& statement)
{
    body = body.trimmed();
    const qsizetype blank = body.indexOf(QLatin1Char(' '));
    if (blank > 0)
        body = body.left(blank);
    const auto* p = reinterpret_cast<const char16_t*>(body.data());
    const auto* e = p + body.size();
    int y = 0, m = 0, d = 0;
    if (text::parseIsoDate(p, e, y, m, d) && body.size() == 10)
        return text::isoDate(QDate(y, m, d));
    const auto parts = body.split(QLatin1Char('/'));
    if (parts.size() == 3) {
        bool ok1 = false, ok2 = false, ok3 = false;
        m = parts[0].toInt(&ok1);
        d = parts[1].toInt(&ok2);
        y = parts[2].toInt(&ok3);
        if (ok1 && ok2 && ok3 && parts[2].size() == 4 && parts[0].size() <= 2 && parts[1].size() <= 2
            && QDate::isValid(y, m, d))
            return text::isoDate(QDate(y, m, d));
    }
    fail(QStringLiteral("Syntax error in date in query expression: #%1#").arg(body), statement);
}

std::vector<Tok> tokenize(const QString& s)
{
    std::vector<Tok> out;
    const qsizetype n = s.size();
    qsizetype i = 0;
    while (i < n) {
        const QChar c = s[i];
        if (c.isSpace()) {
            ++i;
            continue;
        }
        if (c.isLetter() || c == QLatin1Char('_')) {
            qsizetype j = i + 1;
            while (j < n && isWordChar(s[j]))
                ++j;
            out.push_back({Tok::Word, s.mid(i, j - i)});
            i = j;
            continue;
        }
        if (c.isDigit() || (c == QLatin1Char('.') && i + 1 < n && s[i + 1].isDigit())) {
            qsizetype j = i;
            while (j < n && s[j].isDigit())
                ++j;
            if (j < n && s[j] == QLatin1Char('.')) {
                ++j;
                while (j < n && s[j].isDigit())
                    ++j;
            }
            if (j < n && (s[j] == QLatin1Char('e') || s[j] == QLatin1Char('E'))) {
                qsizetype k = j + 1;
                if (k < n && (s[k] == QLatin1Char('+') || s[k] == QLatin1Char('-')))
                    ++k;
                if (k < n && s[k].isDigit()) {
                    while (k < n && s[k].isDigit())
                        ++k;
                    j = k;
                }
            }
            if (j < n && isWordChar(s[j]))
                fail(QStringLiteral("Syntax error in number"), s);
            out.push_back({Tok::Num, s.mid(i, j - i)});
            i = j;
            continue;
        }
        switch (c.unicode()) {
        case '[': {
            const qsizetype j = s.indexOf(QLatin1Char(']'), i + 1);
            if (j < 0)
                fail(QStringLiteral("Missing ] in name"), s);
            if (j == i + 1)
                fail(QStringLiteral("Empty name []"), s);
            out.push_back({Tok::Name, s.mid(i + 1, j - i - 1)});
            i = j + 1;
            continue;
        }
        case '\'':
        case '"': {
            QString body;
            qsizetype j = i + 1;
            for (;;) {
                if (j >= n)
                    fail(QStringLiteral("Unterminated string"), s);
                if (s[j] == c) {
                    if (j + 1 < n && s[j + 1] == c) {
                        body += c;
                        j += 2;
                        continue;
                    }
                    break;
                }
                body += s[j++];
            }
            out.push_back({Tok::Str, body});
            i = j + 1;
            continue;
        }
        case '#': {
            const qsizetype j = s.indexOf(QLatin1Char('#'), i + 1);
            if (j < 0)
                fail(QStringLiteral("Missing # after date"), s);
            out.push_back({Tok::Date, dateLiteral(QStringView(s).mid(i + 1, j - i - 1), s)});
            i = j + 1;
            continue;
        }
        case '<':
            if (i + 1 < n && (s[i + 1] == QLatin1Char('>') || s[i + 1] == QLatin1Char('='))) {
                out.push_back({Tok::Op, s.mid(i, 2)});
                i += 2;
                continue;
            }
            break;
        case '>':
        case '!':
            if (i + 1 < n && s[i + 1] == QLatin1Char('=')) {
                out.push_back({Tok::Op, s.mid(i, 2)});
                i += 2;
                continue;
            }
            if (c == QLatin1Char('!'))
                fail(QStringLiteral("Syntax error at '!'"), s);
            break;
        case '(': case ')': case ',': case '.': case ';': case '*': case '+': case '-':
        case '/': case '=': case '&': case '%':
            break;
        default:
            fail(QStringLiteral("Invalid character '%1' in statement").arg(c), s);
        }
        out.push_back({Tok::Op, QString(c)});
        ++i;
    }
    return out;
}

bool isWord(const Tok& t, const char* w)
{
    return t.kind == Tok::Word && t.text.compare(QLatin1String(w), Qt::CaseInsensitive) == 0;
}
bool isOp(const Tok& t, const char* o)
{
    return t.kind == Tok::Op && t.text == QLatin1String(o);
}
bool isComparison(const Tok& t)
{
    return t.kind == Tok::Op
        && (t.text == QLatin1String("=") || t.text == QLatin1String("<>") || t.text == QLatin1String("<")
            || t.text == QLatin1String(">") || t.text == QLatin1String("<=") || t.text == QLatin1String(">=")
            || t.text == QLatin1String("!="));
}

QString quoteText(const QString& text)
{
    QString q = text;
    q.replace(QLatin1Char('\''), QLatin1String("''"));
    return QLatin1Char('\'') + q + QLatin1Char('\'');
}

// Keywords that may stand before a parenthesis without being a function.
bool takesOperand(const QString& w)
{
    static const std::array<const char*, 28> words{
        "from", "in", "and", "or", "not", "where", "on", "values", "select", "as", "exists", "join", "union", "all",
        "set", "by", "when", "then", "else", "into", "table", "like", "is", "between", "case", "distinct", "having",
        "column"};
    for (const char* r : words)
        if (w.compare(QLatin1String(r), Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

// Words SQLite reserves that the data files use as plain names.
bool reservedAsName(const QString& w)
{
    static const std::array<const char*, 8> words{"index", "indexed", "notnull", "glob", "regexp", "match",
                                                   "references", "constraint"};
    for (const char* r : words)
        if (w.compare(QLatin1String(r), Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

class Writer {
public:
    Writer(const std::vector<Tok>& toks, const QString& statement, const OrderHint& plainOrder)
        : t_(toks), stmt_(statement), plainOrder_(plainOrder)
    {
        match_.assign(t_.size(), -1);
        std::vector<size_t> open;
        for (size_t i = 0; i < t_.size(); ++i) {
            if (isOp(t_[i], "(")) {
                open.push_back(i);
            } else if (isOp(t_[i], ")")) {
                if (open.empty())
                    fail(QStringLiteral("Extra ) in query expression"), stmt_);
                match_[open.back()] = long(i);
                open.pop_back();
            }
        }
        if (!open.empty())
            fail(QStringLiteral("Missing ) in query expression"), stmt_);
    }

    QString write()
    {
        range(0, t_.size(), out_);
        return out_;
    }

private:
    static void put(QString& out, const QString& s)
    {
        if (!out.isEmpty() && !out.endsWith(QLatin1Char('(')) && s != QLatin1String(")") && s != QLatin1String(","))
            out += QLatin1Char(' ');
        out += s;
    }

    // The top-level comma-separated parts of [b, e).
    std::vector<std::pair<size_t, size_t>> split(size_t b, size_t e) const
    {
        std::vector<std::pair<size_t, size_t>> parts;
        size_t start = b;
        for (size_t i = b; i < e; ++i) {
            if (isOp(t_[i], "("))
                i = size_t(match_[i]);
            else if (isOp(t_[i], ",")) {
                parts.emplace_back(start, i);
                start = i + 1;
            }
        }
        if (start < e || !parts.empty())
            parts.emplace_back(start, e);
        return parts;
    }

    QString sub(size_t b, size_t e)
    {
        if (b >= e)
            fail(QStringLiteral("Missing expression"), stmt_);
        QString s;
        range(b, e, s);
        return s;
    }

    void call(const QString& name, size_t open, QString& out)
    {
        const size_t close = size_t(match_[open]);
        const auto args = split(open + 1, close);
        auto need = [&](size_t lo, size_t hi) {
            if (args.size() < lo || args.size() > hi)
                fail(QStringLiteral("Wrong number of arguments used with function %1 in query expression")
                         .arg(name),
                     stmt_);
        };
        const QString lower = name.toLower();
        QString s;
        if (lower == QLatin1String("left")) {
            need(2, 2);
            s = QStringLiteral("substr(%1, 1, %2)").arg(sub(args[0].first, args[0].second),
                                                         sub(args[1].first, args[1].second));
        } else if (lower == QLatin1String("mid")) {
            need(2, 3);
            s = QStringLiteral("substr(") + sub(args[0].first, args[0].second) + QStringLiteral(", ")
                + sub(args[1].first, args[1].second);
            if (args.size() == 3)
                s += QStringLiteral(", ") + sub(args[2].first, args[2].second);
            s += QLatin1Char(')');
        } else if (lower == QLatin1String("len")) {
            need(1, 1);
            s = QStringLiteral("length(") + sub(args[0].first, args[0].second) + QLatin1Char(')');
        } else if (lower == QLatin1String("isnull")) {
            need(1, 1);
            s = QStringLiteral("(") + sub(args[0].first, args[0].second) + QStringLiteral(" IS NULL)");
        } else if (lower == QLatin1String("iif")) {
            need(3, 3);
            s = QStringLiteral("(CASE WHEN %1 THEN %2 ELSE %3 END)")
                    .arg(sub(args[0].first, args[0].second), sub(args[1].first, args[1].second),
                         sub(args[2].first, args[2].second));
        } else {
            QString fn = name;
            if (lower == QLatin1String("ucase"))
                fn = QStringLiteral("upper");
            else if (lower == QLatin1String("lcase"))
                fn = QStringLiteral("lower");
            s = fn + QLatin1Char('(');
            QString inner;
            range(open + 1, close, inner);
            s += inner + QLatin1Char(')');
        }
        put(out, s);
    }

    void orderBy(size_t b, size_t e, QString& out)
    {
        const auto terms = split(b, e);
        if (terms.empty())
            fail(QStringLiteral("Missing ORDER BY term"), stmt_);
        bool first = true;
        for (auto [tb, te] : terms) {
            QString dir;
            if (te > tb && (isWord(t_[te - 1], "desc") || isWord(t_[te - 1], "asc")))
                dir = t_[--te].text.toUpper();
            if (!first)
                out += QLatin1Char(',');
            first = false;
            QString term = sub(tb, te);
            // A bare number names a result column; a collation would turn it
            // into a constant.
            if (!(te == tb + 1 && t_[tb].kind == Tok::Num) && !plainColumn(tb, te))
                term += QStringLiteral(" COLLATE JETTEXT");
            if (!dir.isEmpty())
                term += QLatin1Char(' ') + dir;
            put(out, term);
        }
    }

    // [b, e) is a column, bare or after its table, that the hint says
    // sorts the same without the collation.
    bool plainColumn(size_t b, size_t e) const
    {
        if (!plainOrder_)
            return false;
        auto isColumn = [](const Tok& k) { return k.kind == Tok::Word || k.kind == Tok::Name; };
        if (e == b + 1 && isColumn(t_[b]))
            return plainOrder_(QString(), t_[b].text);
        if (e == b + 3 && isColumn(t_[b]) && isOp(t_[b + 1], ".") && isColumn(t_[b + 2]))
            return plainOrder_(t_[b].text, t_[b + 2].text);
        return false;
    }

    void range(size_t b, size_t e, QString& out)
    {
        for (size_t i = b; i < e; ++i) {
            const Tok& k = t_[i];
            const Tok* prev = i > b ? &t_[i - 1] : nullptr;
            const bool callNext = i + 1 < e && isOp(t_[i + 1], "(");
            switch (k.kind) {
            case Tok::Word:
                if (callNext && !(prev && isOp(*prev, ".")) && !takesOperand(k.text)) {
                    call(k.text, i + 1, out);
                    i = size_t(match_[i + 1]);
                } else if (isWord(k, "order") && i + 1 < e && isWord(t_[i + 1], "by")) {
                    put(out, QStringLiteral("ORDER BY"));
                    orderBy(i + 2, e, out);
                    i = e;
                } else if (isWord(k, "true") || isWord(k, "false")) {
                    put(out, isWord(k, "true") ? QStringLiteral("1") : QStringLiteral("0"));
                } else if (isWord(k, "mod")) {
                    put(out, QStringLiteral("%"));
                } else if (reservedAsName(k.text)
                           && !(prev && (isWord(*prev, "create") || isWord(*prev, "unique") || isWord(*prev, "drop")))) {
                    put(out, quoteName(k.text));
                } else {
                    put(out, k.text);
                }
                break;
            case Tok::Name:
                put(out, quoteName(k.text));
                break;
            case Tok::Str: {
                QString body = k.text;
                if (prev && isWord(*prev, "like")) {
                    body.replace(QLatin1Char('*'), QLatin1Char('%'));
                    body.replace(QLatin1Char('?'), QLatin1Char('_'));
                }
                QString lit = quoteText(body);
                if (prev && isComparison(*prev))
                    lit += QStringLiteral(" COLLATE JETTEXT");
                put(out, lit);
                break;
            }
            case Tok::Date:
                put(out, quoteText(k.text));
                break;
            case Tok::Num:
            case Tok::Param:
                put(out, k.text);
                break;
            case Tok::Op:
                if (isOp(k, "(")) {
                    const size_t close = size_t(match_[i]);
                    QString inner;
                    range(i + 1, close, inner);
                    put(out, QLatin1Char('(') + inner + QLatin1Char(')'));
                    i = close;
                } else if (isOp(k, "&")) {
                    put(out, QStringLiteral("||"));
                } else if (isOp(k, ";")) {
                    fail(QStringLiteral("Characters found after end of SQL statement"), stmt_);
                } else {
                    put(out, k.text);
                }
                break;
            }
        }
    }

    const std::vector<Tok>& t_;
    const QString& stmt_;
    const OrderHint& plainOrder_;
    std::vector<long> match_;
    QString out_;
};

// Index of the first top-level token in [b, e) that is the word w, or e.
size_t findTop(const std::vector<Tok>& t, size_t b, size_t e, const char* w)
{
    int depth = 0;
    for (size_t i = b; i < e; ++i) {
        if (isOp(t[i], "("))
            ++depth;
        else if (isOp(t[i], ")"))
            --depth;
        else if (depth == 0 && isWord(t[i], w))
            return i;
    }
    return e;
}

bool isNameTok(const Tok& t)
{
    return t.kind == Tok::Word || t.kind == Tok::Name;
}

// Reads "IN <string>" at t[i]; removes it and returns the file, or empty.
QString takeInFile(std::vector<Tok>& t, size_t i, const QString& statement)
{
    if (i < t.size() && isWord(t[i], "in") && i + 1 < t.size() && t[i + 1].kind == Tok::Str) {
        QString file = t[i + 1].text;
        if (file.isEmpty())
            fail(QStringLiteral("Empty file name after IN"), statement);
        t.erase(t.begin() + long(i), t.begin() + long(i) + 2);
        return file;
    }
    return QString();
}

void qualifyTarget(std::vector<Tok>& t, size_t i)
{
    const Tok name{Tok::Name, t[i].text};
    t[i] = Tok{Tok::Word, QString::fromLatin1(attachedSchema)};
    t.insert(t.begin() + long(i) + 1, {Tok{Tok::Op, QStringLiteral(".")}, name});
}

Tok param(std::vector<Translation::Assigned>& assigned, Translation::Assigned a)
{
    assigned.push_back(std::move(a));
    return Tok{Tok::Param, QLatin1Char('?') + QString::number(assigned.size())};
}

} // namespace

Translation translate(const QString& statement, const OrderHint& plainOrder)
{
    std::vector<Tok> t = tokenize(statement);
    while (!t.empty() && isOp(t.back(), ";"))
        t.pop_back();
    if (t.empty())
        fail(QStringLiteral("Empty statement"), statement);
    if (t[0].kind != Tok::Word)
        fail(QStringLiteral("Invalid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT', or 'UPDATE'"),
             statement);

    Translation tr;
    const Tok first = t[0];
    if (isWord(first, "select")) {
        const size_t into = findTop(t, 1, t.size(), "into");
        const size_t from = findTop(t, 1, t.size(), "from");
        if (into < from) {
            if (into + 1 >= t.size() || !isNameTok(t[into + 1]))
                fail(QStringLiteral("Missing table name after INTO"), statement);
            tr.form = Translation::Form::SelectInto;
            tr.target = t[into + 1].text;
            tr.attachFile = takeInFile(t, into + 2, statement);
            if (into + 2 >= t.size() || !isWord(t[into + 2], "from"))
                fail(QStringLiteral("Missing FROM after SELECT ... INTO"), statement);
            t.erase(t.begin() + long(into), t.begin() + long(into) + 2);
            tr.derivedSource = into + 1 < t.size() && isOp(t[into + 1], "(");
        } else {
            tr.returnsRows = true;
        }
    } else if (isWord(first, "insert")) {
        if (t.size() < 4 || !isWord(t[1], "into") || !isNameTok(t[2]))
            fail(QStringLiteral("Syntax error in INSERT INTO statement"), statement);
        tr.target = t[2].text;
        tr.attachFile = takeInFile(t, 3, statement);
        std::vector<QString> columns;
        size_t i = 3;
        if (i < t.size() && isOp(t[i], "(")) {
            for (++i; i < t.size() && !isOp(t[i], ")"); ++i) {
                if (isNameTok(t[i]))
                    columns.push_back(t[i].text);
                else if (!isOp(t[i], ","))
                    fail(QStringLiteral("Syntax error in INSERT INTO column list"), statement);
            }
            ++i;
        }
        if (i < t.size() && isWord(t[i], "values")) {
            if (i + 1 >= t.size() || !isOp(t[i + 1], "("))
                fail(QStringLiteral("Syntax error in INSERT INTO statement"), statement);
            // Each value that is a quoted text alone becomes a parameter.
            int depth = 0;
            int place = 0;
            bool alone = true;
            for (size_t k = i + 2; k < t.size(); ++k) {
                if (isOp(t[k], "(")) {
                    ++depth;
                    alone = false;
                } else if (isOp(t[k], ")") && depth > 0) {
                    --depth;
                } else if (depth == 0 && (isOp(t[k], ",") || isOp(t[k], ")"))) {
                    const bool end = isOp(t[k], ")");
                    if (alone && k >= 1 && t[k - 1].kind == Tok::Str
                        && (isOp(t[k - 2], ",") || isOp(t[k - 2], "("))) {
                        Translation::Assigned a;
                        if (!columns.empty()) {
                            if (size_t(place) >= columns.size())
                                fail(QStringLiteral("Number of query values and destination fields are not the same"),
                                     statement);
                            a.column = columns[size_t(place)];
                        } else {
                            a.position = place;
                        }
                        a.text = t[k - 1].text;
                        t[k - 1] = param(tr.assigned, std::move(a));
                    }
                    ++place;
                    alone = true;
                    if (end) {
                        if (k + 1 != t.size())
                            fail(QStringLiteral("Characters found after end of SQL statement"), statement);
                        break;
                    }
                }
            }
        }
        if (!tr.attachFile.isEmpty())
            qualifyTarget(t, 2);
    } else if (isWord(first, "update")) {
        if (t.size() < 4 || !isNameTok(t[1]))
            fail(QStringLiteral("Syntax error in UPDATE statement"), statement);
        tr.target = t[1].text;
        tr.attachFile = takeInFile(t, 2, statement);
        if (t.size() < 3 || !isWord(t[2], "set"))
            fail(QStringLiteral("Syntax error in UPDATE statement"), statement);
        const size_t where = findTop(t, 3, t.size(), "where");
        // col = 'text' [, ...] up to WHERE.
        size_t start = 3;
        int depth = 0;
        for (size_t k = 3; k <= where; ++k) {
            const bool atEnd = k == where;
            if (!atEnd && isOp(t[k], "(")) {
                ++depth;
            } else if (!atEnd && isOp(t[k], ")")) {
                --depth;
            } else if (atEnd || (depth == 0 && isOp(t[k], ","))) {
                // [start, k) is one assignment: name [. name] = value
                size_t eq = start;
                while (eq < k && !isOp(t[eq], "="))
                    ++eq;
                if (eq + 2 == k && eq > start && t[eq + 1].kind == Tok::Str && isNameTok(t[eq - 1])) {
                    Translation::Assigned a;
                    a.column = t[eq - 1].text;
                    a.text = t[eq + 1].text;
                    t[eq + 1] = param(tr.assigned, std::move(a));
                }
                start = k + 1;
            }
        }
        if (!tr.attachFile.isEmpty())
            qualifyTarget(t, 1);
    } else if (isWord(first, "delete")) {
        const size_t from = findTop(t, 1, t.size(), "from");
        if (from == t.size())
            fail(QStringLiteral("Syntax error in DELETE statement: missing FROM"), statement);
        // DELETE * FROM t, DELETE t.* FROM t: the list names no columns.
        t.erase(t.begin() + 1, t.begin() + long(from));
    } else if (isWord(first, "alter")) {
        if (t.size() < 5 || !isWord(t[1], "table") || !isNameTok(t[2]))
            fail(QStringLiteral("Syntax error in ALTER TABLE statement"), statement);
        if (isWord(t[3], "add") || isWord(t[3], "drop")) {
            if (!isWord(t[4], "column"))
                t.insert(t.begin() + 4, Tok{Tok::Word, QStringLiteral("COLUMN")});
            if (isWord(t[3], "add") && t.size() < 7)
                fail(QStringLiteral("Syntax error in field definition"), statement);
        } else {
            fail(QStringLiteral("Syntax error in ALTER TABLE statement"), statement);
        }
    } else if (isWord(first, "drop") || isWord(first, "create")) {
        // Schema statements pass through with the name and literal rules.
    } else {
        fail(QStringLiteral("Invalid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT', or 'UPDATE'"),
             statement);
    }

    tr.sql = Writer(t, statement, plainOrder).write();
    return tr;
}

QString quoteName(const QString& name)
{
    QString q = name;
    q.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + q + QLatin1Char('"');
}

} // namespace pelkor::store
