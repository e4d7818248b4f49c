// The scripted Ui: answers by rules and defaults, and the transcript it
// leaves for process tests to read.
#include "seams/ui/ScriptedUi.h"

#include "seams/ui/dialogs/frmNoIpus.h"
#include "seams/ui/dialogs/frmPassword.h"

#include "UiTestFiles.h"

#include <gtest/gtest.h>

using namespace pelkor::ui;
using pelkor::ui::testing::UiFiles;

namespace {

const QStringList kArgs = {QStringLiteral("prjPelkor"), QStringLiteral("detail"),
                           QStringLiteral("/tmp/my file.pkr")};

} // namespace

TEST(ScriptedUi, MessageBoxesTakeTheRuleOrTheFirstButton)
{
    UiFiles files;
    ScriptedUi ui(files.rules(QStringLiteral(
                      "למחוק => Yes\n"
                      "לשמור => no\n"            // names are read in any case
                      "שגיאה => Retry\n"         // a button the box may not have
                      "^כותרת \\| => Cancel\n")),
                  files.transcriptPath(), kArgs);
    EXPECT_EQ(ui.msgBox(QStringLiteral("האם למחוק?"), QStringLiteral("פלקור"), Buttons::YesNo), Answer::Yes);
    EXPECT_EQ(ui.msgBox(QStringLiteral("לשמור?"), QStringLiteral("פלקור"), Buttons::YesNoCancel), Answer::No);
    // No rule: the first button of the set.
    EXPECT_EQ(ui.msgBox(QStringLiteral("?"), QStringLiteral("x"), Buttons::AbortRetryIgnore), Answer::Abort);
    // Retry is not on a Yes/No box: its default is used and recorded.
    EXPECT_EQ(ui.msgBox(QStringLiteral("שגיאה"), QStringLiteral("x"), Buttons::YesNo), Answer::Yes);
    EXPECT_EQ(ui.msgBox(QStringLiteral("שגיאה"), QStringLiteral("x"), Buttons::RetryCancel), Answer::Retry);
    // The title is matched as part of "title | text".
    EXPECT_EQ(ui.msgBox(QStringLiteral("טקסט"), QStringLiteral("כותרת"), Buttons::OKCancel), Answer::Cancel);

    const auto boxes = files.records(QStringLiteral("msgbox"));
    ASSERT_EQ(boxes.size(), 6u);
    EXPECT_EQ(boxes[3].value(4), QStringLiteral("Yes"));
    EXPECT_EQ(boxes[5].value(4), QStringLiteral("Cancel"));
}

TEST(ScriptedUi, InputBoxesAnswerTextDefaultOrCancel)
{
    UiFiles files;
    ScriptedUi ui(files.rules(QStringLiteral(
                      "סכום => 1,234.50-\n"
                      "תאריך => OK\n"
                      "שם => Cancel\n")),
                  files.transcriptPath(), kArgs);
    EXPECT_EQ(ui.inputBox(QStringLiteral("הקלד סכום"), QStringLiteral("פלקור")), QStringLiteral("1,234.50-"));
    EXPECT_EQ(ui.inputBox(QStringLiteral("תאריך?"), QStringLiteral("פלקור"), QStringLiteral("01/02/2025")),
              QStringLiteral("01/02/2025"));
    EXPECT_EQ(ui.inputBox(QStringLiteral("שם?"), QStringLiteral("פלקור"), QStringLiteral("x")), std::nullopt);
    EXPECT_EQ(ui.inputBox(QStringLiteral("unmatched"), QStringLiteral("t"), QStringLiteral("x")), std::nullopt);
    const auto inputs = files.records(QStringLiteral("input"));
    ASSERT_EQ(inputs.size(), 4u);
    EXPECT_EQ(inputs[1].value(4), QStringLiteral("01/02/2025"));
    EXPECT_EQ(inputs[3].value(4), QStringLiteral("Cancel"));
}

