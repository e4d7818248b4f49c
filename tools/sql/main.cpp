// pelkor-sql: runs statements of the ledger's dialect on a data file.
//
//   pelkor-sql [--create-params|--create-feed] <file> "<statement>" ["<statement>" ...]
//
// Each statement goes through the same store as the program. A statement
// that returns rows prints a header line of field names and then one line a
// row, fields separated by tabs; Null prints as "Null", dates as dd/mm/yyyy.
// A statement that changes rows prints "<n> rows affected" to stderr. The
// first failed statement stops the run: its message goes to stderr and the
// exit code is 1 (2 for bad usage, 3 when the file cannot be opened).
//
// --create-params and --create-feed create the file (it must not exist) with
// the tables of a parameter database or of a bank feed before the statements
// run: handy for preparing fixtures from a shell.
#include "file/Schema.h"
#include "seams/store/Connection.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStringList>

#include <cstdio>

using namespace pelkor;

namespace {

void out(const QString& s) { std::fputs(s.toUtf8().constData(), stdout); }
void err(const QString& s) { std::fputs(s.toUtf8().constData(), stderr); }

QString cellText(const store::Value& v)
{
    if (v.isNull())
        return QStringLiteral("Null");
    QString s = v.toString();
    s.replace(QLatin1Char('\t'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
    return s;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    QString create;
    if (!args.isEmpty() && args.first().startsWith(QLatin1String("--create-")))
        create = args.takeFirst();
    if (args.size() < 2 || (!create.isEmpty() && create != QLatin1String("--create-params") &&
                            create != QLatin1String("--create-feed"))) {
        err(QStringLiteral("usage: pelkor-sql [--create-params|--create-feed] <file> \"<statement>\" [...]\n"));
        return 2;
    }
    const QString path = args.takeFirst();
    store::Connection cn;
    try {
        if (!create.isEmpty()) {
            if (QFileInfo::exists(path)) {
                err(QStringLiteral("%1: already exists\n").arg(path));
                return 3;
            }
            cn.open(path, store::Connection::OpenMode::ReadWriteCreate);
            cn.executeRaw(create == QLatin1String("--create-params")
                              ? schema::paramsScript()
                              : schema::feedScript(schema::bankFeedTables() << QStringLiteral("demoOsh")));
        } else {
            cn.open(path);
        }
    } catch (const store::StoreError& e) {
        err(e.fullText() + QLatin1Char('\n'));
        return 3;
    }
    for (const QString& sql : args) {
        try {
            store::Recordset rs = cn.execute(sql);
            if (rs.fieldCount() == 0) {
                err(QStringLiteral("%1 rows affected\n").arg(rs.recordsAffected()));
                continue;
            }
            out(rs.fieldNames().join(QLatin1Char('\t')) + QLatin1Char('\n'));
            for (long r = 0; r < rs.recordCount(); ++r) {
                QStringList cells;
                for (int c = 0; c < rs.fieldCount(); ++c)
                    cells << cellText(rs.at(r, c));
                out(cells.join(QLatin1Char('\t')) + QLatin1Char('\n'));
            }
        } catch (const store::StoreError& e) {
            err(e.fullText() + QLatin1Char('\n'));
            return 1;
        }
    }
    return 0;
}
