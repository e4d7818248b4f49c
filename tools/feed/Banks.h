// Banks: the twelve banks the system knows, by index (0 to 11), with the
// feed table each one's statement goes to and the feed file's name.
//
// The feed table is the internal name followed by "Osh", except that three
// banks ("massad", "poalimBusinesses", "yahav") share "poalimOsh". The feed
// file stays per bank: bank 11 writes table poalimOsh of atl613o11.dll.
#pragma once

#include <QString>

namespace pelkor::feed {

struct Bank {
    int index = -1;
    QString internalName;  // "poalim"
    QString displayName;   // "פועלים"
    QString feedTable;     // "poalimOsh"
};

inline constexpr int bankCount = 12;

// The bank of index i, or nullopt-like (index -1) when i is out of range.
Bank bankAt(int i);

// "atl613o<i>.dll", the number without padding.
QString feedFileName(int i);

} // namespace pelkor::feed
