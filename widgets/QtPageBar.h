#ifndef QTPAGEBAR_H
#define QTPAGEBAR_H

#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;

// Paging controls for a multi-page table. The bar keeps only the current page and
// the page count (pages count from 1); its owner keeps the pages themselves and
// follows the three signals.
class QtPageBar : public QWidget
{
    Q_OBJECT
public:
    explicit QtPageBar(QWidget *parent = nullptr);

    int currentPage() const { return m_nCurrentPage; }
    int maxPage() const { return m_nMaxPage; }

    // for an owner that restores its pages; emits nothing
    void setPageIndex(int current, int count);

signals:
    void signalChangePage(int page);
    void addPage(int count);
    void deletePage(int page, int count);

public slots:
    void SltAddNewPage();
    void SltDeleteCurrentPage();
    void SltJumpPage();
    void SltJumpFirshPage();
    void SltJumpLastPage();
    void SltPrevPage();
    void SltNextPage();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void InitWidget();
    void InitPageInfo();
    void showPageCount();

    int m_nCurrentPage;
    int m_nMaxPage;
    QLineEdit *m_edtPage;
    QLabel *m_labPageCount;
};

#endif // QTPAGEBAR_H
