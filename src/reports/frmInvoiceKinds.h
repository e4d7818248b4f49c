// frmInvoiceKinds: the kinds that stand for open invoices.
//
// The text theInvoiceCategs lists the chosen kinds' ids, each followed by a
// comma ("+3,-7,"); a kind is chosen when the text holds its id and a
// comma. The dialog shows the file's kinds as two pages of check boxes
// (inKindList.htm for income kinds, outKindList.htm for the others, in the
// file's order) in two web views, wbKinds0 and wbKinds1, and reads the
// boxes back at OK. The pages send no events: nothing listens to them.
//
// Without a window the dialog keeps two scripted views of its own; a
// scripted run ticks a box by its name ("knd3=1" turns the box of kind 3
// on, "knd3=0" off) and clicks cmdOK or cmdCancel.
//
// What the result means to a reconciliation, and writing it to the file,
// are the caller's (mnuInvoiceKinds_Click).
#pragma once

#include "seams/ui/Dialog.h"
#include "seams/web/ScriptedWebView.h"

#include <QStringList>
#include <memory>

namespace pelkor {

struct Catalogue;

namespace reports {

class frmInvoiceKinds : public ui::Dialog {
public:
    frmInvoiceKinds(const Catalogue& catalogue, QString invoiceCategs, QString tempPath);
    QString name() const override { return QStringLiteral("frmInvoiceKinds"); }

    // The window's two views; without them the dialog keeps scripted ones.
    void attachViews(web::WebView& wbKinds0, web::WebView& wbKinds1);
    void detachViews();
    web::WebView& wbKinds(int i) { return *wb_[i]; }

    // Writes the two pages; false when one could not be written.
    bool Form_Load();
    // timerKindLists: navigates each view to its page, once.
    void timerKindLists_Timer();

    // theInvoiceCategs as OK left it; the text given while the dialog is
    // open or after Cancel.
    const QString& invoiceCategs() const { return categs_; }
    const QString& pagePath(int i) const { return pagePath_[i]; }

    static QString pageName(int i) { return i == 0 ? QStringLiteral("inKindList.htm") : QStringLiteral("outKindList.htm"); }

protected:
    void onClick(const QString& name) override;

private:
    QStringList ids_, descs_;
    QString categs_;
    QString tempPath_;
    QString pageText_[2];
    QString pagePath_[2];
    std::vector<int> pageKinds_[2];   // the kinds of each page, by index
    std::unique_ptr<web::ScriptedWebView> scripted_[2];
    web::WebView* wb_[2] = {nullptr, nullptr};
    bool navigated_ = false;
};

// The page of the given kinds: a row with a check box knd<k> per kind.
QString invoiceKindsPage(const QStringList& ids, const QStringList& descs, const std::vector<int>& kinds,
                         const QString& invoiceCategs, const QString& colour);

// Whether the list holds the kind, by the plain search for "<id>,".
inline bool isInvoiceKind(const QString& invoiceCategs, const QString& id)
{
    return invoiceCategs.contains(id + QLatin1Char(','));
}

} // namespace reports
} // namespace pelkor
