#include "app/LedgerListView.h"

#include "file/Schema.h"
#include "frame/Format.h"
#include "seams/store/Connection.h"

#include <QAbstractTableModel>
#include <QFileInfo>
#include <QHeaderView>
#include <QTableView>

namespace pelkor {

namespace {

class LinesModel : public QAbstractTableModel {
public:
    explicit LinesModel(store::Recordset rs) : rs_(std::move(rs))
    {
        balances_.reserve(rs_.recordCount());
        double b = 0;
        for (long r = 0; r < rs_.recordCount(); ++r) {
            b += RemoveSumNull(rs_.at(r, 5)) - RemoveSumNull(rs_.at(r, 6));
            balances_.push_back(b);
        }
    }
    int rowCount(const QModelIndex& = {}) const override { return int(rs_.recordCount()); }
    int columnCount(const QModelIndex& = {}) const override { return 7; }
    QVariant headerData(int s, Qt::Orientation o, int role) const override
    {
        static const char* captions[] = {"סיווג", "תאריך", "אסמכתא", "פירוט", "הכנסה", "הוצאה", "יתרה"};
        if (role == Qt::DisplayRole && o == Qt::Horizontal)
            return QString::fromUtf8(captions[s]);
        return QAbstractTableModel::headerData(s, o, role);
    }
    QVariant data(const QModelIndex& i, int role) const override
    {
        if (role != Qt::DisplayRole)
            return {};
        const long r = i.row();
        switch (i.column()) {
        case 0: return FormatKind(RemoveNull(rs_.at(r, 1)));
        case 1: return RemoveNull(rs_.at(r, 2));
        case 2: return RemoveNull(rs_.at(r, 3));
        case 3: return RemoveNull(rs_.at(r, 4));
        case 4: return FormatSum(RemoveSumNull(rs_.at(r, 5)));
        case 5: return FormatSum(RemoveSumNull(rs_.at(r, 6)));
        case 6: return FormatSum(balances_[size_t(r)]);
        }
        return {};
    }

private:
    store::Recordset rs_;
    std::vector<double> balances_;
};

} // namespace

LedgerListView::LedgerListView(const QString& path, QWidget* parent) : QMainWindow(parent)
{
    store::Connection cn;
    cn.open(path);
    auto rs = cn.execute(QStringLiteral("SELECT %1 FROM pelkor ORDER BY %2")
                             .arg(QLatin1String(schema::lineColumns), QLatin1String(schema::lineOrder)));
    auto* table = new QTableView(this);
    auto* model = new LinesModel(std::move(rs));
    model->setParent(table);
    table->setModel(model);
    table->setLayoutDirection(Qt::RightToLeft);
    table->horizontalHeader()->setStretchLastSection(true);
    table->setColumnWidth(3, 280);
    setCentralWidget(table);
    setLayoutDirection(Qt::RightToLeft);
    setWindowTitle(QStringLiteral("פלקור - %1").arg(QFileInfo(path).completeBaseName()));
    resize(1000, 640);
}

} // namespace pelkor
