#include "QtPageBar.h"
#include "QtMessageTip.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRegExpValidator>
#include <QStyleOption>

// The edit takes at most two digits, so no more pages than this are offered; page 100
// itself is reached by "下一页" or "尾页".
static const int s_nMaxPageCount = 100;

QtPageBar::QtPageBar(QWidget *parent)
    : QWidget(parent)
    , m_nCurrentPage(1)
    , m_nMaxPage(5)
{
    InitWidget();
}

void QtPageBar::InitWidget()
{
    QHBoxLayout *layout = new QHBoxLayout(this);
    layout->setContentsMargins(5, 5, 0, 5);
    layout->setSpacing(10);
    layout->addStretch();

    QPushButton *btnAdd = new QPushButton("添加一页", this);
    QPushButton *btnDelete = new QPushButton("删除当前页", this);
    QPushButton *btnFirst = new QPushButton("首页", this);
    QPushButton *btnPrev = new QPushButton("上一页", this);
    QPushButton *btnNext = new QPushButton("下一页", this);
    QPushButton *btnLast = new QPushButton("尾页", this);
    btnAdd->setObjectName("btnAddPage");
    btnDelete->setObjectName("btnDeletePage");
    btnFirst->setObjectName("btnFirstPage");
    btnPrev->setObjectName("btnPrevPage");
    btnNext->setObjectName("btnNextPage");
    btnLast->setObjectName("btnLastPage");

    m_edtPage = new QLineEdit(this);
    m_edtPage->setObjectName("edtPage");
    m_edtPage->setFixedSize(24, 22);
    m_edtPage->setAlignment(Qt::AlignCenter);
    m_edtPage->setText("1");
    m_edtPage->setValidator(new QRegExpValidator(QRegExp("[0-9]{1,2}"), m_edtPage));

    m_labPageCount = new QLabel(this);
    m_labPageCount->setObjectName("labPageCount");
    m_labPageCount->setFixedSize(24, 22);
    m_labPageCount->setAlignment(Qt::AlignCenter);
    m_labPageCount->setText("/ 5");

    QHBoxLayout *pageLayout = new QHBoxLayout();
    pageLayout->setContentsMargins(0, 0, 0, 0);
    pageLayout->setSpacing(0);
    pageLayout->addWidget(m_edtPage);
    pageLayout->addWidget(m_labPageCount);

    layout->addWidget(btnAdd);
    layout->addWidget(btnDelete);
    layout->addWidget(btnFirst);
    layout->addWidget(btnPrev);
    layout->addLayout(pageLayout);
    layout->addWidget(btnNext);
    layout->addWidget(btnLast);

    connect(btnAdd, SIGNAL(clicked()), this, SLOT(SltAddNewPage()));
    connect(btnDelete, SIGNAL(clicked()), this, SLOT(SltDeleteCurrentPage()));
    connect(btnFirst, SIGNAL(clicked()), this, SLOT(SltJumpFirshPage()));
    connect(btnPrev, SIGNAL(clicked()), this, SLOT(SltPrevPage()));
    connect(btnNext, SIGNAL(clicked()), this, SLOT(SltNextPage()));
    connect(btnLast, SIGNAL(clicked()), this, SLOT(SltJumpLastPage()));
    connect(m_edtPage, SIGNAL(returnPressed()), this, SLOT(SltJumpPage()));
}

void QtPageBar::paintEvent(QPaintEvent *)
{
    QStyleOption opt;
    opt.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_Widget, &opt, &painter, this);
}

void QtPageBar::setPageIndex(int current, int count)
{
    if (current > count || current < 0)
        return;
    m_nCurrentPage = current;
    m_nMaxPage = count;
    m_edtPage->setText(QString("%1").arg(m_nCurrentPage));
    showPageCount();
}

void QtPageBar::showPageCount()
{
    m_labPageCount->setText(QString("/ %1").arg(m_nMaxPage));
}

void QtPageBar::InitPageInfo()
{
    m_edtPage->setText(QString("%1").arg(m_nCurrentPage));
    emit signalChangePage(m_nCurrentPage);
}

void QtPageBar::SltAddNewPage()
{
    if (m_nMaxPage < s_nMaxPageCount)
        ++m_nMaxPage;
    showPageCount();
    // owners count on this even when the cap held the count back
    emit addPage(m_nMaxPage);
}

void QtPageBar::SltDeleteCurrentPage()
{
    if (m_nMaxPage == 1)
        return;

    const bool wasLast = (m_nCurrentPage >= m_nMaxPage);
    --m_nMaxPage;
    showPageCount();
    if (wasLast) {
        // the owner hears of the new current page before the deletion itself
        m_nCurrentPage = m_nMaxPage;
        InitPageInfo();
    }
    emit deletePage(m_nCurrentPage, m_nMaxPage);
}

void QtPageBar::SltJumpPage()
{
    const int page = m_edtPage->text().toInt(nullptr, 10);
    if (page > 0 && page <= m_nMaxPage) {
        m_nCurrentPage = page;
        emit signalChangePage(m_nCurrentPage);
    } else {
        // the wrong number stays in the edit so the user sees what was refused
        QtMessageTip::Instance()->ShowMessage("当前设置超出范围！",
                                              m_edtPage->mapToGlobal(m_edtPage->rect().bottomLeft()));
    }
}

void QtPageBar::SltJumpFirshPage()
{
    if (m_nCurrentPage != 1) {
        m_nCurrentPage = 1;
        InitPageInfo();
    }
}

void QtPageBar::SltJumpLastPage()
{
    if (m_nCurrentPage != m_nMaxPage) {
        m_nCurrentPage = m_nMaxPage;
        InitPageInfo();
    }
}

void QtPageBar::SltPrevPage()
{
    if (m_nCurrentPage >= 2) {
        --m_nCurrentPage;
        InitPageInfo();
    }
}

void QtPageBar::SltNextPage()
{
    if (m_nCurrentPage < m_nMaxPage) {
        ++m_nCurrentPage;
        InitPageInfo();
    }
}
