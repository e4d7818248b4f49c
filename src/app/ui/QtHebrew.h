// QtHebrew: Qt's own words (file dialogs, standard buttons, the print
// preview) in Hebrew.
//
// The distribution's catalogue (qtbase_he, reached through qt_he in Qt's
// translations folder) holds most of them; a few that the file dialog
// shows are missing from it (the type of a folder, "Folder"; the names of
// a file's type and of a drive), and the program's own small table answers
// for those first. Qt's words stay English where neither has them.
//
// The default locale becomes Hebrew (Israel), so the names of file types
// that the desktop's type database gives come in Hebrew too; the program's
// own figures and dates never go through the default locale.
#pragma once

#include <QString>

class QCoreApplication;

namespace pelkor::ui {

// Installs both catalogues on app; false when the distribution's is
// missing (the program's table is installed all the same).
bool installQtHebrew(QCoreApplication& app);

// The Hebrew of a word the distribution's catalogue lacks, or a null
// string; context and source are Qt's.
QString missingQtWord(const char* context, const char* source);

} // namespace pelkor::ui
