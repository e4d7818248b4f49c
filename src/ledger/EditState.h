// EditState: what the main window remembers between the user's edits.
//
// The guard flags of the commit and the cursor (saved and restored around
// each use, never simply cleared), the last texts typed per column, the
// last types chosen per direction, the cell the cursor last settled on,
// and the state of the two floating editors: the cell editor txtCell, and
// the type pair txtCombo over cmbTypes. The logic changes these; the view
// shows the editors where and as they say.
#pragma once

#include <QString>
#include <QStringList>

#include <array>

namespace pelkor {

// A text box as the logic sees it: shown or not, its text, the caret and
// the selected part (selStart..selStart+selLength).
struct TextBoxState {
    bool visible = false;
    QString text;
    int selStart = 0;
    int selLength = 0;
    void selectAll() { selStart = 0; selLength = int(text.size()); }
    void caretAtEnd() { selStart = int(text.size()); selLength = 0; }
    QString selectedText() const { return text.mid(selStart, selLength); }
};

struct EditState {
    bool loaded = false;                    // the window finished its first load
    bool suspendEnterAndLeaveCell = false;
    bool mustGoBack = false;
    bool isThereNewLine = false;            // the last row is an unsaved new line
    bool hasSetAnySumInCurNewLine = false;
    bool suspendMaybeWriteNewLineToDB = false;
    QString lastInType = QStringLiteral("?");
    QString lastOutType = QStringLiteral("?");
    // The last text committed or typed in each column; "?" until the first.
    std::array<QString, 21> lastValues;
    int prevRow = -99;                      // -99: none yet
    int prevCol = 0;

    // The cell editor and the type pair.
    TextBoxState txtCell;
    TextBoxState txtCombo;
    bool cmbTypesVisible = false;
    QStringList cmbTypesRows;               // "name   (group)"
    int cmbTypesIndex = -1;
    int cmbTypesWidth = 0;                  // the longest name, in characters
    bool suspend_txtCombo_Change = false;
    bool suspend_cmbTypes_Click = false;
    bool suspendCompletion = false;

    EditState() { lastValues.fill(QStringLiteral("?")); }
    bool editorOpen() const { return txtCell.visible || txtCombo.visible; }
};

} // namespace pelkor
