// The two ledgers the transfer tests move money between: the source with
// its zeroing line on 01/01/2025 and the standard lists; the destination
// with its zeroing line on 01/03/2025, without the kind +7, its type 1
// under a name of its own and a type (10) the source lacks.
#pragma once

#include "TestSupport.h"

namespace pelkor::testing {

inline void makeTransferPair(const QString& source, const QString& dest)
{
    makeLedger(source, QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'+0','2025-01-01',' ','יתרה התחלתית',0,0,1,'ZZZZZZZZZZ','ללא צבע');"));
    makeLedger(dest, QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'+0','2025-03-01',' ','יתרה התחלתית',0,0,1,'ZZZZZZZZZZ','ללא צבע');"
        "DELETE FROM category WHERE id = '+7';"
        "UPDATE Types SET TypeName = 'הכנסה שונה' WHERE TypeNum = 1;"
        "INSERT INTO Types (TypeNum, TypeName, CategoryNum) VALUES (10, 'העברה מחשבון אחר', 1);"));
}

} // namespace pelkor::testing
