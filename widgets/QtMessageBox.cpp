#include "QtMessageBox.h"
#include "QtTitleBar.h"
#include "IconHelper.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
// Look of each box type: icon colour, glyph, font size, square pixmap size, OK text.
struct BoxLook {
    const char *color;
    ushort glyph;
    int fontSize;
    int pixmapSize;
    const char *okText;
};

const BoxLook s_boxLooks[] = {
    {"#34c388", 0xE614, 44, 50, "确定"}, // information
    {"#f86934", 0xE622, 44, 50, "确定"}, // warning
    {"#f86934", 0xE609, 44, 50, "确定"}, // question
    {"#34c388", 0xE614, 44, 50, "确定"}, // plain message
    {"#34c388", 0xE6AE, 50, 60, "继续"}, // remind
    {"#f86934", 0xE614, 50, 60, "继续"}, // delete confirmation
};

const BoxLook &lookOf(int type)
{
    if (type < 0 || type > QtMessageBox::DeleteConfirm)
        type = QtMessageBox::Infomation;
    return s_boxLooks[type];
}
} // namespace

QtMessageBox::QtMessageBox(QWidget *parent, MessboxType type)
    : QDialog(parent)
    , m_type(type)
    , m_titleBar(nullptr)
    , m_labIcon(nullptr)
    , m_labText(nullptr)
{
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName("QtMessageBox");
    InitWidget();

    if (m_type == DeleteConfirm) {
        setMinimumWidth(400);
        m_labText->setTextFormat(Qt::RichText);
    }
}

QSize QtMessageBox::sizeHint() const
{
    return QSize(285, 157);
}

void QtMessageBox::InitWidget()
{
    m_titleBar = new QtTitleBar(this, QtTitleBar::QtWindowNoFlag);
    m_titleBar->setObjectName("msgBoxTitle");
    m_titleBar->setWinTitle("提示");
    m_titleBar->setWinLogo(QPixmap());
    connect(m_titleBar, SIGNAL(signalCloseWindow()), this, SLOT(reject()));

    m_labIcon = new QLabel(this);
    m_labIcon->setObjectName("labMsgIcon");
    m_labIcon->setAlignment(Qt::AlignCenter);

    m_labText = new QLabel(this);
    m_labText->setObjectName("labMsgText");
    m_labText->setWordWrap(true);
    m_labText->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);

    QHBoxLayout *contentLayout = new QHBoxLayout();
    contentLayout->setContentsMargins(10, 10, 10, 10);
    contentLayout->setSpacing(10);
    contentLayout->addWidget(m_labIcon, 0, Qt::AlignCenter);
    contentLayout->addWidget(m_labText, 1);

    QWidget *widgetButtons = new QWidget(this);
    widgetButtons->setFixedHeight(35);
    widgetButtons->setStyleSheet("QWidget {background-color: #e6e6e6;}");

    QPushButton *btnOk = new QPushButton(QString::fromUtf8(lookOf(m_type).okText), widgetButtons);
    btnOk->setObjectName("btnMsgOk");
    btnOk->setFocusPolicy(Qt::NoFocus);
    QPushButton *btnCancel = new QPushButton("取消", widgetButtons);
    btnCancel->setObjectName("btnMsgCancel");
    btnCancel->setFocusPolicy(Qt::NoFocus);

    QHBoxLayout *buttonLayout = new QHBoxLayout(widgetButtons);
    buttonLayout->setContentsMargins(0, 0, 0, 0);
    buttonLayout->setSpacing(20);
    buttonLayout->addStretch(1);
    buttonLayout->addWidget(btnOk);
    buttonLayout->addWidget(btnCancel);
    buttonLayout->addStretch(1);

    connect(btnOk, SIGNAL(clicked()), this, SLOT(accept()));
    connect(btnCancel, SIGNAL(clicked()), this, SLOT(reject()));

    QVBoxLayout *layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setSpacing(0);
    layout->addWidget(m_titleBar);
    layout->addLayout(contentLayout, 1);
    layout->addWidget(widgetButtons);
}

void QtMessageBox::setMessage(const QString &text, const QString &title)
{
    m_titleBar->setWinTitle(title);
    m_labText->setText(text);

    const BoxLook &look = lookOf(m_type);
    m_labIcon->setPixmap(IconHelper::Instance()->getPixmap(look.color, QChar(look.glyph), look.fontSize,
                                                           look.pixmapSize, look.pixmapSize));
}

void QtMessageBox::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Space:
        reject();
        break;
    default:
        QDialog::keyPressEvent(event);
        break;
    }
}

int QtMessageBox::showBox(MessboxType type, const QString &text, const QString &title)
{
    QtMessageBox *box = new QtMessageBox(nullptr, type);
    box->setMessage(text, title);
    return box->exec();
}

int QtMessageBox::infomation(const QString &text, const QString &title)
{
    return showBox(Infomation, text, title);
}

int QtMessageBox::warning(const QString &text, const QString &title)
{
    return showBox(Warning, text, title);
}

int QtMessageBox::question(const QString &text, const QString &title)
{
    return showBox(Question, text, title);
}

int QtMessageBox::remind(const QString &text, const QString &title)
{
    return showBox(Remind, text, title);
}

int QtMessageBox::deleteConfirm(const QString &text, const QString &title)
{
    return showBox(DeleteConfirm, text, title);
}
