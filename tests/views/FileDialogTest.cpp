// The open dialog of the real program (QtUi): left to right where it shows
// paths and names, Hebrew in its own words; and the ledger's file type as
// the desktop's type database reads it.
#include "app/ui/QtUi.h"

#include "file/LoadFixture.h"
#include "views/ViewWait.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMimeDatabase>
#include <QPainter>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardItemModel>
#include <QStandardPaths>
#include <QStyledItemDelegate>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>

#include <gtest/gtest.h>

#include "QtPrinters.h"

using namespace pelkor;
using pelkor::testing::waitFor;

namespace {

// The cell at index painted by delegate d into a white image, laid out as
// the view would lay out a cell of direction dir.
QImage paintCell(QAbstractItemDelegate* d, QAbstractItemView* view, const QModelIndex& index, Qt::LayoutDirection dir)
{
    QImage img(220, 24, QImage::Format_RGB32);
    img.fill(Qt::white);
    QPainter p(&img);
    QStyleOptionViewItem opt;
    opt.initFrom(view);
    opt.rect = img.rect();
    opt.direction = dir;
    opt.state = QStyle::State_Enabled;
    d->paint(&p, opt, index);
    return img;
}

} // namespace

TEST(OpenDialog, PathsNamesSizesAndFiltersReadLeftToRight)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    QFile f(dir.filePath(QStringLiteral("shop.pkr")));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(QByteArray(94000, 'x'));
    f.close();

    bool checked = false;
    QTimer::singleShot(0, [&] {
        auto* dlg = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dlg, nullptr);
        const auto cancel = qScopeGuard([&] { dlg->reject(); });
        EXPECT_EQ(dlg->layoutDirection(), Qt::RightToLeft);
        for (const char* name : {"lookInCombo", "fileNameEdit", "fileTypeCombo"}) {
            auto* w = dlg->findChild<QWidget*>(QLatin1String(name));
            ASSERT_NE(w, nullptr) << name;
            EXPECT_EQ(w->layoutDirection(), Qt::LeftToRight) << name;
        }
        EXPECT_EQ(dlg->findChild<QComboBox*>(QStringLiteral("fileTypeCombo"))->currentText(), QStringLiteral("פלקור (*.pkr)"));

        // The size of the file, painted as the dialog paints it, is the same
        // picture as a left-to-right cell's, not a right-to-left one's.
        auto* tree = dlg->findChild<QTreeView*>(QStringLiteral("treeView"));
        ASSERT_NE(tree, nullptr);
        QModelIndex size;
        ASSERT_TRUE(waitFor([&] {
            const QModelIndex root = tree->rootIndex();
            for (int r = 0; r < tree->model()->rowCount(root); ++r)
                if (tree->model()->index(r, 0, root).data().toString() == QLatin1String("shop.pkr"))
                    size = tree->model()->index(r, 1, root);
            return size.isValid();
        }, 2000));
        // The program's form of the size, in a plain cell of each direction.
        QStandardItemModel one(1, 1);
        one.setData(one.index(0, 0), ui::QtUi::fileSize(94000));
        one.setData(one.index(0, 0), size.data(Qt::TextAlignmentRole), Qt::TextAlignmentRole);
        QStyledItemDelegate plain;
        const QImage shown = paintCell(tree->itemDelegate(), tree, size, Qt::RightToLeft);
        EXPECT_EQ(shown, paintCell(&plain, tree, one.index(0, 0), Qt::LeftToRight));
        EXPECT_NE(shown, paintCell(&plain, tree, one.index(0, 0), Qt::RightToLeft));
        checked = true;
    });
    ui::QtUi qtUi;
    ui::FileDialogOptions options;
    options.title = QStringLiteral("בחר קובץ");
    options.filter = QStringLiteral("פלקור (*.pkr)|*.pkr");
    options.startDir = dir.path();
    options.fileMustExist = true;
    EXPECT_TRUE(qtUi.openFileDialog(options).isEmpty());
    EXPECT_TRUE(checked);
}

