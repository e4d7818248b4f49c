// LedgerListView: a plain right-to-left window listing a ledger's lines in
// the ledger's order with their running balance. It reads through the store
// only and writes nothing.
#pragma once

#include <QMainWindow>

namespace pelkor {

class LedgerListView : public QMainWindow {
    Q_OBJECT
public:
    // Throws store::StoreError when the file cannot be read as a ledger.
    explicit LedgerListView(const QString& path, QWidget* parent = nullptr);
};

} // namespace pelkor
