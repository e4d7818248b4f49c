// MergedFile: the temporary file that holds the lines of every file of the
// merged bank report, for the period reports of a merged instance.
//
// It starts as a copy of the template merge.pkr beside the program. Each
// member's lines are copied in with zee set to the member's place among
// the included files, which is also its row in mergedBanks (name and
// rate), so a line always finds its own file's rate. The kinds come from
// the member with the longest list (the first on a tie), the types only
// when every member has the same ones. The file is built beside its name
// and renamed into place, so a period report never opens half of it.
//
// It is built when a period report is asked for, not with every page: the
// page itself reads each file's sums by day and needs no copy of the lines.
//
// Not here: the window's page and sums (BankReport), starting the instance.
#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace pelkor::reports {

struct MergedMember {
    QString path;
    QString shortName;
    double rate = 0;
};

// Builds tempFolder/<title>.pkr (any old file of that name replaced) from
// templatePath and returns its path. Throws store::StoreError; a failure
// leaves no file at the returned name.
QString buildMergedFile(const QString& templatePath, const QString& tempFolder, const QString& title,
                        const std::vector<MergedMember>& members);

// The warnings of choosing the kinds and the types.
extern const char mergedKindsLargerWarning[];
extern const char mergedKindsFirstWarning[];
extern const char mergedTypesDifferWarning[];

// Writes mergedBanks, Category, Types and TypesCategories of the merged
// file anew: a row per member; the kinds of the member with the longest
// list (the first when two lists of one length differ); the types only
// when all members agree on them. With mustWarn a difference is told
// through warn. Returns whether the types were taken. Throws
// store::StoreError.
bool updateMergedBanksData(const QString& mergedFile, const std::vector<MergedMember>& members, bool mustWarn,
                           const std::function<void(const QString&)>& warn);

} // namespace pelkor::reports
