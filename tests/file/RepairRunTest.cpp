// The repair run on damaged files: what the file holds afterwards and what
// the user was told, in order and in the program's own words.
#include "LoadFixture.h"

#include "file/Loader.h"

using namespace pelkor;
using namespace pelkor::testing;

namespace {
const QString done = QStringLiteral("msgbox|פלקור|תיקון הקובץ הסתיים בהצלחה|OK");
}

TEST_F(LoadTest, RepairsKindsReferencesMemosAndMovesTheMarker)
{
    makeLedger(sampleLines());
    repair();
    EXPECT_EQ(endCode, 0);
    EXPECT_EQ(prompts(), (QStringList{
        QStringLiteral("open|בחר קובץ|פלקור (*.pkr)|*.pkr|") + file,
        QStringLiteral("msgbox|סיווג לא חוקי|נמצאה שורה ללא סיווג חוקי. השורה תמחק מהפלקור\\n99+|OK"),
        done}));
    // The invalid kind is gone; references are one blank; the prefix is gone.
    EXPECT_EQ(query(QStringLiteral("SELECT id, confirm, memo FROM pelkor ORDER BY id")),
              QStringLiteral("1|11|ללא צבע;2| |אדום;3| |ירוק;5|6|NULL"));
    // The marker stands on the last line of its date in display order: +1
    // comes before -1 on 1 March, so line 2 keeps it.
    EXPECT_EQ(query(QStringLiteral("SELECT id FROM pelkor WHERE zee='ZZZZZZZZZZ'")), QStringLiteral("2"));
    EXPECT_EQ(m->ledger().iRowAboveRed, 2);
    EXPECT_EQ(m->ledger().lines[3].Memo, QStringLiteral("ללא צבע"));   // Null memo
    EXPECT_EQ(m->ledger().balances[3], 400.0);
    EXPECT_EQ(m->mainGrid().row, 3);   // the cursor went to the line with the prefix
    EXPECT_FALSE(query(QStringLiteral("SELECT name FROM sqlite_master WHERE name='tempPelkor'")).size());
}

TEST_F(LoadTest, MarkerFollowsNewLinesOfItsDateAndTwoMarkersAreTold)
{
    makeLedger(QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'+1','2025-03-01','1','a',10,0,1,'ZZZZZZZZZZ','ללא צבע'),"
        "(2,'-1','2025-03-01','2','b',0,5,2,' ','ללא צבע'),"
        "(3,'+2','2025-03-04','3','c',10,0,1,'ZZZZZZZZZZ','ללא צבע'),"
        "(4,'-2','2025-03-04','4','d',0,5,2,' ','ללא צבע'),"
        "(5,'+5','2025-03-04','5','e',1,0,1,' ','ללא צבע');"));
    repair();
    EXPECT_EQ(prompts().value(1), QStringLiteral("msgbox|פלקור|more than one line with zee in database|OK"));
    EXPECT_EQ(prompts().value(2), done);
    // The red line was fixed at the first marker's date, so the marker is
    // set on the last line of 1 March; the later marker is cleared and the
    // earlier one stays, so the next load tells again.
    EXPECT_EQ(query(QStringLiteral("SELECT id FROM pelkor WHERE zee='ZZZZZZZZZZ' ORDER BY id")), QStringLiteral("1;2"));
    EXPECT_EQ(m->ledger().ipusID, QStringLiteral("2"));
    EXPECT_EQ(m->ledger().iRowAboveRed, 2);
}

TEST_F(LoadTest, NoMarkerAnswersOfTheDialog)
{
    const QString lines = QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'-1','2025-03-01','1','a',0,5,2,' ','ללא צבע'),"
        "(2,'+1','2025-03-01','2','b',10,0,1,' ','ללא צבע'),"
        "(3,'+1','2025-03-10','3','c',10,0,1,' ','ללא צבע'),"
        "(4,'+1','2025-03-20','4','d',10,0,1,' ','ללא צבע');");
    struct Case { const char* reply; const char* marker; const char* message; };
    const Case cases[] = {
        // The first line in order (+1 before -1), then moved to the last of its date.
        {"opt1stLine=1", "1", nullptr},
        // A date between lines with no line of its own: the last earlier line.
        {"optDate=1;txtDate=15/03/2025", "3",
         "msgbox|תאריך איפוס|תאריך האיפוס נקבע ל-10/03/2025,\\nמכיוון שאין שורות בתאריך 15/03/2025|OK"},
        // A date before the first line: the first line's date.
        {"optDate=1;txtDate=01/01/2024", "1",
         "msgbox|תאריך איפוס|תאריך האיפוס נקבע ל-01/03/2025,\\nמכיוון שהשורה הראשונה היא מתאריך זה|OK"},
        // A date that has lines: no message.
        {"optDate=1;txtDate=20/3/2025", "4", nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.reply);
        QFile::remove(file);
        QFile::remove(transcriptPath());
        makeLedger(lines);
        repair(QStringLiteral("frmNoIpus => ") + QLatin1String(c.reply));
        EXPECT_EQ(query(QStringLiteral("SELECT id FROM pelkor WHERE zee='ZZZZZZZZZZ'")), QLatin1String(c.marker));
        const QStringList p = prompts();
        ASSERT_GE(p.size(), 3);
        EXPECT_TRUE(p[1].startsWith(QStringLiteral("frmNoIpus|שורת איפוס|מערכת הפלקור לא מצאה שורת איפוס")));
        if (c.message)
            EXPECT_EQ(p[2], QString::fromUtf8(c.message));
        EXPECT_EQ(p.back(), done);
    }
}

