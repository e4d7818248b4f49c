// The rules file: what counts as a rule, and which rule answers a prompt.
#include "seams/ui/DialogRules.h"

#include "UiTestFiles.h"

#include <gtest/gtest.h>

using pelkor::ui::DialogRules;
using pelkor::ui::testing::UiFiles;

namespace {

QString ask(DialogRules& r, const QString& subject)
{
    return r.answer({subject}).value_or(QStringLiteral("<none>"));
}

} // namespace

TEST(DialogRules, SkipsCommentsBlankLinesAndReportsBadLines)
{
    QStringList errors;
    DialogRules r = DialogRules::parse(QStringLiteral(
        "# a comment => Yes\r\n"
        "\r\n"
        "   # an indented comment => No\n"
        "   \t\n"
        "no arrow on this line\n"
        "([unclosed => OK\n"
        "שורת איפוס => opt1stLine=1\r\n"
        "  spaced   =>   Retry  \n"),
        &errors);
    ASSERT_EQ(errors.size(), 2);
    EXPECT_TRUE(errors[0].startsWith(QStringLiteral("line 5:")));
    EXPECT_TRUE(errors[1].startsWith(QStringLiteral("line 6:")));
    EXPECT_EQ(ask(r, QStringLiteral("שורת איפוס | מערכת הפלקור")), QStringLiteral("opt1stLine=1"));
    EXPECT_EQ(ask(r, QStringLiteral("a spaced title")), QStringLiteral("Retry"));
    EXPECT_EQ(ask(r, QStringLiteral("a comment")), QStringLiteral("<none>"));
}

TEST(DialogRules, LoadSkipsByteOrderMarkAndMissingFileGivesNoRules)
{
    UiFiles files;
    const QString withBom = files.rules(QStringLiteral("\xFEFF# a comment => Yes\nx => No\n"));
    DialogRules r = DialogRules::load(withBom);
    ASSERT_EQ(r.rules().size(), 1u);
    EXPECT_EQ(r.rules()[0].line, 2);

    QStringList errors;
    DialogRules none = DialogRules::load(QStringLiteral("/nonexistent/rules.txt"), &errors);
    EXPECT_TRUE(none.rules().empty());
    EXPECT_EQ(errors.size(), 1);
}

TEST(DialogRules, FirstMatchWinsAndExpressionIsSearchedNotFullyMatched)
{
    DialogRules r = DialogRules::parse(QStringLiteral(
        "הסיסמה => No\n"
        "שגויה => Yes\n"
        "^פלקור \\| => Cancel\n"
        "x{2}$ => Retry\n"));
    // Both of the first two rules match; the earlier one answers.
    EXPECT_EQ(ask(r, QStringLiteral("פלקור | הסיסמה שגויה")), QStringLiteral("No"));
    EXPECT_EQ(ask(r, QStringLiteral("כותרת | טקסט שגויה באמצע")), QStringLiteral("Yes"));
    // Anchors work on the joined subject: title first.
    EXPECT_EQ(ask(r, QStringLiteral("פלקור | משהו")), QStringLiteral("Cancel"));
    EXPECT_EQ(ask(r, QStringLiteral("title | text xx")), QStringLiteral("Retry"));
    EXPECT_EQ(ask(r, QStringLiteral("title | xx text")), QStringLiteral("<none>"));
}

TEST(DialogRules, AnswerCutAtLastArrowAndSequencesAdvancePerRule)
{
    DialogRules r = DialogRules::parse(QStringLiteral(
        "a=>b => first\n"
        "frmPassword => txtPassw=wrong || txtPassw=secret\n"
        "other => One||Two\n"));
    EXPECT_EQ(ask(r, QStringLiteral("a=>b")), QStringLiteral("first"));
    EXPECT_EQ(r.peek({QStringLiteral("frmPassword")}), QStringLiteral("txtPassw=wrong"));
    EXPECT_EQ(ask(r, QStringLiteral("frmPassword")), QStringLiteral("txtPassw=wrong"));
    // Another rule's use does not move this rule's sequence.
    EXPECT_EQ(ask(r, QStringLiteral("other")), QStringLiteral("One"));
    EXPECT_EQ(ask(r, QStringLiteral("frmPassword")), QStringLiteral("txtPassw=secret"));
    EXPECT_EQ(ask(r, QStringLiteral("frmPassword")), QStringLiteral("txtPassw=secret"));
    EXPECT_EQ(ask(r, QStringLiteral("other")), QStringLiteral("Two"));
}

TEST(DialogRules, AnySubjectMayMatch)
{
    DialogRules r = DialogRules::parse(QStringLiteral("^frmNoIpus$ => opt1stLine=1\n"));
    EXPECT_EQ(r.answer({QStringLiteral("שורת איפוס | טקסט"), QStringLiteral("frmNoIpus")}),
              QStringLiteral("opt1stLine=1"));
    EXPECT_FALSE(r.answer({QStringLiteral("frmNoIpus2")}).has_value());
}
