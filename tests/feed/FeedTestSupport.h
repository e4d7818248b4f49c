// What the importer's tests share: the sample statements' folder, files
// written on the fly, and a file read and planned into feed rows.
#pragma once

#include "FeedRows.h"
#include "Statement.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace pelkor::feedtest {

// The sample statements kept with the tests (tests/feed/fixtures, with
// their sources in SOURCES.md there).
inline QString samplesDir()
{
#ifdef PELKOR_STATEMENTS_DIR
    return QStringLiteral(PELKOR_STATEMENTS_DIR);
#else
    return {};
#endif
}

inline bool writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size();
}

// The plan of some files, every row kept (no day limit); a statement
// without balances is given closing (when set) as its closing balance.
inline feed::FeedPlan planOf(const QList<feed::ReadResult>& files, std::optional<double> closing = std::nullopt,
                             int nDays = 0)
{
    return feed::planFeed(files, nDays, [closing](const QString&, const QDate&) { return closing; });
}

inline const feed::AccountSummary* accountIn(const feed::FeedPlan& p, const QString& account)
{
    for (const feed::AccountSummary& a : p.accounts)
        if (a.account == account)
            return &a;
    return nullptr;
}

} // namespace pelkor::feedtest
