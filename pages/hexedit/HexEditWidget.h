#ifndef HEXEDITWIDGET_H
#define HEXEDITWIDGET_H

#include "QtWidgetBase.h"

class QButtonGroup;
class QHexEdit;
class QToolButton;

// The binary file editor page: a hex editor under a row of tool buttons (open, a
// button without action, undo, redo). Files come in by the open dialog or by dropping
// them on the page; edits stay in memory.
class HexEditWidget : public QtWidgetBase
{
    Q_OBJECT
public:
    explicit HexEditWidget(QWidget *parent = nullptr);

    QStringList getCounts() override;
    void clearCounts() override;

    void loadFile(const QString &path);
    QHexEdit *hexEdit() const { return m_hexEdit; }

public slots:
    void setSize(qint64 _size);
    void setAddress(qint64 _addr);
    void sltToolBtnsClicked(int index);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void InitWidget();

    QHexEdit *m_hexEdit = nullptr;
    qint64 m_nAddress = 0;
    qint64 m_nSize = 0;
    QToolButton *m_toolBtns[4] = {};
    QButtonGroup *m_btnGroup = nullptr;
};

#endif // HEXEDITWIDGET_H