// Qt's dialog in Hebrew: its labels, buttons and headings, the type of a
// folder, and the sizes and dates of files in the program's forms.
// Saved as <build>/screenshots/openDialog.png.
TEST(OpenDialog, SpeaksHebrewWithDatesAndSizesInTheProgramsForms)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("ארכיון")));
    QFile f(dir.filePath(QStringLiteral("shop.pkr")));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(QByteArray(94000, 'x'));
    f.close();

    QStringList english;
    bool checked = false;
    QTimer::singleShot(0, [&] {
        auto* dlg = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dlg, nullptr);
        const auto cancel = qScopeGuard([&] { dlg->reject(); });
        auto* tree = dlg->findChild<QTreeView*>(QStringLiteral("treeView"));
        ASSERT_NE(tree, nullptr);
        dlg->findChild<QAbstractButton*>(QStringLiteral("detailModeButton"))->click();
        const QAbstractItemModel* model = tree->model();
        QModelIndex folder, ledger;
        ASSERT_TRUE(waitFor([&] {
            const QModelIndex root = tree->rootIndex();
            for (int r = 0; r < model->rowCount(root); ++r) {
                const QString name = model->index(r, 0, root).data().toString();
                if (name == QStringLiteral("ארכיון"))
                    folder = model->index(r, 0, root);
                if (name == QLatin1String("shop.pkr"))
                    ledger = model->index(r, 0, root);
            }
            return folder.isValid() && ledger.isValid();
        }, 2000));

        // Every word the dialog shows of its own: no Latin letter in it.
        static const QRegularExpression latin(QStringLiteral("[A-Za-z]"));
        const auto check = [&](const QString& where, const QString& text) {
            if (text.contains(latin))
                english << where + QStringLiteral(": ") + text;
        };
        for (auto* l : dlg->findChildren<QLabel*>())
            if (l->isVisible())
                check(QStringLiteral("label"), l->text());
        for (auto* b : dlg->findChildren<QAbstractButton*>())
            if (b->isVisible()) {
                check(QStringLiteral("button"), b->text());
                check(QStringLiteral("tip"), b->toolTip());
            }
        for (int c = 0; c < model->columnCount(); ++c)
            if (!tree->isColumnHidden(c))
                check(QStringLiteral("heading"), model->headerData(c, Qt::Horizontal).toString());
        check(QStringLiteral("type"), folder.siblingAtColumn(2).data().toString());
        EXPECT_EQ(folder.siblingAtColumn(2).data().toString(), QStringLiteral("תיקייה"));

        // The size and date cells paint what a left-to-right cell of the
        // program's forms paints.
        const QDateTime modified = QFileInfo(f.fileName()).lastModified();
        const auto expect = [&](const QModelIndex& index, const QString& text) {
            QStandardItemModel one(1, 1);
            one.setData(one.index(0, 0), text);
            one.setData(one.index(0, 0), index.data(Qt::TextAlignmentRole), Qt::TextAlignmentRole);
            QStyledItemDelegate plain;
            EXPECT_EQ(paintCell(tree->itemDelegate(), tree, index, Qt::RightToLeft),
                      paintCell(&plain, tree, one.index(0, 0), Qt::LeftToRight))
                << text.toStdString();
        };
        expect(ledger.siblingAtColumn(1), QStringLiteral("92 ק\"ב"));
        expect(ledger.siblingAtColumn(3), modified.toString(QStringLiteral("dd/MM/yyyy HH:mm")));
        pelkor::testing::pause(200);
        dlg->grab().save(pelkor::testing::shot(QStringLiteral("openDialog.png")));
        checked = true;
    });
    ui::QtUi qtUi;
    ui::FileDialogOptions options;
    options.title = QStringLiteral("בחר קובץ");
    options.filter = QStringLiteral("פלקור (*.pkr)|*.pkr");
    options.startDir = dir.path();
    EXPECT_TRUE(qtUi.openFileDialog(options).isEmpty());
    EXPECT_TRUE(checked);
    EXPECT_TRUE(english.isEmpty()) << english.join(QLatin1Char('\n')).toStdString();
}

// The type database is read once a process, so the checks run in a child
// of this test program with the ledger's type installed for its user.
TEST(LedgerFileType, ALedgerIsPelkorsAndOtherFilesKeepTheirTypes)
{
    if (QStandardPaths::findExecutable(QStringLiteral("update-mime-database")).isEmpty())
        GTEST_SKIP() << "update-mime-database is not installed";
    QTemporaryDir home;
    ASSERT_TRUE(home.isValid());
    const QString packages = home.filePath(QStringLiteral("mime/packages"));
    ASSERT_TRUE(QDir().mkpath(packages));
    ASSERT_TRUE(QFile::copy(QStringLiteral(PELKOR_SOURCE_DIR "/share/pelkor-ledger.xml"),
                            packages + QStringLiteral("/pelkor-ledger.xml")));
    ASSERT_EQ(QProcess::execute(QStringLiteral("update-mime-database"), {home.filePath(QStringLiteral("mime"))}), 0);

    QProcess child;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("XDG_DATA_HOME"), home.path());
    env.insert(QStringLiteral("PELKOR_MIME_CHILD"), home.path());
    child.setProcessEnvironment(env);
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--gtest_filter=LedgerFileTypeChild.*")});
    ASSERT_TRUE(child.waitForFinished(30000));
    const QString out = QString::fromUtf8(child.readAllStandardOutput());
    EXPECT_EQ(child.exitCode(), 0) << qPrintable(out);
    EXPECT_TRUE(out.contains(QLatin1String("[  PASSED  ] 1 test"))) << qPrintable(out);
}

TEST(LedgerFileTypeChild, Types)
{
    const QString home = qEnvironmentVariable("PELKOR_MIME_CHILD");
    if (home.isEmpty())
        GTEST_SKIP() << "run by LedgerFileType";
    const QDir dir(home);
    const auto write = [&](const QString& name, const QByteArray& bytes) {
        QFile f(dir.filePath(name));
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
        return f.fileName();
    };
    const QByteArray sqlite = QByteArray("SQLite format 3", 16) + QByteArray(84, '\1');
    const QMimeDatabase db;
    const QString ledger = QStringLiteral("application/x-pelkor-ledger");

    // By the name alone, as a file dialog asks.
    EXPECT_EQ(db.mimeTypeForFile(QStringLiteral("/nowhere/shop.pkr"), QMimeDatabase::MatchExtension).name(), ledger);
    // By name and content.
    const QString shop = write(QStringLiteral("shop.pkr"), sqlite);
    EXPECT_EQ(db.mimeTypeForFile(shop).name(), ledger);
    EXPECT_TRUE(db.mimeTypeForFile(shop).inherits(QStringLiteral("application/vnd.sqlite3")));
    // An SQLite file by another name is no ledger.
    EXPECT_EQ(db.mimeTypeForFile(write(QStringLiteral("notes.db"), sqlite)).name(), QStringLiteral("application/vnd.sqlite3"));
}