TEST(ScriptedUi, FileDialogsMatchTheTitleAndSplitSeveralPaths)
{
    UiFiles files;
    ScriptedUi ui(files.rules(QStringLiteral(
                      "^בחר קבצים$ => /d/a.pkr; /d/b.pkr ;;/d/c\n"
                      "שמירה => /d/report\n"
                      "ביטול => cancel\n")),
                  files.transcriptPath(), kArgs);
    FileDialogOptions multi;
    multi.title = QStringLiteral("בחר קבצים");
    multi.filter = QStringLiteral("פלקור (*.pkr)|*.pkr");
    multi.defaultExt = QStringLiteral("pkr");
    multi.multiSelect = true;
    EXPECT_EQ(ui.openFileDialog(multi),
              (QStringList{QStringLiteral("/d/a.pkr"), QStringLiteral("/d/b.pkr"), QStringLiteral("/d/c.pkr")}));
    // The same answer to a single selection: the first path only.
    multi.multiSelect = false;
    EXPECT_EQ(ui.openFileDialog(multi), QStringList{QStringLiteral("/d/a.pkr")});

    FileDialogOptions save;
    save.title = QStringLiteral("שמירה");
    save.defaultExt = QStringLiteral(".htm");
    EXPECT_EQ(ui.saveFileDialog(save), QStringLiteral("/d/report.htm"));
    save.title = QStringLiteral("ביטול");
    EXPECT_EQ(ui.saveFileDialog(save), QString());
    save.title = QStringLiteral("אין כלל");
    EXPECT_TRUE(ui.openFileDialog(save).isEmpty());

    const auto opens = files.records(QStringLiteral("open"));
    ASSERT_EQ(opens.size(), 3u);
    EXPECT_EQ(opens[0].value(3), QStringLiteral("פלקור (*.pkr)|*.pkr"));
    EXPECT_EQ(opens[0].value(4), QStringLiteral("/d/a.pkr;/d/b.pkr;/d/c.pkr"));
    EXPECT_EQ(opens[2].value(4), QStringLiteral("Cancel"));
    EXPECT_EQ(files.records(QStringLiteral("save")).size(), 2u);
}

TEST(ScriptedUi, NoIpusDialogByCaptionOrName)
{
    UiFiles files;
    {
        ScriptedUi ui(files.rules(QStringLiteral("שורת איפוס => opt1stLine=1\n")), {}, kArgs);
        frmNoIpus d;
        EXPECT_TRUE(ui.runDialog(d));
        EXPECT_EQ(d.noIpusReply(), QStringLiteral("*"));
    }
    {
        ScriptedUi ui(files.rules(QStringLiteral("^frmNoIpus$ => optDate=1;txtDate=15/03/2025\n")), {}, kArgs);
        frmNoIpus d;
        EXPECT_TRUE(ui.runDialog(d));
        EXPECT_EQ(d.noIpusReply(), QStringLiteral("15/03/2025"));
    }
    {
        // cmdOK stays disabled on a text that is no date: the OK clicked
        // after the pairs does nothing and the dialog is closed unanswered.
        ScriptedUi ui(files.rules(QStringLiteral("frmNoIpus => optDate=1;txtDate=31/02/2025\n")), {}, kArgs);
        frmNoIpus d;
        EXPECT_FALSE(ui.runDialog(d));
        EXPECT_TRUE(d.isClosed());
        EXPECT_EQ(d.noIpusReply(), QString());
    }
}

TEST(ScriptedUi, PasswordDialogOkCancelAndButtonClickSuppressesOk)
{
    UiFiles files;
    ScriptedUi ui(files.rules(QStringLiteral(
                      "a\\.pkr => txtPassw=secret\n"
                      "b\\.pkr => txtPassw=typed;cmdCancel=1\n"
                      "c\\.pkr => cmdCancel\n"
                      "d\\.pkr => nosuch=1\n")),
                  {}, kArgs);
    frmPassword a(QStringLiteral("a.pkr"));
    EXPECT_TRUE(ui.runDialog(a));
    EXPECT_EQ(a.result(), QStringLiteral("secret"));
    // A pair clicked cmdCancel, so cmdOK is not clicked after it.
    frmPassword b(QStringLiteral("b.pkr"));
    EXPECT_FALSE(ui.runDialog(b));
    EXPECT_EQ(b.result(), frmPassword::canceledText());
    frmPassword c(QStringLiteral("c.pkr"));
    EXPECT_FALSE(ui.runDialog(c));
    EXPECT_EQ(c.result(), frmPassword::canceledText());
    // An unknown control is skipped; cmdOK still answers with the empty text.
    frmPassword d(QStringLiteral("d.pkr"));
    EXPECT_TRUE(ui.runDialog(d));
    EXPECT_EQ(d.result(), QString());
}

TEST(ScriptedUi, WindowPromptsClickTheNamedControl)
{
    UiFiles files;
    ScriptedUi ui(files.rules(QStringLiteral("^frmBalance \\| => cmdContinue\n")), files.transcriptPath(), kArgs);
    QStringList clicked;
    ui.windowReady(QStringLiteral("frmBalance"), QStringLiteral("היתרות שוות"),
                   [&](const QString& c) { clicked << c; });
    ui.windowReady(QStringLiteral("frmMain"), QStringLiteral("פלקור"), [&](const QString& c) { clicked << c; });
    EXPECT_EQ(clicked, QStringList{QStringLiteral("cmdContinue")});
    const auto windows = files.records(QStringLiteral("window"));
    ASSERT_EQ(windows.size(), 2u);
    EXPECT_EQ(windows[0], (QStringList{UiFiles::pid(), QStringLiteral("window"), QStringLiteral("frmBalance"),
                                       QStringLiteral("היתרות שוות"), QStringLiteral("cmdContinue")}));
    EXPECT_EQ(windows[1].value(4), QString());
}

