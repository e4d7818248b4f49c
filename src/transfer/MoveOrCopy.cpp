#include "transfer/MoveOrCopy.h"

#include "base/Format.h"
#include "base/Instance.h"
#include "base/Modes.h"
#include "base/Titles.h"
#include "base/Trace.h"
#include "file/Loader.h"
#include "file/OpenLedger.h"
#include "file/Schema.h"
#include "file/Upgrades.h"
#include "seams/grid/GridModel.h"
#include "seams/store/Probe.h"
#include "seams/ui/Ui.h"
#include "transfer/MoveJournal.h"

#include <QFileInfo>

namespace pelkor::transfer {

using ui::Buttons;
using ui::Icon;

namespace {

QString sqlSum(double v) { return QString::number(v, 'g', 15); }
QString orBlank(const QString& s) { return s.isEmpty() ? QStringLiteral(" ") : s; }

struct Planned {
    const Line* line;
    QString kind;
    int typeNum;
    bool stays;   // a confirmed line of a move: written, not deleted
};

QString insertOf(const QString& table, const Planned& w)
{
    const Line& L = *w.line;
    return QStringLiteral("INSERT into %1([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo]) "
                          "Values('%2',%3,'%4','%5',%6,%7,%8,' ','%9')")
        .arg(table, fixString(w.kind), formatDateForSQL(L.Date), fixString(orBlank(L.confirm)), fixString(orBlank(L.detail)),
             sqlSum(L.In), sqlSum(L.out), QString::number(w.typeNum), fixString(L.Memo));
}

} // namespace

QString ledgerWriteProblem(const QString& path, const QString& role)
{
    const QString name = isolated(QFileInfo(path).fileName());
    const QString file = QStringLiteral("קובץ ה") + role + QStringLiteral(" \"") + name + QStringLiteral("\" ");
    const store::ProbeResult pr = store::probe(path);
    switch (pr.kind) {
    case store::FileKind::Missing:
        return file + QStringLiteral("לא נמצא.");
    case store::FileKind::NotDatabase:
        return file + QStringLiteral("אינו קובץ פלקור.");
    case store::FileKind::Damaged:
        return file + QStringLiteral("פגום. פתח אותו בפלקור כדי לשמור את מה שניתן לקרוא ממנו.");
    case store::FileKind::Database:
        break;
    }
    if (!pr.tables.contains(QStringLiteral("pelkor"), Qt::CaseInsensitive)
        || !pr.tables.contains(QStringLiteral("category"), Qt::CaseInsensitive))
        return file + QStringLiteral("אינו קובץ פלקור.");
    if (store::writeBlock(path) != store::WriteBlock::None)
        return QStringLiteral("לא ניתן לכתוב בקובץ ה") + role + QStringLiteral(" \"") + name
            + QStringLiteral("\". ייתכן שהוא לקריאה בלבד.");
    return QString();
}

bool isDestCategory(const QString& kind, const Catalogue& dest) { return dest.categories.contains(kind); }

int GetMoveTypeBigIndex(const QString& name, const Catalogue& dest) { return dest.typeNumOf(name); }

QString moveKindText(const QString& kind)
{
    return QStringLiteral("הסיווג ") + kind + QStringLiteral(" אינו קיים בקובץ היעד. בחר סיווג במקומו.");
}

QString KindTranslation::translate(const QString& kind)
{
    if (isDestCategory(kind, dest_))
        return kind;
    const QString prefix = kind + QLatin1Char(' ');
    for (const QString& m : mappedKinds_)
        if (m.startsWith(prefix))
            return m.mid(prefix.size());
    if (skippedKinds_.contains(kind))
        return QString();
    const QString chosen = ui_ ? doMoveKindDlg(kind, *ui_) : QString();
    if (chosen.isEmpty()) {
        skippedKinds_ << kind;
        return QString();
    }
    mappedKinds_ << prefix + chosen;
    return chosen;
}

QString KindTranslation::doMoveKindDlg(const QString& kind, ui::Ui& ui)
{
    const bool income = kind.startsWith(QLatin1Char('+'));
    for (;;) {
        ++questions_;
        const QString code = dialog_ ? dialog_(dest_, moveKindText(FormatKind(kind))) : QString();
        if (code.isEmpty())
            return QString();
        // The grid's form ("12+") back to the stored one ("+12").
        const QString chosen = FormatKind(code);
        const bool chosenIncome = chosen.startsWith(QLatin1Char('+'));
        if (chosenIncome == income)
            return chosen;
        ui.msgBox(chosenIncome ? QStringLiteral("סיווג חיובי אינו יכול להשתייך להוצאה")
                               : QStringLiteral("סיווג שלילי אינו יכול להשתייך להכנסה"),
                  errorTitle, Buttons::OK, Icon::Exclamation);
    }
}

QString moveMessage(int count, bool isMove, bool typeWasChanged)
{
    const QString word = isMove ? QStringLiteral("הועבר") : QStringLiteral("הועתק");
    if (count == 0)
        return QStringLiteral("אף שורה לא ") + word + QStringLiteral("ה");
    QString text = count == 1 ? QStringLiteral("שורה אחת ") + word + QStringLiteral("ה")
                              : QString::number(count) + QStringLiteral(" שורות ") + word + QStringLiteral("ו");
    if (typeWasChanged)
        text += QLatin1Char('\n')
            + (count == 1 ? QStringLiteral("הסוג הוחלף מכיוון שהוא לא קיים בקובץ היעד")
                          : QStringLiteral("סוג אחד או יותר הוחלפו מכיוון שהם לא קיימים בקובץ היעד"));
    return text;
}

MoveReport moveOrCopyRows(MoveParts& p, const QString& destPath, bool isMove)
{
    MoveReport report;
    OpenLedger& src = p.ledger;
    grid::GridModel& grid = p.grid;
    auto refuse = [&](const QString& problem) {
        report.problem = problem;
        p.ui.msgBox(problem, errorTitle, Buttons::OK, Icon::Exclamation);
        return report;
    };
    if (QFileInfo(destPath).canonicalFilePath() == QFileInfo(src.filePath).canonicalFilePath())
        return refuse(QStringLiteral("קובץ המקור הוא גם קובץ היעד"));
    if (const QString problem = ledgerWriteProblem(destPath, QStringLiteral("יעד")); !problem.isEmpty())
        return refuse(problem);

    // 1-4: the target's zeroing date, kinds and types, on a connection of
    // the run's own; an old file is upgraded as any open does.
    OpenLedger dest(src.trace);
    DestFile d;
    try {
        dest.filePath = destPath;
        dest.cn.open(destPath);
        handleAuto(dest);
        readInvoiceCategs(dest);
        auto rs = dest.cn.execute(QStringLiteral("SELECT date FROM pelkor WHERE zee='%1'").arg(QLatin1String(schema::ipusMark)));
        d.ipusLines = int(rs.recordCount());
        if (d.ipusLines != 1)
            p.ui.msgBox(QStringLiteral("number of target ipus lines in DB is ") + QString::number(d.ipusLines), pelkorTitle);
        if (!rs.eof())
            d.ipusDate = rs.field(0).toDate();
        readCategories(dest);
        if (!readTypeList(dest)) {
            p.ui.msgBox(QStringLiteral("error: no destTypes"), pelkorTitle, Buttons::OK, Icon::Critical);
            report.problem = QStringLiteral("error: no destTypes");
            return report;
        }
        d.catalogue = dest.catalogue;
    } catch (const store::StoreError& e) {
        src.trace.traceLine(QStringLiteral("moveOrCopyRows"), e.message());
        return refuse(QStringLiteral("לא ניתן לפתוח את קובץ היעד \"%1\" כקובץ פלקור.").arg(isolated(QFileInfo(destPath).fileName())));
    }

    // 5: the range; a move leaves at least one line behind.
    int fromRow = std::max(1, std::min(grid.Row(), grid.RowSel()));
    int toRow = std::min(grid.Rows() - 1, std::max(grid.Row(), grid.RowSel()));
    const int lastRow = grid.Rows() - 1;
    const Instance& inst = p.instance;
    if (isMove && fromRow == 1 && toRow == lastRow
        && !(inst.progMode == modeDetail
             || (inst.progMode == modeNewLines
                 && (inst.newLineDialogType == lineDialogUnconfirmedPelkor || inst.newLineDialogType == lineDialogBadLines))))
        return refuse(QStringLiteral("יש להשאיר לפחות שורה אחת בפלקור"));
    if (p.hasNewLine && toRow == lastRow)
        --toRow;
    const int row0 = grid.Row();

    // 7: every decision before any write.
    KindTranslation kinds(d.catalogue, p.kindDialog);
    kinds.setUi(p.ui);
    std::vector<Planned> planned;
    for (int row = fromRow; row <= toRow && row - 1 < int(src.lines.size()); ++row) {
        const Line& L = src.lines[size_t(row - 1)];
        if ((isMove && src.ipusDate.isValid() && L.Date <= src.ipusDate)
            || (d.ipusDate.isValid() && L.Date <= d.ipusDate)) {
            ++report.leftByDate;
            continue;
        }
        const QString kind = kinds.translate(L.kind);
        if (kind.isEmpty()) {
            ++report.leftByKind;
            continue;
        }
        int typeNum = GetMoveTypeBigIndex(L.Type, d.catalogue);
        if (typeNum == 999) {
            report.typeWasChanged = true;
            typeNum = L.out == 0 ? 1 : 2;
        }
        planned.push_back({&L, kind, typeNum, isMove && p.isConfirmedRow && p.isConfirmedRow(row)});
    }

    // The writes: the target in one transaction; for a move the source's
    // note before it and the delete after it.
    if (!planned.empty()) {
        QStringList ids;
        for (const Planned& w : planned)
            if (isMove && !w.stays)
                ids << w.line->Id;
        const QString token = ids.isEmpty() ? QString() : newMoveToken();
        try {
            if (!token.isEmpty())
                writeMoveIntent(src.cn, token, destPath, ids);
            try {
                store::Transaction tx(dest.cn);
                for (const Planned& w : planned)
                    dest.cn.execute(insertOf(dest.linesTable, w));
                if (!token.isEmpty())
                    markMoveInTarget(dest.cn, token);
                tx.commit();
            } catch (...) {
                // Nothing reached the target: the note goes, the lines stay.
                if (!token.isEmpty())
                    finishPendingMoves(src.cn, src.linesTable);
                throw;
            }
            if (!token.isEmpty()) {
                completeMove(src.cn, src.linesTable, token);
                src.sql.fileChanged = true;
            }
        } catch (const store::StoreError& e) {
            src.trace.traceLine(QStringLiteral("moveOrCopyRows"), e.message());
            dest.cn.close();
            return refuse(QStringLiteral("השורות לא נכתבו לקובץ היעד \"%1\": הוא תפוס או שאינו ניתן לכתיבה. דבר לא השתנה באף אחד מהקבצים.")
                              .arg(isolated(QFileInfo(destPath).fileName())));
        }
        report.written = int(planned.size());
        report.deleted = int(ids.size());
    }
    dest.cn.close();

    // 9-11: the count, the reload, the cursor.
    if (report.written > 0 && isMove && p.reload)
        p.reload();
    p.ui.msgBox(moveMessage(report.written, isMove, report.typeWasChanged && report.written > 0), pelkorTitle,
                Buttons::OK, Icon::Information);
    if (p.commitCell)
        p.commitCell();
    if (grid.Rows() > 1) {
        grid.setRow(std::clamp(row0, 1, grid.Rows() - 1));
        if (p.enterCell)
            p.enterCell();
    }
    return report;
}

} // namespace pelkor::transfer
