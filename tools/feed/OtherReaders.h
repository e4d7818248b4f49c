// The readers of the structured formats: QIF, OFX (libofx) and ISO 20022
// camt.053/camt.052. Each takes the whole file and returns the statement or
// one refusal naming the line or element at fault (Statement.h).
#pragma once

#include "Statement.h"

namespace pelkor::feed {

// QIF: "!Type:Bank", "!Type:CCard", "!Type:Cash" and the like, records
// ended by "^", accounts named by "!Account" blocks. Day-first or
// month-first dates are decided from every date of the file together.
ReadResult readQif(const QString& text, const QString& fileName, const QString& fallbackAccount);

// OFX 1.x (SGML) and 2.x (XML), QFX. bytes: the file as it lies.
ReadResult readOfx(const QByteArray& bytes, const QString& fileName);

// camt.053 (BkToCstmrStmt/Stmt) and camt.052 (BkToCstmrAcctRpt/Rpt).
ReadResult readCamt(const QByteArray& bytes, const QString& fileName);

} // namespace pelkor::feed
