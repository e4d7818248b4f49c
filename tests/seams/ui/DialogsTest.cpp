// The program's own dialogs as logic: frmNoIpus's enabling rules,
// frmPassword and the password loop, the typed date, the filter conversion.
#include "seams/ui/Ui.h"
#include "seams/ui/dialogs/TypedDate.h"
#include "seams/ui/dialogs/frmNoIpus.h"
#include "seams/ui/dialogs/frmPassword.h"

#include <gtest/gtest.h>

#include <deque>

using namespace pelkor::ui;

namespace {

// A Ui whose dialogs are answered by a list of texts typed into frmPassword
// (or "(cancel)"), recording the message boxes shown.
class TypingUi : public Ui {
public:
    std::deque<QString> typed;
    QStringList boxes;
    int dialogs = 0;

    Answer msgBox(const QString& text, const QString& title, Buttons b, Icon) override
    {
        boxes << title + QStringLiteral(": ") + text;
        return defaultAnswer(b);
    }
    std::optional<QString> inputBox(const QString&, const QString&, const QString&) override { return {}; }
    QStringList openFileDialog(const FileDialogOptions&) override { return {}; }
    QString saveFileDialog(const FileDialogOptions&) override { return {}; }
    bool runDialog(Dialog& d) override
    {
        ++dialogs;
        EXPECT_TRUE(d.caption().contains(QStringLiteral("חשבון.pkr")));
        const QString t = typed.front();
        typed.pop_front();
        if (t == QLatin1String("(cancel)")) {
            d.click(QStringLiteral("cmdCancel"));
        } else {
            d.setControl(QStringLiteral("txtPassw"), t);
            d.click(QStringLiteral("cmdOK"));
        }
        return d.accepted();
    }
    void windowReady(const QString&, const QString&, std::function<void(const QString&)>) override {}
};

} // namespace

TEST(frmNoIpus, OkIsEnabledByFirstLineOrExactlyWhileTheTextIsADate)
{
    frmNoIpus d;
    EXPECT_EQ(d.caption(), QStringLiteral("שורת איפוס"));
    EXPECT_FALSE(d.isEnabled(QStringLiteral("cmdOK")));
    EXPECT_FALSE(d.click(QStringLiteral("cmdOK")));  // disabled: nothing happens
    EXPECT_FALSE(d.isClosed());

    d.click(QStringLiteral("optDate"));
    EXPECT_EQ(d.focus(), QStringLiteral("txtDate"));
    EXPECT_FALSE(d.isEnabled(QStringLiteral("cmdOK")));
    d.setControl(QStringLiteral("txtDate"), QStringLiteral("1/3/25"));
    EXPECT_TRUE(d.isEnabled(QStringLiteral("cmdOK")));
    d.setControl(QStringLiteral("txtDate"), QStringLiteral("1/3/2"));  // typing on: no date now
    EXPECT_FALSE(d.isEnabled(QStringLiteral("cmdOK")));
    d.setControl(QStringLiteral("txtDate"), QStringLiteral("1/3/2025"));
    EXPECT_TRUE(d.click(QStringLiteral("cmdOK")));
    EXPECT_TRUE(d.isClosed());
    EXPECT_TRUE(d.accepted());
    EXPECT_EQ(d.noIpusReply(), QStringLiteral("1/3/2025"));  // the text as typed
    EXPECT_FALSE(d.setControl(QStringLiteral("txtDate"), QStringLiteral("x")));  // closed
}

TEST(frmNoIpus, FirstLineWinsOverTheTypedDateAndOptionsExcludeEachOther)
{
    frmNoIpus d;
    d.setControl(QStringLiteral("txtDate"), QStringLiteral("15/03/2025"));
    d.setControl(QStringLiteral("opt1stLine"), QStringLiteral("1"));
    d.click(QStringLiteral("optDate"));
    EXPECT_EQ(d.control(QStringLiteral("opt1stLine")), QStringLiteral("0"));
    d.click(QStringLiteral("opt1stLine"));
    EXPECT_EQ(d.control(QStringLiteral("optDate")), QStringLiteral("0"));
    d.click(QStringLiteral("cmdOK"));
    EXPECT_EQ(d.noIpusReply(), QStringLiteral("*"));

    frmNoIpus closed;
    closed.click(QStringLiteral("opt1stLine"));
    closed.dismiss();
    EXPECT_TRUE(closed.isClosed());
    EXPECT_FALSE(closed.accepted());
    EXPECT_EQ(closed.noIpusReply(), QString());
}

