// ScriptedUi: answering prompts from rules and recording them.
#include "seams/ui/ScriptedUi.h"

#include "seams/ui/Dialog.h"

#include <QCoreApplication>
#include <QtGlobal>

#include <algorithm>
#include <utility>

namespace pelkor::ui {

namespace {

const QString kSep = QStringLiteral(" | ");

bool isCancel(const QString& answer)
{
    return answer.trimmed().compare(QLatin1String("Cancel"), Qt::CaseInsensitive) == 0;
}

} // namespace

ScriptedUi::ScriptedUi(const QString& rulesPath, const QString& transcriptPath,
                       const QStringList& commandLine)
    : transcript_(transcriptPath)
{
    if (!rulesPath.isEmpty())
        rules_ = DialogRules::load(rulesPath, &ruleErrors_);
    for (const QString& e : std::as_const(ruleErrors_))
        qWarning("pelkor dialogs: %s", qUtf8Printable(e));
    start(commandLine);
}

ScriptedUi::ScriptedUi(DialogRules rules, const QString& transcriptPath,
                       const QStringList& commandLine)
    : rules_(std::move(rules)), transcript_(transcriptPath)
{
    start(commandLine);
}

ScriptedUi::~ScriptedUi()
{
    recordExit(0);
}

void ScriptedUi::start(const QStringList& commandLine)
{
    QStringList args = commandLine;
    if (args.isEmpty() && QCoreApplication::instance())
        args = QCoreApplication::arguments();
    transcript_.append(QStringLiteral("start"), {}, Transcript::commandLine(args), {});
}

void ScriptedUi::recordExit(int code)
{
    if (exitRecorded_)
        return;
    exitRecorded_ = true;
    transcript_.append(QStringLiteral("exit"), {}, QString::number(code), {});
}

std::optional<QString> ScriptedUi::answerFor(const QString& kind, const QString& title,
                                             const QString& text, const QStringList& subjects)
{
    const QString key = kind + QLatin1Char('\t') + title + QLatin1Char('\t') + text;
    if (++asked_[key] > repeatLimit_) {
        if (asked_[key] == repeatLimit_ + 1)
            qWarning("pelkor dialogs: \"%s\" asked %d times; taken for a loop, no rule answers it now",
                     qUtf8Printable(title), repeatLimit_);
        return std::nullopt;
    }
    return rules_.answer(subjects);
}

Answer ScriptedUi::msgBox(const QString& text, const QString& title, Buttons buttons, Icon)
{
    const QString kind = QStringLiteral("msgbox");
    const std::optional<QString> a = answerFor(kind, title, text, {title + kSep + text});
    const std::vector<Answer> offered = buttonsOf(buttons);
    Answer used = offered.front();
    if (a) {
        const std::optional<Answer> asked = parseAnswer(*a);
        if (asked && std::find(offered.begin(), offered.end(), *asked) != offered.end())
            used = *asked;
        else
            qWarning("pelkor dialogs: \"%s\" has no button \"%s\"; %s taken", qUtf8Printable(title),
                     qUtf8Printable(*a), qUtf8Printable(answerName(used)));
    }
    transcript_.append(kind, title, text, answerName(used));
    return used;
}

std::optional<QString> ScriptedUi::inputBox(const QString& prompt, const QString& title,
                                            const QString& defaultText)
{
    const QString kind = QStringLiteral("input");
    const std::optional<QString> a = answerFor(kind, title, prompt, {title + kSep + prompt});
    std::optional<QString> result;
    if (a && !isCancel(*a))
        result = a->trimmed().compare(QLatin1String("OK"), Qt::CaseInsensitive) == 0 ? defaultText : *a;
    transcript_.append(kind, title, prompt, result ? *result : QStringLiteral("Cancel"));
    return result;
}

QStringList ScriptedUi::chooseFiles(const QString& kind, const FileDialogOptions& spec, bool multi)
{
    const std::optional<QString> a = answerFor(kind, spec.title, spec.filter, {spec.title});
    QStringList files;
    if (a && !isCancel(*a)) {
        for (const QString& p : a->split(QLatin1Char(';'))) {
            const QString path = p.trimmed();
            if (!path.isEmpty())
                files << withDefaultExt(path, spec.defaultExt, kind == QLatin1String("save") ? spec.filter : QString());
        }
        if (!multi && files.size() > 1)
            files = files.mid(0, 1);
    }
    transcript_.append(kind, spec.title, spec.filter,
                       files.isEmpty() ? QStringLiteral("Cancel") : files.join(QLatin1Char(';')));
    return files;
}

QStringList ScriptedUi::openFileDialog(const FileDialogOptions& spec)
{
    return chooseFiles(QStringLiteral("open"), spec, spec.multiSelect);
}

QString ScriptedUi::saveFileDialog(const FileDialogOptions& spec)
{
    const QStringList files = chooseFiles(QStringLiteral("save"), spec, false);
    return files.isEmpty() ? QString() : files.first();
}

bool ScriptedUi::runDialog(Dialog& d)
{
    const QString kind = d.name();
    const std::optional<QString> a =
        answerFor(kind, d.caption(), d.text(), {d.caption() + kSep + d.text(), d.name()});
    const bool cancel = !a || isCancel(*a);
    // Written before the controls are set: the record is the question and
    // the answer given, whatever the dialog then made of it.
    transcript_.append(kind, d.caption(), d.text(), cancel ? QStringLiteral("Cancel") : *a);
    if (!cancel) {
        bool clickedButton = false;
        // "OK" alone sets nothing: cmdOK is clicked below.
        const QStringList pairs = a->trimmed().compare(QLatin1String("OK"), Qt::CaseInsensitive) == 0
            ? QStringList()
            : a->split(QLatin1Char(';'), Qt::SkipEmptyParts);
        for (const QString& pair : pairs) {
            const qsizetype eq = pair.indexOf(QLatin1Char('='));
            const QString name = (eq < 0 ? pair : pair.left(eq)).trimmed();
            // A bare name ("cmdCancel") is a click, as "cmdCancel=1" is.
            const QString value = eq < 0 ? QStringLiteral("1") : pair.mid(eq + 1).trimmed();
            if (name.isEmpty() || d.isClosed())
                continue;
            const bool isClick = d.kind(name) == Dialog::Kind::Button && Dialog::isOn(value);
            if (!d.setControl(name, value))
                qWarning("pelkor dialogs: %s: control %s is missing, disabled or hidden",
                         qUtf8Printable(kind), qUtf8Printable(name));
            else if (isClick)
                clickedButton = true;
        }
        if (!clickedButton && !d.isClosed())
            d.click(QStringLiteral("cmdOK"));
    }
    // Nobody is left to answer a dialog that is still open: close it.
    if (!d.isClosed())
        d.dismiss();
    return d.accepted();
}

void ScriptedUi::windowReady(const QString& windowName, const QString& text,
                             std::function<void(const QString& control)> click)
{
    const QString kind = QStringLiteral("window");
    const std::optional<QString> a =
        answerFor(kind, windowName, text, {windowName + kSep + text});
    const QString control = a ? a->trimmed() : QString();
    transcript_.append(kind, windowName, text, control);
    if (!control.isEmpty() && click)
        click(control);
}

std::unique_ptr<ScriptedUi> makeUiFromEnvironment()
{
    const QString rules = qEnvironmentVariable("PELKOR_DIALOGS");
    const QString transcript = qEnvironmentVariable("PELKOR_TRANSCRIPT");
    if (rules.isEmpty() && transcript.isEmpty())
        return nullptr;
    return std::make_unique<ScriptedUi>(rules, transcript);
}

} // namespace pelkor::ui