TEST(ScriptedUi, TranscriptRecordsStartPromptsAndExitOnePerLine)
{
    UiFiles files;
    {
        // Anchored: the dialog's text holds "הפלקור", which a bare "פלקור" would find.
        ScriptedUi ui(files.rules(QStringLiteral("^פלקור \\| => OK\n")), files.transcriptPath(), kArgs);
        ui.msgBox(QStringLiteral("שורה ראשונה\r\nשנייה\tאחרי טאב\nשלישית"), QStringLiteral("פלקור"));
        frmNoIpus d;  // no rule for it: cancelled
        ui.runDialog(d);
        ui.recordExit(3);
    }  // the destructor must not add a second exit line
    const auto r = files.records();
    ASSERT_EQ(r.size(), 4u);
    const QString pid = UiFiles::pid();
    EXPECT_EQ(r[0], (QStringList{pid, QStringLiteral("start"), QString(),
                                 QStringLiteral("prjPelkor detail \"/tmp/my file.pkr\""), QString()}));
    EXPECT_EQ(r[1], (QStringList{pid, QStringLiteral("msgbox"), QStringLiteral("פלקור"),
                                 QStringLiteral("שורה ראשונה\\nשנייה אחרי טאב\\nשלישית"), QStringLiteral("OK")}));
    EXPECT_EQ(r[2].value(1), QStringLiteral("frmNoIpus"));
    EXPECT_EQ(r[2].value(2), QStringLiteral("שורת איפוס"));
    EXPECT_EQ(r[2].value(4), QStringLiteral("Cancel"));
    EXPECT_EQ(r[3], (QStringList{pid, QStringLiteral("exit"), QString(), QStringLiteral("3"), QString()}));
}

TEST(ScriptedUi, TwoInstancesAppendToOneTranscriptAndDestructorRecordsExit)
{
    UiFiles files;
    {
        ScriptedUi parent(QString(), files.transcriptPath(), {QStringLiteral("prjPelkor")});
        parent.msgBox(QStringLiteral("לפני"), QStringLiteral("הורה"));
        {
            ScriptedUi child(QString(), files.transcriptPath(), {QStringLiteral("prjPelkor"), QStringLiteral("new")});
            child.msgBox(QStringLiteral("בילד"), QStringLiteral("ילד"));
        }
        parent.msgBox(QStringLiteral("אחרי"), QStringLiteral("הורה"));
    }
    QStringList seen;
    for (const QStringList& r : files.records()) {
        ASSERT_EQ(r.size(), 5) << r.join(QLatin1Char('|')).toStdString();
        seen << r[1] + QLatin1Char(':') + r[3];
    }
    EXPECT_EQ(seen, (QStringList{QStringLiteral("start:prjPelkor"), QStringLiteral("msgbox:לפני"),
                                 QStringLiteral("start:prjPelkor new"), QStringLiteral("msgbox:בילד"),
                                 QStringLiteral("exit:0"), QStringLiteral("msgbox:אחרי"),
                                 QStringLiteral("exit:0")}));
}

TEST(ScriptedUi, RepeatedPromptIsTakenForALoopAndCancelled)
{
    UiFiles files;
    // A rule that gives a wrong password for ever would never end the loop.
    ScriptedUi ui(files.rules(QStringLiteral("frmPassword => txtPassw=wrong\n")), {}, kArgs);
    ui.setRepeatLimit(5);
    EXPECT_FALSE(getPassword(ui, QStringLiteral("secret"), QStringLiteral("a.pkr")));
}

TEST(ScriptedUi, FactoryNeedsOneOfTheVariables)
{
    UiFiles files;
    qunsetenv("PELKOR_DIALOGS");
    qunsetenv("PELKOR_TRANSCRIPT");
    EXPECT_EQ(makeUiFromEnvironment(), nullptr);
    qputenv("PELKOR_TRANSCRIPT", files.transcriptPath().toUtf8());
    {
        auto ui = makeUiFromEnvironment();
        ASSERT_NE(ui, nullptr);
        EXPECT_EQ(ui->msgBox(QStringLiteral("x"), QStringLiteral("y"), Buttons::OKCancel), Answer::OK);
    }
    qunsetenv("PELKOR_TRANSCRIPT");
    qputenv("PELKOR_DIALOGS", files.rules(QStringLiteral("y => Cancel\n")).toUtf8());
    {
        auto ui = makeUiFromEnvironment();
        ASSERT_NE(ui, nullptr);
        EXPECT_EQ(ui->msgBox(QStringLiteral("x"), QStringLiteral("y"), Buttons::OKCancel), Answer::Cancel);
    }
    qunsetenv("PELKOR_DIALOGS");
    EXPECT_EQ(files.records(QStringLiteral("msgbox")).size(), 1u);
}
