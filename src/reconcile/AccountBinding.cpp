#include "reconcile/AccountBinding.h"

#include "base/Format.h"
#include "base/Modes.h"
#include "base/Titles.h"
#include "base/Trace.h"
#include "file/OpenLedger.h"
#include "reconcile/BankFeed.h"
#include "reconcile/frmSelectAccount.h"
#include "seams/store/StoreError.h"
#include "seams/ui/Ui.h"

#include <QDir>
#include <QFileInfo>

namespace pelkor::reconcile {

using store::StoreError;

QString bankInfoCaption(int iBank, const QString& accountNum)
{
    const QStringList& names = bankDisplayNames();
    if (iBank < 0 || iBank >= names.size())
        return {};
    QString s = names[iBank] + QStringLiteral("   ");
    if (accountNum.trimmed() != QLatin1String("(none)"))
        s += QStringLiteral(" ") + accountNum.trimmed();
    return s;
}

namespace {

const QString none = QStringLiteral("(none)");

class Binder {
public:
    explicit Binder(BindingParts& p) : p_(p), led_(p.ledger), t_(led_.trace, QStringLiteral("processDownloadedData")) {}

    std::optional<store::Recordset> run()
    {
        try {
            auto rows = bindAndRead();
            if (rows && !haveBalances(*rows))
                return ending();
            return rows;
        } catch (const StoreError& e) {
            t_.line(e.message());
            p_.ui.msgBox(QStringLiteral("לא ניתן לקרוא את נתוני הבנק שהתקבלו.\n%1").arg(e.message()),
                         pelkorTitle, ui::Buttons::OK, ui::Icon::Exclamation);
            return ending();
        }
    }

private:
    // Every proof stands on the bank's balance after each row: a statement
    // with a row that lacks it is refused whole.
    bool haveBalances(store::Recordset& rows)
    {
        const int balance = rows.fieldIndex(QStringLiteral("balance"));
        const int date = rows.fieldIndex(QStringLiteral("date"));
        for (long r = 0; r < rows.recordCount(); ++r) {
            if (balance >= 0 && !rows.at(r, balance).isNull())
                continue;
            const QString day = date >= 0 ? formatDate224(rows.at(r, date).toDate()) : QString();
            t_.line(QStringLiteral("no balance on row %1").arg(r + 1));
            p_.ui.msgBox(QStringLiteral("בשורה %1 של נתוני הבנק שהתקבלו (מתאריך %2) חסרה היתרה שבבנק, ובלעדיה אי אפשר להשוות "
                                        "את היתרות.").arg(r + 1).arg(day) + u'\n' +
                             QStringLiteral("הקובץ לא שונה. יש לקלוט שוב את דף החשבון, עם היתרה אחרי כל תנועה או עם יתרת הסגירה."),
                         pelkorTitle, ui::Buttons::OK, ui::Icon::Exclamation);
            return false;
        }
        rows.moveFirst();
        return true;
    }

    // The road of every failure: the feed closed, the importer released.
    std::optional<store::Recordset> ending()
    {
        p_.feed.closeCnNew();
        writeOkFile(p_.tempPath);
        return std::nullopt;
    }

    std::optional<store::Recordset> bindAndRead()
    {
        led_.feedPath = feedFilePath(led_.iBank, led_.isSimulate, p_.tempPath, p_.programDir);
        if (!QFileInfo::exists(led_.feedPath))
            throw StoreError(StoreError::Kind::Open,
                             QStringLiteral("קובץ נתוני הבנק \u2068%1\u2069 לא נמצא").arg(QDir::toNativeSeparators(led_.feedPath)));
        p_.feed.openCnNew(led_.feedPath);
        store::Connection& cnNew = p_.feed.cnNew;
        const QString table = feedTable(led_.iBank, led_.isSimulate);
        if (!cnNew.tableExists(table))
            throw StoreError(StoreError::Kind::Statement,
                             QStringLiteral("בקובץ נתוני הבנק אין טבלה %1").arg(table));

        // The feed's accounts, read only where a binding is to be chosen:
        // a bound file with rows of its account needs no list.
        QStringList accounts;
        bool accountsRead = false;
        const auto readAccounts = [&] {
            if (accountsRead)
                return;
            accountsRead = true;
            auto rs = cnNew.execute(QStringLiteral("SELECT DISTINCT accountNum FROM ") + table);
            // Accounts that differ only in blanks around them are one account.
            for (; !rs.eof(); rs.moveNext()) {
                const QString a = RemoveNull(rs.field(0)).trimmed();
                if (!accounts.contains(a))
                    accounts << a;
            }
        };

        if (led_.accountNum.trimmed() == none) {
            readAccounts();
            if (!bindFirstTime(accounts))
                return ending();
        } else {
            followRename();
        }

        auto rows = cnNew.execute(accountRowsQuery(led_.iBank, led_.isSimulate, fixString(led_.accountNum)));
        if (!led_.trace.noTrace())
            t_.line(QStringLiteral("rows in the feed: %1")
                        .arg(cnNew.execute(QStringLiteral("SELECT COUNT(*) FROM ") + table).field(0).toString()));
        if (rows.recordCount() > 0)
            return rows;
        readAccounts();

        if (accounts.isEmpty()) {
            p_.ui.msgBox(QStringLiteral("לא נמצאו חשבונות"), pelkorTitle, ui::Buttons::OK, ui::Icon::Exclamation);
            return ending();
        }
        led_.accountNum = none;
        frmSelectAccount dlg(QStringLiteral("החשבון ששויך לפלקור לא נמצא, או שלא נמצאו תנועות בתשעים הימים האחרונים.") +
                                 QStringLiteral("נא שייך מחדש את חשבון הבנק לפלקור או לחץ לביטול ההתאמה."),
                             accounts);
        p_.ui.runDialog(dlg);
        if (dlg.chosen().isEmpty())
            return ending();
        led_.accountNum = dlg.chosen();
        led_.sql.executeSQL(t_.proc(), QStringLiteral("UPDATE Defaults SET AccountNum='%1'").arg(fixString(led_.accountNum)));
        return cnNew.execute(accountRowsQuery(led_.iBank, led_.isSimulate, fixString(led_.accountNum)));
    }

