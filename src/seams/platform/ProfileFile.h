// ProfileFile: the settings files (pelkor.ini, merge.ini) read and written
// the way the old private profile functions did.
//
// A file is lines of "[section]" headers and "key=value" entries. Section
// and key names match without regard to case and surrounding blanks. A
// read gives the value with blanks trimmed and one pair of enclosing quotes
// removed, cut to 255 characters; a missing file, section or key gives the
// default. A write replaces the key's line where it stands, or adds the key
// at the end of its section, or adds the section at the end of the file;
// every other line (comments, unknown keys, order) stays as it was. Each
// write replaces the whole file in one rename, so a crash never leaves a
// half-written file. Text is UTF-8.
//
// Not here: what the keys mean; their owners give keys and defaults.
#pragma once

#include <QString>
#include <QStringList>

namespace pelkor::platform {

class ProfileFile {
public:
    // The longest value a read returns, as the old fixed buffer allowed.
    static constexpr int maxValueLength = 255;

    explicit ProfileFile(QString path) : path_(std::move(path)) {}
    const QString& path() const { return path_; }

    QString readString(const QString& section, const QString& key, const QString& def = {}) const;
    // The value read as a whole number; a missing or non-numeric value gives def.
    int readInt(const QString& section, const QString& key, int def) const;
    // Writes key=value; a null value deletes the key. Creates the file and
    // its folder when missing. False when the file cannot be written.
    bool writeString(const QString& section, const QString& key, const QString& value);
    // Deletes a whole section. False when the file cannot be written.
    bool deleteSection(const QString& section);
    // The keys of a section in file order (empty when there is none).
    QStringList keys(const QString& section) const;

private:
    QStringList readLines() const;
    bool writeLines(const QStringList& lines) const;
    QString path_;
};

} // namespace pelkor::platform
