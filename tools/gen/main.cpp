// pelkor-gen: writes a realistic data file for trials, demos and benchmarks.
//
//   pelkor-gen <file.pkr> [--lines N] [--years Y] [--damaged K] [--seed S]
//   pelkor-gen <file.pkr> --demo      the demonstration ledger (a year ending today)
//   pelkor-gen <merge.pkr> --merge-template   the merged bank report's template,
//                                     made by the build beside the program
//
// The file is replaced if it exists. See file/LedgerGenerator.h for what a
// generated ledger holds.
#include "gen/DemoLedger.h"
#include "gen/LedgerGenerator.h"
#include "file/Schema.h"
#include "seams/store/Connection.h"
#include "seams/store/StoreError.h"

#include <QCoreApplication>
#include <QDate>
#include <QFile>
#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList a = app.arguments();
    if (a.size() < 2 || a[1].startsWith(QLatin1Char('-'))) {
        std::fprintf(stderr, "usage: pelkor-gen <file.pkr> [--lines N] [--years Y] [--damaged K] [--seed S] | --demo\n");
        return 2;
    }
    if (a.size() == 3 && a[2] == QLatin1String("--demo")) {
        try {
            pelkor::generator::generateDemoLedger(a[1], QDate::currentDate());
        } catch (const pelkor::store::StoreError& e) {
            std::fprintf(stderr, "pelkor-gen: %s\n", e.what());
            return 1;
        }
        return 0;
    }
    if (a.size() == 3 && a[2] == QLatin1String("--merge-template")) {
        // Made beside its name and renamed, so a build never leaves half a template.
        const QString part = a[1] + QStringLiteral(".part");
        QFile::remove(part);
        try {
            pelkor::store::Connection cn;
            cn.open(part, pelkor::store::Connection::OpenMode::ReadWriteCreate);
            cn.executeRaw(pelkor::schema::mergeFileTemplateScript());
            cn.close();
        } catch (const pelkor::store::StoreError& e) {
            QFile::remove(part);
            std::fprintf(stderr, "pelkor-gen: %s\n", e.what());
            return 1;
        }
        QFile::remove(a[1]);
        return QFile::rename(part, a[1]) ? 0 : 1;
    }
    pelkor::generator::GeneratorOptions o;
    for (int i = 2; i + 1 < a.size(); i += 2) {
        bool ok = false;
        const long v = a[i + 1].toLong(&ok);
        if (!ok || v < 0) {
            std::fprintf(stderr, "pelkor-gen: %s is not a number\n", a[i + 1].toUtf8().constData());
            return 2;
        }
        if (a[i] == QLatin1String("--lines")) o.lines = v;
        else if (a[i] == QLatin1String("--years")) o.years = int(std::max(1L, v));
        else if (a[i] == QLatin1String("--damaged")) o.damagedRows = int(v);
        else if (a[i] == QLatin1String("--seed")) o.seed = unsigned(v);
        else {
            std::fprintf(stderr, "pelkor-gen: unknown option %s\n", a[i].toUtf8().constData());
            return 2;
        }
    }
    try {
        pelkor::generator::generateLedger(a[1], o);
    } catch (const pelkor::store::StoreError& e) {
        std::fprintf(stderr, "pelkor-gen: %s\n", e.what());
        return 1;
    }
    return 0;
}