    // An unbound file: the user picks the account. False when nothing was
    // chosen.
    bool bindFirstTime(const QStringList& accounts)
    {
        const QString file = p_.fileCaption.trimmed();
        if (accounts.isEmpty()) {
            p_.ui.msgBox(QStringLiteral(".לא נמצאו חשבונות"), pelkorTitle, ui::Buttons::OK, ui::Icon::Exclamation);
            return false;
        }
        if (accounts.size() == 1) {
            const QString q = QStringLiteral("נמצא חשבון אחד:") + u'\n' + accounts.first() + u'\n' +
                              QStringLiteral("האם ברצונך לשייך את '") + file + QStringLiteral("' ") +
                              QStringLiteral("לחשבון זה?");
            if (p_.ui.msgBox(q, pelkorTitle, ui::Buttons::YesNo) != ui::Answer::Yes)
                return false;
            led_.accountNum = accounts.first();
        } else {
            frmSelectAccount dlg(QStringLiteral("נמצאו %1 חשבונות.").arg(accounts.size()) + u'\n' +
                                     QStringLiteral("לאיזה מהם ברצונך לשייך את '") + file + QStringLiteral("'?"),
                                 accounts);
            p_.ui.runDialog(dlg);
            if (dlg.chosen().isEmpty())
                return false;
            led_.accountNum = dlg.chosen();
        }
        for (const char* alter : {"ALTER TABLE Defaults ADD iBank INTEGER", "ALTER TABLE Defaults ADD AccountNum CHARACTER(50)"}) {
            try {
                led_.sql.executeSQL(t_.proc(), QString::fromLatin1(alter));
            } catch (const StoreError&) {
                // The column is there already, as it mostly is.
            }
        }
        if (led_.isSimulate)
            return true;
        store::Transaction tx(led_.cn);
        led_.sql.executeSQL(t_.proc(), QStringLiteral("UPDATE Defaults SET iBank=%1").arg(led_.iBank + 1));
        led_.sql.executeSQL(t_.proc(), QStringLiteral("UPDATE Defaults SET AccountNum='%1'").arg(fixString(led_.accountNum)));
        tx.commit();
        return true;
    }

    // A bound account that the bank renumbered: one rename is followed.
    void followRename()
    {
        store::Connection& cnNew = p_.feed.cnNew;
        if (!cnNew.tableExists(QStringLiteral("main")))
            return;
        auto rs = cnNew.execute(QStringLiteral("SELECT accountNum,description FROM main"));
        const QString account = led_.accountNum.trimmed();
        for (; !rs.eof(); rs.moveNext()) {
            if (RemoveNull(rs.field(1)).trimmed() != account)
                continue;
            led_.accountNum = RemoveNull(rs.field(0)).trimmed();
            led_.sql.executeSQL(t_.proc(), QStringLiteral("UPDATE Defaults SET AccountNum='%1'").arg(fixString(led_.accountNum)));
            return;
        }
    }

    BindingParts& p_;
    OpenLedger& led_;
    TraceScope t_;
};

} // namespace

std::optional<store::Recordset> readBoundAccount(BindingParts& p)
{
    return Binder(p).run();
}

} // namespace pelkor::reconcile
