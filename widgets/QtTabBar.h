#ifndef QTTABBAR_H
#define QTTABBAR_H

#include "QtWidgetBase.h"

#include <QStringList>

class QButtonGroup;
class QHBoxLayout;
class QLayout;

// The strip of page tabs under the title bar; what addLayout and addWidget add sits
// at its right end.
class QtTabBar : public QtWidgetBase
{
    Q_OBJECT
public:
    explicit QtTabBar(QWidget *parent = nullptr);

    // builds the tabs; call once
    void setTabTitles(const QStringList &titles);
    int currentIndex() const;
    // checks the tab of that id if there is one; emits nothing
    void setCurrentIndex(int index);
    void addLayout(QLayout *layout);
    void addWidget(QWidget *widget);

signals:
    void signalClicked(int index);

private:
    void ensureLayout();

    QButtonGroup *m_btnGroup = nullptr;
    QHBoxLayout *m_layout = nullptr;
    bool m_bTabsBuilt = false;
};

#endif // QTTABBAR_H
