// prjPelkor: the program's entry.
//
//   prjPelkor --create <file.pkr>   create a new empty ledger and exit
//   prjPelkor <file.pkr>            open a ledger in a read-only list
//
// Every failure is told in Hebrew, in a right-to-left box or on stderr when
// there is no display, and nothing is written to a file that failed to open.
#include "app/LedgerListView.h"
#include "file/Schema.h"
#include "seams/store/StoreError.h"

#include <QApplication>
#include <QDate>
#include <QMessageBox>

#include <cstdio>

using namespace pelkor;

namespace {

int fail(bool gui, const QString& text)
{
    if (gui) {
        QMessageBox box(QMessageBox::Critical, QStringLiteral("פלקור"), text);
        box.setLayoutDirection(Qt::RightToLeft);
        box.exec();
    } else {
        std::fprintf(stderr, "%s\n", text.toUtf8().constData());
    }
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    // --create needs no display: answer before a GUI application is built.
    if (argc == 3 && QByteArray(argv[1]) == "--create") {
        QCoreApplication core(argc, argv);
        const QString path = core.arguments().at(2);
        try {
            schema::createLedger(path, QDate::currentDate());
        } catch (const store::StoreError& e) {
            return fail(false, QStringLiteral("יצירת הקובץ %1 נכשלה: %2").arg(path, e.message()));
        }
        return 0;
    }

    QApplication app(argc, argv);
    app.setLayoutDirection(Qt::RightToLeft);
    app.setApplicationName(QStringLiteral("pelkor"));
    const QStringList args = app.arguments().mid(1);
    if (args.size() != 1)
        return fail(true, QStringLiteral("שימוש: prjPelkor <קובץ.pkr>"));
    try {
        LedgerListView view(args.first());
        view.show();
        return app.exec();
    } catch (const store::StoreError& e) {
        return fail(true, QStringLiteral("לא ניתן לפתוח את הקובץ %1:\n%2").arg(args.first(), e.message()));
    }
}