TEST_F(LoadTest, NoMarkerAndNoAnswerEndsWithoutTouchingTheLines)
{
    makeLedger(QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'+1','2025-03-01',NULL,'a',10,0,1,' ','ללא צבע');"));
    repair();   // no rule for frmNoIpus: it is closed without OK
    EXPECT_TRUE(m->ended());
    EXPECT_EQ(prompts().size(), 2);
    EXPECT_EQ(query(QStringLiteral("SELECT count(*) FROM pelkor WHERE zee='ZZZZZZZZZZ' OR confirm IS NOT NULL")),
              QStringLiteral("0"));
}

TEST_F(LoadTest, OldFileIsUpgradedWhereItsStatementsFail)
{
    makeLedger(sampleLines(), /*old=*/true);
    repair();
    EXPECT_EQ(prompts().back(), done);
    EXPECT_TRUE(m->ledger().isAutomatic);
    EXPECT_EQ(m->ledger().nDays, 90);
    // isAuto is written back at exit from the menu's check mark, on.
    EXPECT_EQ(query(QStringLiteral("SELECT isAuto FROM Defaults")), QStringLiteral("1"));
    EXPECT_EQ(query(QStringLiteral("SELECT count(*), max(detail) FROM invoiceCategs")), QStringLiteral("1| "));
    // NDays is read as 90 but its column is added only when the user sets it.
    EXPECT_EQ(query(QStringLiteral("SELECT count(*) FROM pragma_table_info('Defaults') WHERE name='NDays'")),
              QStringLiteral("0"));
}

TEST_F(LoadTest, CurrentFileReadsItsSettings)
{
    makeLedger(sampleLines());
    store::Connection cn;
    cn.open(file);
    cn.executeRaw(QStringLiteral("UPDATE Defaults SET iBank=3, AccountNum='12-345', isAuto=1"));
    cn.close();
    repair();
    EXPECT_EQ(m->ledger().theCredit, -5000.0);
    EXPECT_EQ(m->ledger().nDays, 60);
    EXPECT_EQ(m->ledger().iBank, 2);
    EXPECT_EQ(m->ledger().accountNum, QStringLiteral("12-345"));
    EXPECT_EQ(m->ledger().theInvoiceCategs, QStringLiteral("+1"));
}

TEST_F(LoadTest, AllKindsUnknownEndsWithNoLines)
{
    makeLedger(QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'+50','2025-03-01','1','a',10,0,1,'ZZZZZZZZZZ','ללא צבע'),"
        "(2,'-50','2025-03-02','2','b',0,5,2,' ','ללא צבע');"));
    repair();
    const QStringList p = prompts();
    // The marker's line went first, so the second line stands at row 0 after
    // the marker: the load says so before it deletes that line too.
    ASSERT_EQ(p.size(), 5) << p.join(QLatin1Char(10)).toStdString();
    EXPECT_EQ(p[1], QStringLiteral("msgbox|סיווג לא חוקי|נמצאה שורה ללא סיווג חוקי. השורה תמחק מהפלקור\\n50+|OK"));
    EXPECT_EQ(p[2], QStringLiteral("msgbox|פלקור|ipus line problem in openDB|OK"));
    EXPECT_TRUE(p[3].endsWith(QStringLiteral("50-|OK")));
    EXPECT_EQ(p[4], QStringLiteral("msgbox|פלקור מזומנים|אין תנועות|OK"));
    EXPECT_EQ(query(QStringLiteral("SELECT count(*) FROM pelkor")), QStringLiteral("0"));
}

// Lines with a valid kind but text in a date or a sum go to a new-line
// child; the parent waits, and goes on by the child's word.
TEST_F(LoadTest, BadLinesGoToAChildThatAnswers)
{
    makeLedger(sampleLines() + QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(6,'+1','אתמול','7','תאריך שבור',10,0,1,' ','ללא צבע'),"
        "(7,'-1','2025-03-07','8','סכום שבור',0,'abc',2,' ','ללא צבע');"));
    children.act = [this](const QString&) {
        // The child, as a user would: a date for one line, a sum for the other.
        EXPECT_FALSE(m->shown().enabled);
        EXPECT_FALSE(m->shown().gridVisible);
        EXPECT_EQ(messages.caption(), QStringLiteral("pelkor messages"));
        store::Connection cn;
        cn.open(file);
        cn.execute(QStringLiteral("UPDATE pelkor SET [date]=#3/8/2025# WHERE id=6"));
        cn.execute(QStringLiteral("UPDATE pelkor SET out=0 WHERE id=7"));
        cn.close();
        messages.setCaption(QStringLiteral("pelkor OK"));
    };
    repair();
    ASSERT_EQ(children.started.size(), 1);
    EXPECT_EQ(children.started[0], QStringLiteral("new3 1234abcd 00000000 00000000 ") + file);
    EXPECT_EQ(prompts().back(), done);
    EXPECT_EQ(m->ledger().lines.size(), 6u);
    EXPECT_TRUE(m->shown().enabled);
    EXPECT_TRUE(m->shown().gridVisible);
}