TEST(TypedDate, DayFirstFormsAndTwoDigitYears)
{
    EXPECT_EQ(readTypedDate(QStringLiteral("15/03/2025")), QDate(2025, 3, 15));
    EXPECT_EQ(readTypedDate(QStringLiteral(" 5.3.2025 ")), QDate(2025, 3, 5));
    EXPECT_EQ(readTypedDate(QStringLiteral("5-3-2025")), QDate(2025, 3, 5));
    EXPECT_EQ(readTypedDate(QStringLiteral("1/2/29")), QDate(2029, 2, 1));
    EXPECT_EQ(readTypedDate(QStringLiteral("1/2/30")), QDate(1930, 2, 1));
    EXPECT_EQ(readTypedDate(QStringLiteral("1/2/00")), QDate(2000, 2, 1));
    EXPECT_EQ(readTypedDate(QStringLiteral("29/2/24")), QDate(2024, 2, 29));
    for (const char* bad : {"29/2/2025", "31/4/2025", "13/13/2025", "0/1/2025", "1/2/025", "1/2-2025",
                            "2025-03-15", "15/03", "", "abc", "15/03/2025x"})
        EXPECT_FALSE(readTypedDate(QString::fromLatin1(bad)).has_value()) << bad;
}

TEST(getPassword, WrongTextIsToldAndAskedAgainUntilRightOrCancelled)
{
    TypingUi none;   // no stored password: nothing is asked
    EXPECT_TRUE(getPassword(none, QString(), QStringLiteral("חשבון.pkr")));
    EXPECT_EQ(none.dialogs, 0);

    TypingUi ui;
    ui.typed = {QStringLiteral("Secret"), QStringLiteral(""), QStringLiteral("secret")};
    EXPECT_TRUE(getPassword(ui, QStringLiteral("secret"), QStringLiteral("חשבון.pkr")));
    EXPECT_EQ(ui.dialogs, 3);
    EXPECT_EQ(ui.boxes, QStringList(2, QStringLiteral("פלקור: הסיסמה שגויה")));

    TypingUi cancelling;
    cancelling.typed = {QStringLiteral("wrong"), QStringLiteral("(cancel)")};
    EXPECT_FALSE(getPassword(cancelling, QStringLiteral("secret"), QStringLiteral("חשבון.pkr")));
    EXPECT_EQ(cancelling.boxes.size(), 1);
}

TEST(frmPassword, CloseBoxCountsAsCancel)
{
    frmPassword d(QStringLiteral("a.pkr"));
    d.setControl(QStringLiteral("txtPassw"), QStringLiteral("secret"));
    d.dismiss();
    EXPECT_EQ(d.result(), frmPassword::canceledText());
}

TEST(FileDialogOptions, OldFiltersBecomeQtNameFilters)
{
    EXPECT_EQ(qtFilter(QStringLiteral("פלקור (*.pkr)|*.pkr")), QStringLiteral("פלקור (*.pkr)"));
    EXPECT_EQ(qtNameFilters(QStringLiteral("דפים|*.htm;*.html|הכל (ישן)|*.*|יתום")),
              (QStringList{QStringLiteral("דפים (*.htm *.html)"), QStringLiteral("הכל (ישן) (*.*)")}));
    EXPECT_EQ(qtFilter(QString()), QString());
    EXPECT_EQ(withDefaultExt(QStringLiteral("/a/b.c/report"), QStringLiteral("htm")),
              QStringLiteral("/a/b.c/report.htm"));
    EXPECT_EQ(withDefaultExt(QStringLiteral("x.pkr"), QStringLiteral("htm")), QStringLiteral("x.pkr"));
    // A date's dots at the end of a proposed name are not a suffix the
    // filter knows; a suffix it knows, or any under "*.*", stays.
    const QString pages = QStringLiteral("HTML (*.htm)|*.htm;*.html");
    EXPECT_EQ(withDefaultExt(QStringLiteral("r 22.11.2026 עד 24.01.2027"), QStringLiteral("htm"), pages),
              QStringLiteral("r 22.11.2026 עד 24.01.2027.htm"));
    EXPECT_EQ(withDefaultExt(QStringLiteral("r.HTML"), QStringLiteral("htm"), pages), QStringLiteral("r.HTML"));
    EXPECT_EQ(withDefaultExt(QStringLiteral("r.2027"), QStringLiteral("htm"), QStringLiteral("הכל|*.*")),
              QStringLiteral("r.2027"));
}

TEST(Answer, NamesRoundTripAndUnknownIsRefused)
{
    for (Answer a : {Answer::OK, Answer::Cancel, Answer::Yes, Answer::No, Answer::Abort, Answer::Retry,
                     Answer::Ignore})
        EXPECT_EQ(parseAnswer(answerName(a)), a);
    EXPECT_EQ(parseAnswer(QStringLiteral(" yes ")), Answer::Yes);
    EXPECT_EQ(parseAnswer(QStringLiteral("אישור")), std::nullopt);
}
