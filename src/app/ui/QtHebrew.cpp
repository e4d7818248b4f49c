#include "app/ui/QtHebrew.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <cstring>

namespace pelkor::ui {

namespace {

struct Word {
    const char* context;
    const char* source;
    const char* hebrew;
};

// What the file dialog shows and qtbase_he does not translate.
const Word missingWords[] = {
    {"QAbstractFileIconProvider", "Folder", "תיקייה"},
    {"QAbstractFileIconProvider", "File Folder", "תיקייה"},
    {"QAbstractFileIconProvider", "File", "קובץ"},
    {"QAbstractFileIconProvider", "%1 File", "קובץ %1"},
    {"QAbstractFileIconProvider", "Drive", "כונן"},
    {"QAbstractFileIconProvider", "Alias", "קיצור דרך"},
    {"QAbstractFileIconProvider", "Shortcut", "קיצור דרך"},
    {"QAbstractFileIconProvider", "Unknown", "לא ידוע"},
    {"QFileSystemModel", "Drive", "כונן"},
    {"QFileSystemModel",
     "<b>The name \"%1\" cannot be used.</b><p>Try using another name, with fewer characters or no punctuation marks.",
     "<b>לא ניתן להשתמש בשם \"%1\".</b><p>נסה שם אחר, קצר יותר או בלי סימני פיסוק."},
    {"QFileDialog", "Cancel", "ביטול"},
    {"QFileDialog", "Computer", "מחשב"},
};

// The table above, asked before the distribution's catalogue.
class MissingWords : public QTranslator {
public:
    using QTranslator::QTranslator;

    QString translate(const char* context, const char* source, const char*, int) const override
    {
        return missingQtWord(context, source);
    }
    bool isEmpty() const override { return false; }
};

} // namespace

QString missingQtWord(const char* context, const char* source)
{
    if (!context || !source)
        return {};
    for (const Word& w : missingWords)
        if (std::strcmp(w.context, context) == 0 && std::strcmp(w.source, source) == 0)
            return QString::fromUtf8(w.hebrew);
    return {};
}

bool installQtHebrew(QCoreApplication& app)
{
    QLocale::setDefault(QLocale(QLocale::Hebrew, QLocale::Israel));
    auto* shipped = new QTranslator(&app);
    const bool found = shipped->load(QStringLiteral("qt_he"), QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    if (found)
        app.installTranslator(shipped);
    // The last installed is asked first.
    app.installTranslator(new MissingWords(&app));
    return found;
}

} // namespace pelkor::ui
