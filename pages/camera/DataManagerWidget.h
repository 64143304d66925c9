#ifndef DATAMANAGERWIDGET_H
#define DATAMANAGERWIDGET_H

#include "QtWidgetBase.h"

class QButtonGroup;
class QStandardItemModel;
class QTableView;
class QtTabBar;
class QtTitleBar;

// A frameless window over a table where a list is edited and moved to and from a
// GB18030 comma-separated file. It knows nothing of what the rows mean: it shows the
// model its owner lends it, says which tab is chosen and when to take the table over.
class DataManagerWidget : public QtWidgetBase
{
    Q_OBJECT
public:
    explicit DataManagerWidget(const QString &title, QWidget *parent = nullptr);

    int currentPage() const { return m_nCurrentPage; }

    // lends the owner's model; the window never deletes a lent model
    void setDataModel(QStandardItemModel *model);
    QStandardItemModel *dataModel() const { return m_model; }

    // a model of 50 rows of the window's own when none has been lent
    void checkModel();
    void setModel(const QStringList &headers);
    void setModelConfig();
    void InpportData();
    void ExportData();

signals:
    void signalChangePage(int index);
    void signalRefreshData(int pageIndex);

public slots:
    void SltChangePage(int index);
    void SltButtonClicked(int index);

private:
    void InitWidget(const QString &title);
    void stretchLastColumn();

    QtTitleBar *m_titleBar;
    QtTabBar *m_tabBar;
    QTableView *m_tableView;
    QButtonGroup *m_btnGroup;
    QStandardItemModel *m_model;
    int m_nCurrentPage;
};

#endif // DATAMANAGERWIDGET_H
