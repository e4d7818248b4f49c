// Rules and transcript files in a temporary folder for the ui seam's tests.
#pragma once

#include <QCoreApplication>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace pelkor::ui::testing {

class UiFiles {
public:
    QString path(const QString& name) const { return dir_.filePath(name); }

    // Writes a rules file as UTF-8 and returns its path.
    QString rules(const QString& text, const QString& name = QStringLiteral("rules.txt")) const
    {
        QFile f(path(name));
        EXPECT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(text.toUtf8());
        return f.fileName();
    }

    QString transcriptPath() const { return path(QStringLiteral("transcript.tsv")); }

    // The transcript's records, each split into its tab-separated fields.
    std::vector<QStringList> records() const
    {
        std::vector<QStringList> out;
        QFile f(transcriptPath());
        if (!f.open(QIODevice::ReadOnly))
            return out;
        const QString all = QString::fromUtf8(f.readAll());
        for (const QString& line : all.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
            out.push_back(line.split(QLatin1Char('\t')));
        return out;
    }

    // The records of one kind, start and exit left out unless asked for.
    std::vector<QStringList> records(const QString& kind) const
    {
        std::vector<QStringList> out;
        for (const QStringList& r : records())
            if (r.value(1) == kind)
                out.push_back(r);
        return out;
    }

    static QString pid() { return QString::number(QCoreApplication::applicationPid()); }

private:
    QTemporaryDir dir_;
};

} // namespace pelkor::ui::testing
