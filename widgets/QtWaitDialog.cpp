#include "QtWaitDialog.h"
#include "WaitingSpinnerWidget.h"
#include "UiSkin.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMutex>
#include <QMutexLocker>
#include <QTimer>

QtWaitDialog *QtWaitDialog::self = nullptr;

QtWaitDialog *QtWaitDialog::Instance()
{
    if (!self) {
        static QMutex mutex;
        QMutexLocker locker(&mutex);
        if (!self)
            self = new QtWaitDialog();
    }
    return self;
}

QtWaitDialog::QtWaitDialog(QWidget *parent)
    : QDialog(parent)
    , m_spinner(nullptr)
    , m_labText(nullptr)
    , m_parentWidget(nullptr)
{
    setWindowFlags(Qt::Tool | Qt::FramelessWindowHint);
    setWindowModality(Qt::ApplicationModal);
    setWindowOpacity(0.9);
    setFixedSize(300, 100);
    InitWidget();
}

QtWaitDialog::~QtWaitDialog()
{
    if (self == this)
        self = nullptr;
}

void QtWaitDialog::InitWidget()
{
    QHBoxLayout *layout = new QHBoxLayout(this);
    layout->setContentsMargins(10, 10, 10, 10);
    layout->setSpacing(0);

    QWidget *widgetSpinner = new QWidget(this);
    widgetSpinner->setMinimumWidth(100);
    m_spinner = new WaitingSpinnerWidget(widgetSpinner, true, true);
    m_spinner->setRoundness(70.0);
    m_spinner->setMinimumTrailOpacity(15.0);
    m_spinner->setTrailFadePercentage(70.0);
    m_spinner->setNumberOfLines(17);
    m_spinner->setLineLength(13);
    m_spinner->setLineWidth(4);
    m_spinner->setInnerRadius(13);
    m_spinner->setRevolutionsPerSecond(1.0);

    m_labText = new QLabel(this);
    m_labText->setWordWrap(true);

    layout->addWidget(widgetSpinner);
    layout->addWidget(m_labText, 1);
}

void QtWaitDialog::SetParentWidget(QWidget *parent)
{
    if (parent)
        m_parentWidget = parent;
}

QString QtWaitDialog::text() const
{
    return m_labText->text();
}

void QtWaitDialog::ShowWaitMessage(const QString &text, int msec, bool modal)
{
    m_labText->setText(text);
    m_spinner->setColor(QColor(UiSkin::m_strHighLightClr));
    m_spinner->start();

    if (m_parentWidget) {
        move(m_parentWidget->x() + (m_parentWidget->width() - width()) / 2,
             m_parentWidget->y() + (m_parentWidget->height() - height()) / 2);
    }

    if (msec > 100)
        QTimer::singleShot(msec, this, SLOT(Stop()));

    if (modal)
        exec();
    else
        show();
}

void QtWaitDialog::Stop()
{
    m_spinner->stop();
    hide();
}
