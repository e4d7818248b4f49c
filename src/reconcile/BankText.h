// BankText: the texts of bank rows as the bank grid shows them.
//
// Three banks deliver their wording with its runs already in the order of
// the screen (left to right, as a terminal printed it). splitStr turns such
// a text back into logical order for a right-to-left display: it cuts the
// text into runs of one class of character (Latin, Hebrew, digits and the
// signs that travel with them, the two direction marks, anything else),
// decides the direction of each run from its neighbours, and joins the runs
// from the last to the first. Brackets are mirrored so that a run read the
// other way round keeps them facing the right way.
//
// Not here: which banks need it (reconcile/BankFeed), and the grid.
#pragma once

#include <QString>

namespace pelkor::reconcile {

// The text of a screen-ordered bank row in logical order; the two
// direction marks (U+200F right-to-left, U+200E left-to-right) steer the
// runs beside them and vanish from the result.
QString splitStr(const QString& s);

// The text of a bank cell: splitStr for a bank whose texts arrive in screen
// order (and not on the demonstration feed), else the text as it came.
QString formatText(const QString& s, int iBank, bool isSimulate);

} // namespace pelkor::reconcile
