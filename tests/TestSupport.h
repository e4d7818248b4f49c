// What every kind of test needs: an application object for the event loop,
// and a file's rows read back as text.
#pragma once

#include "seams/store/Connection.h"

#include <QCoreApplication>
#include <QStringList>

namespace pelkor::testing {

inline void ensureApplication()
{
    static int argc = 1;
    static char name[] = "pelkor_tests";
    static char* argv[] = {name, nullptr};
    if (!QCoreApplication::instance())
        new QCoreApplication(argc, argv);
}

// Rows of a query on the file, "a|b" each (Null as "NULL"), joined by ";".
inline QString queryRows(const QString& file, const QString& sql)
{
    store::Connection cn;
    cn.open(file);
    auto rs = cn.execute(sql);
    QStringList rows;
    for (long r = 0; r < rs.recordCount(); ++r) {
        QStringList f;
        for (int c = 0; c < rs.fieldCount(); ++c)
            f << (rs.at(r, c).isNull() ? QStringLiteral("NULL") : rs.at(r, c).toString());
        rows << f.join(QLatin1Char('|'));
    }
    return rows.join(QLatin1Char(';'));
}

} // namespace pelkor::testing
