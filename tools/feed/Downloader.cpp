// Downloader: runIt's logic. See Downloader.h.
#include "Downloader.h"

#include "Banks.h"
#include "FeedWriter.h"
#include "TextInput.h"

#include "seams/bus/Bus.h"
#include "seams/bus/MailboxId.h"
#include "seams/ui/Ui.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <cstdio>

namespace pelkor::feed {

namespace {

QString money(double v) { return QString::number(v, 'f', 2); }
QString day(const QDate& d) { return d.toString(QStringLiteral("dd/MM/yyyy")); }

void printErr(const QString& s) { std::fprintf(stderr, "%s\n", s.toUtf8().constData()); }

} // namespace

QString windowTitle() { return QStringLiteral("עידכון נתונים"); }

ParsedCommand parseCommand(const QStringList& args)
{
    ParsedCommand p;
    Command c;
    QStringList rest;
    for (qsizetype i = 0; i < args.size(); ++i) {
        if (args[i] == QLatin1String("--from")) {
            if (i + 1 >= args.size()) {
                p.error = QStringLiteral("אחרי --from חסר שם קובץ");
                return p;
            }
            c.from << args[++i];
        } else {
            rest << args[i];
        }
    }
    static const QRegularExpression first(QStringLiteral("^f(\\d{1,2})$"));
    static const QRegularExpression bank(QStringLiteral("^\\+(\\d{1,2})$"));
    bool ok = false;
    if (rest.size() == 1 && first.match(rest[0]).hasMatch()) {
        c.kind = Command::Kind::Prepare;
        c.bank = first.match(rest[0]).captured(1).toInt();
    } else if (rest.size() == 4 && rest[0] == QLatin1String("c") && bank.match(rest[1]).hasMatch()) {
        c.kind = Command::Kind::Download;
        c.bank = bank.match(rest[1]).captured(1).toInt();
        c.box = rest[2];
        c.nDays = rest[3].toInt(&ok);
        if (!ok || c.nDays < 0) {
            p.error = QStringLiteral("מספר הימים \"%1\" אינו מספר").arg(rest[3]);
            return p;
        }
        if (!bus::parseId(c.box)) {
            p.error = QStringLiteral("\"%1\" אינו מזהה של תיבת הודעות").arg(c.box);
            return p;
        }
    } else {
        p.error = QStringLiteral("שורת הפקודה אינה מוכרת. השימוש: runIt f<בנק> או runIt c +<בנק> <תיבה> <ימים> "
                                 "[--from <קובץ>]");
        return p;
    }
    if (bankAt(c.bank).index < 0) {
        p.error = QStringLiteral("אין בנק שמספרו %1 (0 עד %2)").arg(c.bank).arg(bankCount - 1);
        return p;
    }
    p.command = c;
    return p;
}

ExitCode prepare(const platform::Paths& paths, int bank)
{
    QDir().mkpath(paths.tempDir);
    const QDir temp(paths.tempDir);
    // Feeds that a killed run left half-written (FeedWriter's new files).
    for (const QString& name : temp.entryList({feedFileName(bank) + QStringLiteral(".new-*")}, QDir::Files))
        QFile::remove(temp.filePath(name));
    return ExitCode::Written;
}

Downloader::Downloader(ui::Ui& ui, const platform::Paths& paths, const Command& command)
    : ui_(ui), paths_(paths), command_(command)
{
}

QString Downloader::bankLine() const
{
    return QStringLiteral("%1 - %2").arg(windowTitle(), bankAt(command_.bank).displayName);
}

QString Downloader::feedPath() const { return QDir(paths_.tempDir).filePath(feedFileName(command_.bank)); }

QStringList Downloader::addFiles(const QStringList& paths)
{
    QStringList refused;
    for (const QString& path : paths) {
        ReadResult r = readStatementFile(path);
        if (!r.ok()) {
            refused << r.error;
            continue;
        }
        bool replaced = false;
        for (Loaded& l : files_)
            if (QFileInfo(l.path) == QFileInfo(path)) {
                l.result = r;
                replaced = true;
            }
        if (!replaced)
            files_.append({path, r});
        plan_.reset();
    }
    return refused;
}

bool Downloader::pickFiles()
{
    ui::FileDialogOptions spec;
    spec.title = QStringLiteral("בחר דפי חשבון");
    spec.filter = QStringLiteral("דפי חשבון (*.csv;*.ofx;*.qfx;*.qif;*.xml;*.txt;*.xls;*.htm;*.html)|"
                                 "*.csv;*.ofx;*.qfx;*.qif;*.xml;*.txt;*.xls;*.htm;*.html|הכל|*.*");
    spec.fileMustExist = true;
    spec.multiSelect = true;
    const QStringList chosen = ui_.openFileDialog(spec);
    if (chosen.isEmpty())
        return false;
    const QStringList refused = addFiles(chosen);
    if (!refused.isEmpty())
        ui_.msgBox(refused.join(QLatin1Char('\n')), windowTitle(), ui::Buttons::OK, ui::Icon::Exclamation);
    return true;
}

void Downloader::clearFiles()
{
    files_.clear();
    plan_.reset();
}

const FeedPlan& Downloader::plan()
{
    if (!plan_) {
        QList<ReadResult> results;
        for (const Loaded& l : files_)
            results << l.result;
        plan_ = planFeed(results, command_.nDays, [this](const QString& account, const QDate& last) {
            const auto text = ui_.inputBox(
                QStringLiteral("בדף החשבון של חשבון %1 אין יתרה.\nנא הקלד את היתרה אחרי התנועה האחרונה (%2):")
                    .arg(account, day(last)),
                windowTitle());
            return text ? parseAmount(*text) : std::nullopt;
        });
    }
    return *plan_;
}

QString Downloader::summary()
{
    QStringList out;
    for (const Loaded& l : files_) {
        out << QStringLiteral("%1: %2, %3").arg(QFileInfo(l.path).fileName(), formatName(l.result.format),
                                                l.result.details);
    }
    if (files_.isEmpty())
        return QStringLiteral("לא נבחרו קבצים");
    const FeedPlan& p = plan();
    for (const AccountSummary& a : p.accounts) {
        QString line = QStringLiteral("חשבון %1: %2 שורות, %3 עד %4, זכות %5, חובה %6, יתרה %7")
                           .arg(a.account).arg(a.rows).arg(day(a.first), day(a.last), money(a.credits),
                                                           money(a.debits), money(a.closing));
        if (!a.currency.isEmpty())
            line += QStringLiteral(" (%1)").arg(a.currency);
        if (a.duplicates > 0)
            line += QStringLiteral("; %1 שורות כפולות נספרו פעם אחת").arg(a.duplicates);
        if (a.older > 0)
            line += QStringLiteral("; %1 שורות ותיקות מ-%2 ימים הושמטו").arg(a.older).arg(command_.nDays);
        out << line;
    }
    for (const Loaded& l : files_)
        for (const QString& w : l.result.warnings)
            out << QStringLiteral("בעיה: ") + w;
    for (const QString& w : p.warnings)
        out << QStringLiteral("בעיה: ") + w;
    if (!p.ok())
        out << QStringLiteral("שגיאה: ") + p.error;
    return out.join(QLatin1Char('\n'));
}

void Downloader::answer(const QString& text)
{
    if (answered_)
        return;
    answered_ = true;
    const bus::SendResult r = bus::send(command_.box, text);
    if (r != bus::SendResult::Delivered && r != bus::SendResult::Nobody)
        printErr(QStringLiteral("runIt: \"%1\" לא נמסר לתיבה %2 (%3)").arg(text, command_.box, bus::describe(r)));
}

ExitCode Downloader::confirm(QString* error)
{
    const FeedPlan& p = plan();
    if (!p.ok()) {
        if (error)
            *error = p.error;
        answer(QStringLiteral("pelkor CLOSED"));
        return ExitCode::Unusable;
    }
    QDir().mkpath(paths_.tempDir);
    const QString failed = writeFeed(feedPath(), bankAt(command_.bank).feedTable, p.rows);
    if (!failed.isEmpty()) {
        if (error)
            *error = failed;
        answer(QStringLiteral("pelkor CLOSED"));
        return ExitCode::WriteFailed;
    }
    answer(QStringLiteral("pelkor OK"));
    return ExitCode::Written;
}

ExitCode Downloader::close()
{
    answer(QStringLiteral("pelkor CLOSED"));
    return ExitCode::Closed;
}

ExitCode Downloader::runHeadless()
{
    const QStringList refused = addFiles(command_.from);
    if (!refused.isEmpty()) {
        for (const QString& r : refused)
            printErr(r);
        answer(QStringLiteral("pelkor CLOSED"));
        return ExitCode::Unusable;
    }
    const FeedPlan& p = plan();
    if (!p.ok()) {
        printErr(summary());
        answer(QStringLiteral("pelkor CLOSED"));
        // No balance given is the user's choice; anything else the files'.
        return p.noBalanceGiven ? ExitCode::Closed : ExitCode::Unusable;
    }
    std::printf("%s\n", summary().toUtf8().constData());
    QString error;
    const ExitCode code = confirm(&error);
    if (!error.isEmpty())
        printErr(error);
    return code;
}

} // namespace pelkor::feed
