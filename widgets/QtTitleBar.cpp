#include "QtTitleBar.h"

#include "IconHelper.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QToolButton>

namespace {
const ushort GlyphMaximise = 0xE60E;
const ushort GlyphRestore = 0xE60B;
}

QtTitleBar::QtTitleBar(QWidget *parent, QtWindowFlags flags)
    : QtWidgetBase(parent)
    , m_widgetParent(parent)
    , m_flags(flags)
{
    InitWidget();
}

QtTitleBar::QtTitleBar(QWidget *parent, int flags)
    : QtTitleBar(parent, QtWindowFlags(QFlag(flags)))
{
}

void QtTitleBar::InitWidget()
{
    setMinimumHeight(30);

    QHBoxLayout *outer = new QHBoxLayout(this);
    outer->setContentsMargins(5, 0, 0, 0);
    outer->setSpacing(0);

    QHBoxLayout *inner = new QHBoxLayout;
    inner->setContentsMargins(2, 2, 2, 2);
    inner->setSpacing(5);
    outer->addLayout(inner);

    if (checkWindowFlag(QtWindowBackButton)) {
        m_btnBack = addButton(inner, "btnBack", 0xE602, 10, QString::fromUtf8("返回"));
        m_btnBack->setVisible(false);
        connect(m_btnBack, SIGNAL(clicked()), this, SIGNAL(signalBtnBackClicked()));
    }

    m_labLogo = new QLabel(this);
    m_labLogo->setAlignment(Qt::AlignCenter);
    m_labLogo->setPixmap(QPixmap(":/resources/images/logo_title.png"));
    inner->addWidget(m_labLogo);
    if (int(m_flags) == QtWindowNoFlag)
        m_labLogo->setVisible(false);

    m_labTitle = new QLabel(this);
    m_labTitle->setObjectName("winTitle");
    inner->addWidget(m_labTitle);

    m_widgetTitle = new QWidget(this);
    inner->addWidget(m_widgetTitle, 1);

    if (checkWindowFlag(QtWindowStayOnTopButton)) {
        m_btnTop = addButton(outer, "btnTop", 0xE612, 9, QString::fromUtf8("置顶窗口"));
        m_btnTop->setCheckable(true);
        connect(m_btnTop, SIGNAL(clicked(bool)), this, SLOT(SltStayOnTopClicked(bool)));
    }
    // the skin, settings and minimise buttons share one object name so the sheets style them alike
    if (checkWindowFlag(QtWindowSkinButton))
        addButton(outer, "btnMin", 0xE762, 9, QString::fromUtf8("修改皮肤"));
    if (checkWindowFlag(QtWindowSystemButton))
        addButton(outer, "btnMin", 0xE63B, 9, QString::fromUtf8("系统设置"));
    if (checkWindowFlag(QtWindowMinButton)) {
        QToolButton *btnMin = addButton(outer, "btnMin", 0xE607, 9, QString::fromUtf8("最小化窗口"));
        connect(btnMin, SIGNAL(clicked()), this, SLOT(SltBtnMinClicked()));
    }
    if (checkWindowFlag(QtWindowMaxButton)) {
        m_btnMax = addButton(outer, nullptr, GlyphMaximise, 9, QString::fromUtf8("最大化"));
        connect(m_btnMax, SIGNAL(clicked()), this, SLOT(SltBtnMaxClicked()));
    }
    QToolButton *btnClose = addButton(outer, "btnClose", 0xE68B, 9, QString::fromUtf8("关闭"));
    connect(btnClose, SIGNAL(clicked()), this, SIGNAL(signalCloseWindow()));
}

QToolButton *QtTitleBar::addButton(QHBoxLayout *layout, const char *objectName, ushort glyph, int size,
                                   const QString &tip)
{
    QToolButton *btn = new QToolButton(this);
    if (objectName)
        btn->setObjectName(QString::fromLatin1(objectName));
    btn->setFocusPolicy(Qt::NoFocus);
    btn->setToolTip(tip);
    IconHelper::Instance()->setIcon(btn, QChar(glyph), size);
    layout->addWidget(btn);
    return btn;
}

// The bar acts on the widget it was made for; a bar created without one and put
// into a layout later acts on the widget that holds it.
QWidget *QtTitleBar::parentWindow() const
{
    return m_widgetParent ? m_widgetParent : parentWidget();
}

void QtTitleBar::setWinTitle(const QString &title)
{
    m_labTitle->setText(title);
}

void QtTitleBar::setWinLogo(const QPixmap &pixmap)
{
    if (pixmap.isNull()) {
        m_labLogo->setVisible(false);
        return;
    }
    m_labLogo->setPixmap(pixmap);
}

void QtTitleBar::setTitleLayout(QLayout *layout)
{
    m_widgetTitle->setLayout(layout);
}

void QtTitleBar::setBtnBackVisible(bool visible)
{
    if (!m_btnBack)
        return;
    m_btnBack->setVisible(visible);
    m_labLogo->setVisible(!visible);
}

bool QtTitleBar::checkWindowFlag(QtWindowFlags flags) const
{
    return (m_flags & flags) == flags;
}

void QtTitleBar::SltBtnMinClicked()
{
    if (QWidget *w = parentWindow())
        w->showMinimized();
}

// The button's glyph is the state: it shows "maximise" while the parent is normal.
void QtTitleBar::SltBtnMaxClicked()
{
    QWidget *w = parentWindow();
    const bool toMaximise = m_btnMax ? m_btnMax->text() == QChar(GlyphMaximise)
                                     : (w && !w->isMaximized());
    if (toMaximise) {
        if (w)
            w->showMaximized();
        if (m_btnMax) {
            IconHelper::Instance()->setIcon(m_btnMax, QChar(GlyphRestore), 15);
            m_btnMax->setToolTip(QString::fromUtf8("还原窗口"));
        }
    } else {
        if (w)
            w->showNormal();
        if (m_btnMax) {
            IconHelper::Instance()->setIcon(m_btnMax, QChar(GlyphMaximise), 9);
            m_btnMax->setToolTip(QString::fromUtf8("最大化窗口"));
        }
    }
}

// Stay-on-top is a toggle only; the window flags are left alone.
void QtTitleBar::SltStayOnTopClicked(bool checked)
{
    if (m_btnTop)
        m_btnTop->setChecked(checked);
}

void QtTitleBar::mousePressEvent(QMouseEvent *event)
{
    QWidget *w = parentWindow();
    if (event->button() == Qt::LeftButton && w) {
        m_bDragging = true;
        m_ptDragOffset = event->globalPos() - w->pos();
    }
    event->accept();
}

void QtTitleBar::mouseMoveEvent(QMouseEvent *event)
{
    QWidget *w = parentWindow();
    if (m_bDragging && w)
        w->move(event->globalPos() - m_ptDragOffset);
    event->accept();
}

void QtTitleBar::mouseReleaseEvent(QMouseEvent *event)
{
    m_bDragging = false;
    event->accept();
}

// Deliberately keyed on the minimise bit: dialogs with flags 7 toggle like the main
// window, message boxes with flags 1 never do.
void QtTitleBar::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && checkWindowFlag(QtWindowMinButton))
        SltBtnMaxClicked();
    event->accept();
}
