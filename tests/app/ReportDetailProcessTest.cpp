// A click on an amount of a period report starts a real detail child (the
// program on the report's file, the slice's verb line), which answers the
// report's own txtMessage: the report is disabled while it works and
// enabled again by its "nochange".
#include "base/Instances.h"
#include "reports/ReportFixture.h"
#include "seams/bus/Mailbox.h"

#include "app/ProcessSupport.h"

using namespace pelkor;
using namespace pelkor::testing;

namespace {

// Sets an environment variable for the life of the object.
class EnvVar {
public:
    EnvVar(const char* name, const QString& value) : name_(name), had_(qEnvironmentVariableIsSet(name)), old_(qgetenv(name))
    {
        qputenv(name, value.toUtf8());
    }
    ~EnvVar() { had_ ? qputenv(name_, old_) : qunsetenv(name_); }

private:
    const char* name_;
    bool had_;
    QByteArray old_;
};

class ReportDetailChild : public ReportTest {};

} // namespace

TEST_F(ReportDetailChild, AnAmountsChildAnswersTheReportWhichIsEnabledAgain)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    proctest::RuntimeFolder folder;
    // The child: headless, its dialogs scripted to close its window at once.
    const QString childDir = dir.filePath(QStringLiteral("child"));
    QDir().mkpath(childDir + QStringLiteral("/home"));
    proctest::Program rules(childDir);
    ASSERT_TRUE(rules.setRules(QStringLiteral("frmMain.*mode 3 => cmdClose\n")));
    EnvVar home("PELKOR_HOME", childDir + QStringLiteral("/home"));
    EnvVar dialogs("PELKOR_DIALOGS", childDir + QStringLiteral("/rules"));
    EnvVar transcript("PELKOR_TRANSCRIPT", childDir + QStringLiteral("/transcript.tsv"));
    EnvVar platform("QT_QPA_PLATFORM", QStringLiteral("offscreen"));
    auto real = processChildren(QStringLiteral(PELKOR_BINARY_DIR "/prjPelkor"));
    childrenOverride = real.get();

    file = dir.filePath(QStringLiteral("my shop.pkr"));   // a blank in the file's name
    openReport(reports::PeriodType::Month);
    bus::Mailbox txtMessage;
    QStringList heard;
    txtMessage.setHandler([&](const QString& text) {
        heard << text;
        r->txtMessage_Change(text);
    });
    r->setTxtMessageId(txtMessage.id());

    kindReport.sendEvent(QStringLiteral("3 -2 2 1"));
    EXPECT_EQ(r->lastChildCommand(),
              QStringLiteral("detail ") + txtMessage.idText() + QStringLiteral(" 3 01/03/2025 31/03/2025 -2 ") + file);
    EXPECT_FALSE(r->shown().enabled);
    ASSERT_TRUE(proctest::spinUntil([&] { return r->shown().enabled; }, 120000));
    EXPECT_EQ(heard, QStringList{QStringLiteral("nochange")});
    // The child showed the slice: March's two lines of "-2".
    const QStringList windows = proctest::promptsOf(childDir + QStringLiteral("/transcript.tsv")).filter(QStringLiteral("window|"));
    ASSERT_EQ(windows.size(), 1);
    EXPECT_TRUE(windows[0].contains(QStringLiteral("| mode 3 | my shop - ")));
    EXPECT_TRUE(windows[0].contains(QStringLiteral("בסיווג 2- משכורות מ: 01/03/2025 עד: 31/03/2025"))) << windows[0].toStdString();
    EXPECT_EQ(window.raised, 1);
    EXPECT_TRUE(proctest::spinUntil([&] { return !real->running(); }, 30000));
}