TEST_F(LoadTest, BadLinesChildCancelledOrDeadEndsTheParent)
{
    const QString bad = sampleLines() + QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(6,'+1','2025-03-07','7','x','12,5a',0,1,' ','ללא צבע');");
    for (const bool dies : {false, true}) {
        SCOPED_TRACE(dies ? "dies" : "cancels");
        QFile::remove(file);
        QFile::remove(transcriptPath());
        makeLedger(bad);
        children.act = [this, dies](const QString&) {
            if (dies)
                children.alive = false;   // gone without a word
            else
                messages.setCaption(QStringLiteral("pelkor CLOSED"));
        };
        repair();
        EXPECT_TRUE(m->ended());
        // The dialog, then what became of the lines: no report of a repair.
        ASSERT_EQ(prompts().size(), 2);
        EXPECT_TRUE(prompts()[1].startsWith(QStringLiteral("msgbox|פלקור|השורות שחסר בהן תאריך או סכום נשארו בקובץ")))
            << prompts()[1].toStdString();
        EXPECT_EQ(query(QStringLiteral("SELECT [in] FROM pelkor WHERE id=6")), QStringLiteral("12,5a"));
    }
}

TEST_F(LoadTest, CancelAndFilesThatAreNoLedgerAreLeftAlone)
{
    // Cancel in the open dialog.
    start({}, QString());
    runUntilEnded();
    EXPECT_TRUE(m->ended());
    EXPECT_EQ(endCode, 0);
    EXPECT_EQ(prompts(), QStringList{QStringLiteral("open|בחר קובץ|פלקור (*.pkr)|*.pkr|Cancel")});

    // A text file and a database without lines.
    const QString text = dir.filePath(QStringLiteral("notes.pkr"));
    {
        QFile f(text);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("just some notes\n");
    }
    const QString other = dir.filePath(QStringLiteral("other.pkr"));
    {
        store::Connection cn;
        cn.open(other, store::Connection::OpenMode::ReadWriteCreate);
        cn.executeRaw(QStringLiteral("PRAGMA journal_mode=DELETE; CREATE TABLE x (a); INSERT INTO x VALUES (1);"));
    }
    for (const QString& path : {text, other}) {
        SCOPED_TRACE(path.toStdString());
        const QByteArray before = bytes(path);
        QFile::remove(transcriptPath());
        start({}, QStringLiteral("בחר קובץ => ") + path);
        runUntilEnded();
        EXPECT_EQ(endCode, 1);
        const QStringList p = prompts();
        ASSERT_EQ(p.size(), 2);
        EXPECT_TRUE(p[1].startsWith(QStringLiteral("msgbox|פלקור|הקובץ")));
        EXPECT_TRUE(p[1].contains(QStringLiteral("אינו קובץ פלקור")));
        EXPECT_EQ(bytes(path), before);
    }
}

TEST_F(LoadTest, CommandLineErrorsAndTheIniRoundTrip)
{
    makeLedger(sampleLines());
    start({QStringLiteral("new5")}, QString());
    EXPECT_TRUE(m->ended());
    EXPECT_EQ(prompts(), QStringList{QStringLiteral("msgbox|פלקור|wrong newLineDialogType|OK")});

    QFile::remove(transcriptPath());
    start({QStringLiteral("frobnicate")}, QString());
    EXPECT_TRUE(m->ended());
    EXPECT_EQ(prompts(), QStringList{QStringLiteral("msgbox|פלקור|wrong option|OK")});

    // debug=1 turns the trace on and is written back; the other keys too.
    platform::ProfileFile ini(platform::Paths::under(dir.path()).iniFile());
    ini.writeString(QStringLiteral("misc"), QStringLiteral("debug"), QStringLiteral("1"));
    ini.writeString(QStringLiteral("bank sync"), QStringLiteral("maxDayDiffForMatch"), QStringLiteral("12"));
    repair();
    EXPECT_TRUE(m->shown().mnuCreateLogFileChecked);
    EXPECT_EQ(ini.readString(QStringLiteral("misc"), QStringLiteral("debug")), QStringLiteral("1"));
    EXPECT_EQ(ini.readString(QStringLiteral("bank sync"), QStringLiteral("maxDayDiffForMatch")), QStringLiteral("12"));
    QFile log(m->trace().filePath());
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(log.readAll().contains("*** openDB: <<<< starting"));
}
