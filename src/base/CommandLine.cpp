#include "base/CommandLine.h"

#include "seams/bus/MailboxId.h"

#include "seams/store/TextForms.h"

namespace pelkor {

namespace {

StartCommand wrong(const QString& reason)
{
    StartCommand c;
    c.verb = StartCommand::Verb::Wrong;
    c.reason = reason;
    return c;
}

// Splits off the first n blank-separated fields; the rest of the line
// (blanks included) is the last element. False when a field is missing, or
// the rest is empty and may not be.
bool fieldsAndRest(const QString& line, int n, QStringList& fields, QString& rest, bool restMayBeEmpty = false)
{
    int pos = 0;
    fields.clear();
    for (int i = 0; i < n; ++i) {
        while (pos < line.size() && line[pos] == QLatin1Char(' '))
            ++pos;
        const int start = pos;
        while (pos < line.size() && line[pos] != QLatin1Char(' '))
            ++pos;
        if (pos == start)
            return false;
        fields << line.mid(start, pos - start);
    }
    while (pos < line.size() && line[pos] == QLatin1Char(' '))
        ++pos;
    rest = line.mid(pos);
    return restMayBeEmpty || !rest.isEmpty();
}

bool parseDay(const QString& s, QDate& d)
{
    return store::text::parseDate(s, d);
}

// detail / mrg detail, after the verb.
StartCommand parseDetail(const QString& args, bool merged)
{
    QStringList f;
    QString rest;
    if (!fieldsAndRest(args, 2, f, rest))
        return wrong(QStringLiteral("detail: missing fields"));
    StartCommand c;
    c.verb = StartCommand::Verb::Detail;
    c.progMode = modeDetail;
    c.isMerged = merged;
    if (!parseIdText(f[0], c.parentTxtMessage))
        return wrong(QStringLiteral("detail: bad id ") + f[0]);
    bool ok = false;
    const int kind = f[1].toInt(&ok);
    if (!ok || kind < detailIncome || kind > detailOfType)
        return wrong(QStringLiteral("detail: bad kind ") + f[1]);
    c.detailKind = DetailKind(kind);
    QStringList g;
    if (c.detailKind <= detailDay) {
        if (!fieldsAndRest(rest, 2, g, c.file))
            return wrong(QStringLiteral("detail: missing fields"));
        if (!parseDay(g[0], c.fromDate))
            return wrong(QStringLiteral("detail: bad date ") + g[0]);
        c.toDate = c.fromDate;
        double conv = 0;
        if (!store::text::parseNumber(g[1], conv))
            return wrong(QStringLiteral("detail: bad factor ") + g[1]);
        c.conv = conv;
    } else {
        if (!fieldsAndRest(rest, 3, g, c.file))
            return wrong(QStringLiteral("detail: missing fields"));
        if (!parseDay(g[0], c.fromDate) || !parseDay(g[1], c.toDate))
            return wrong(QStringLiteral("detail: bad date in ") + g[0] + QLatin1Char(' ') + g[1]);
        if (c.detailKind == detailOfKind) {
            c.detailKindText = g[2];
        } else {
            c.detailTypeIndex = g[2].toInt(&ok);
            if (!ok)
                return wrong(QStringLiteral("detail: bad type ") + g[2]);
        }
    }
    return c;
}

// "host <h1> <h2> <rest>": the rest read as a main instance's line.
StartCommand parseHosted(const QString& args)
{
    QStringList f;
    QString rest;
    std::uint32_t h1 = 0, h2 = 0;
    if (!fieldsAndRest(args, 2, f, rest, true))
        return wrong(QStringLiteral("host: missing fields"));
    if (!parseIdText(f[0], h1) || !parseIdText(f[1], h2))
        return wrong(QStringLiteral("host: bad id in ") + f[0] + QLatin1Char(' ') + f[1]);
    StartCommand c = rest.startsWith(QLatin1String("host ")) ? wrong(QStringLiteral("host: twice"))
                                                              : parseCommandLine(rest);
    using V = StartCommand::Verb;
    if (c.verb == V::New || c.verb == V::WrongNewLineType || c.verb == V::Detail || c.verb == V::Merged)
        c = wrong(QStringLiteral("host: a child instance takes no host prefix"));
    c.hostTextBox1 = h1;
    c.hostTextBox2 = h2;
    return c;
}

} // namespace

QString idText(std::uint32_t id)
{
    return bus::idToText(id);
}

bool parseIdText(const QString& text, std::uint32_t& id)
{
    const auto v = bus::parseId(text, bus::IdForm::Exact);
    if (v)
        id = *v;
    return v.has_value();
}

QString newLineCommand(int type, std::uint32_t messagesWindow, std::uint32_t host1, std::uint32_t host2,
                       const QString& file)
{
    return QStringLiteral("new%1 %2 %3 %4 %5")
        .arg(type)
        .arg(idText(messagesWindow), idText(host1), idText(host2), file);
}

InfoOption infoOption(const QStringList& arguments)
{
    if (arguments.size() != 1)
        return InfoOption::None;
    if (arguments[0] == QLatin1String("--help") || arguments[0] == QLatin1String("-h"))
        return InfoOption::Help;
    if (arguments[0] == QLatin1String("--version"))
        return InfoOption::Version;
    return InfoOption::None;
}

QString usageText()
{
    return QStringLiteral(
        "שימוש:\n"
        "  prjPelkor                       תיקון קובץ: בחירת קובץ, תיקון ודיווח\n"
        "  prjPelkor open [<file.pkr>]     עבודה בקובץ (בלי קובץ: הקובץ הנוכחי, או בחירה)\n"
        "  prjPelkor <file.pkr>            עבודה בקובץ\n"
        "  prjPelkor --create <file.pkr>   יצירת קובץ פלקור חדש וריק\n"
        "  prjPelkor host <h1> <h2> ...    אחת הצורות שלמעלה, בהפעלת תוכנה חיצונית\n"
        "  prjPelkor --help                הודעה זו\n"
        "  prjPelkor --version             גרסת התוכנה\n");
}

StartCommand parseCommandLine(const QString& theCommand)
{
    const QString cmd = theCommand;
    if (cmd.trimmed().isEmpty())
        return {};
    if (cmd.startsWith(QLatin1String("host ")))
        return parseHosted(cmd.mid(5));
    if (cmd.startsWith(QLatin1String("new"))) {
        StartCommand c;
        c.verb = StartCommand::Verb::New;
        c.progMode = modeNewLines;
        const QChar t = cmd.size() > 3 ? cmd[3] : QChar();
        if (!t.isDigit() || t.digitValue() > 3) {
            c.verb = StartCommand::Verb::WrongNewLineType;
            c.reason = QStringLiteral("new: type ") + t;
            return c;
        }
        c.newLineDialogType = NewLineDialogType(t.digitValue());
        // Positions counted from 1: 6-13, 15-22, 24-31 the ids, 33 on the file.
        if (cmd.size() < 33 || cmd[4] != QLatin1Char(' ') || cmd[13] != QLatin1Char(' ')
            || cmd[22] != QLatin1Char(' ') || cmd[31] != QLatin1Char(' '))
            return wrong(QStringLiteral("new: missing fields"));
        if (!parseIdText(cmd.mid(5, 8), c.parentMessagesWindow) || !parseIdText(cmd.mid(14, 8), c.hostTextBox1)
            || !parseIdText(cmd.mid(23, 8), c.hostTextBox2))
            return wrong(QStringLiteral("new: bad id in ") + cmd.mid(5, 26));
        c.file = cmd.mid(32);
        if (c.file.trimmed().isEmpty())
            return wrong(QStringLiteral("new: no file"));
        return c;
    }
    if (cmd.startsWith(QLatin1String("detail ")))
        return parseDetail(cmd.mid(7), false);
    if (cmd.startsWith(QLatin1String("mrg detail ")))
        return parseDetail(cmd.mid(11), true);
    if (cmd.startsWith(QLatin1String("merged "))) {
        QStringList f;
        StartCommand c;
        if (!fieldsAndRest(cmd.mid(7), 4, f, c.file))
            return wrong(QStringLiteral("merged: missing fields"));
        c.verb = StartCommand::Verb::Merged;
        c.progMode = modeMergedReport;
        c.isMerged = true;
        c.mergedVerb = f[0];
        if (c.mergedVerb != QLatin1String("ktrep") && c.mergedVerb != QLatin1String("ktrpw")
            && c.mergedVerb != QLatin1String("ktrpd"))
            return wrong(QStringLiteral("merged: bad report ") + f[0]);
        if (!parseDay(f[1], c.fromDate) || !parseDay(f[2], c.toDate))
            return wrong(QStringLiteral("merged: bad date in ") + f[1] + QLatin1Char(' ') + f[2]);
        if (!parseIdText(f[3], c.parentTxtMessage))
            return wrong(QStringLiteral("merged: bad id ") + f[3]);
        return c;
    }
    if (cmd == QLatin1String("dayblnc")) {
        StartCommand c;
        c.verb = StartCommand::Verb::DayBalance;
        c.progMode = modeDailySummarySplit;
        return c;
    }
    if (cmd.startsWith(QLatin1String("bank"))) {
        StartCommand c;
        c.verb = StartCommand::Verb::Bank;
        c.progMode = modeFullScreen;
        return c;
    }
    if (cmd == QLatin1String("open") || cmd.startsWith(QLatin1String("open "))) {
        StartCommand c;
        c.verb = StartCommand::Verb::Open;
        c.progMode = modeFullScreen;
        c.file = cmd.mid(5);
        return c;
    }
    // A bare path, as a desktop starts the program on a file it was given.
    if (cmd.endsWith(QLatin1String(".pkr"), Qt::CaseInsensitive) && !cmd.startsWith(QLatin1Char('-'))) {
        StartCommand c;
        c.verb = StartCommand::Verb::Open;
        c.progMode = modeFullScreen;
        c.file = cmd;
        return c;
    }
    return wrong(QStringLiteral("unknown verb"));
}

} // namespace pelkor
