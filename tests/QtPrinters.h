// Readable failure messages: GoogleTest prints Qt strings and dates as text.
#pragma once

#include <QDate>
#include <QString>
#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }
inline void PrintTo(const QDate& d, std::ostream* os) { *os << d.toString(Qt::ISODate).toStdString(); }
