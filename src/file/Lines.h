// Lines: what a load holds in memory of a data file.
//
// The kinds (categories), the types, and the lines in display order, as the
// grid and every editing operation read them; and the lookups on them. The
// records are filled by the load (file/Loader) and kept current by the
// operations that edit lines. Grid row i+1 holds lines[i].
//
// Also here: the two fixed word tables of a data file, the colour words of
// memo and the recurrence steps of ConstantLines.
#pragma once

#include <QDate>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

namespace pelkor {

// The null date: it stands for an empty date column.
inline QDate nullDate() { return QDate(1600, 1, 1); }
// The date of a new line whose date has not been filled yet.
inline QDate newLineNoDate() { return QDate(1900, 1, 1); }

struct TypeRec {
    int TypeNum = 0;
    QString TypeName;      // through fixString
    QString CategoryName;
    bool isIncome = false; // the group's InOut is 1
};

// The small fields first and together: a ledger holds many of these.
struct Line {
    bool isPainted = false;   // marked or confirmed in a reconciliation
    bool isConfirmed = false; // paired with the bank (with isPainted): green, "v"
    bool isLit = false;       // confirmed and of the pair under the cursor
    bool isTzefi = false;
    int TypeNum = -1;      // -1 for Null
    int relate = 0;
    QDate Date;            // nullDate() for an empty date
    double In = 0;         // converted (convNum)
    double out = 0;
    QString Id;            // pelkor.id as text
    QString kind;          // stored form, sign in front
    QString confirm;       // never empty: at least one blank
    QString detail;
    QString Type;          // the type's name; empty when TypeNum is Null
    QString Memo;          // colour word
    QString zee;
};

// The kinds and types of the open file.
struct Catalogue {
    QStringList categories;      // category.id in kind order
    QStringList categoryDescs;   // parallel, through fixString
    std::vector<TypeRec> types;  // in the order of the join
    QString typeName1, typeName2;

    // The name of the first type with that number, or "[not found]".
    QString getTypeName(int typeNum) const;
    // The type of that name; null when there is none.
    const TypeRec* findType(const QString& name) const;
    // The number of the type of that name; 999 when there is none.
    int typeNumOf(const QString& name) const
    {
        const TypeRec* t = findType(name);
        return t ? t->TypeNum : 999;
    }
    // True when kind equals one of categories.
    bool isCategory(const QString& kind) const;
    QString getKindID(int i) const { return i >= 0 && i < categories.size() ? categories[i] : QString(); }
    QString getKindDesc(int i) const { return i >= 0 && i < categoryDescs.size() ? categoryDescs[i] : QString(); }
};

// The colour words of memo, by index; the last is "no colour" and is what a
// Null memo reads as.
const QStringList& colorWords();
// The colour (lowest byte red) of each word, parallel to colorWords().
const std::vector<std::uint32_t>& colorValues();
// The index of a colour word; 3 ("ללא צבע") for any other text.
int getColorNum(const QString& word);

// The recurrence words of ConstantLines.Steps: day, week, month, two
// months, quarter.
const QStringList& jumpWords();
// The index of a recurrence word; 2 (month) for any other text.
int getJumpNum(const QString& word);

// The prefix of memo on a line just written by another process or dialog:
// "newline " and then the colour word. A memo is taken to carry it by its
// first seven characters ("newline"); the load cuts all eight.
inline constexpr char newLinePrefix[] = "newline ";
inline constexpr int newLinePrefixLength = 8;
inline bool hasNewLinePrefix(const QString& memo)
{
    return memo.startsWith(QLatin1String(newLinePrefix, newLinePrefixLength - 1));
}

} // namespace pelkor
