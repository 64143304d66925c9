#include "IconHelper.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QDebug>
#include <QFontDatabase>
#include <QLabel>
#include <QMutex>
#include <QMutexLocker>
#include <QPainter>

IconHelper *IconHelper::self = nullptr;

IconHelper *IconHelper::Instance()
{
    if (!self) {
        static QMutex mutex;
        QMutexLocker locker(&mutex);
        if (!self)
            self = new IconHelper(QCoreApplication::instance());
    }
    return self;
}

IconHelper::IconHelper(QObject *parent)
    : QObject(parent)
{
    const int fontId = QFontDatabase::addApplicationFont(":/resources/fonts/iconfont.ttf");
    const QStringList families = QFontDatabase::applicationFontFamilies(fontId);
    if (families.isEmpty())
        qDebug() << "load iconfont.ttf error";
    else
        iconFontObj = QFont(families.first());
}

void IconHelper::setIcon(QLabel *lab, QChar c, int size)
{
    QFont font = iconFontObj;
    font.setPixelSize(size);
    lab->setFont(font);
    lab->setText(c);
}

void IconHelper::setIcon(QAbstractButton *btn, QChar c, int size)
{
    QFont font = iconFontObj;
    font.setPointSize(size);
    btn->setFont(font);
    btn->setText(c);
}

QPixmap IconHelper::getPixmap(const QString &color, QChar c, int fontSize, int width, int height)
{
    QPixmap pix(width, height);
    pix.fill(Qt::transparent);
    QPainter painter(&pix);
    drawPixmap(&painter, color, c, fontSize, pix.rect());
    return pix;
}

void IconHelper::drawPixmap(QPainter *painter, const QString &color, QChar c, int fontSize, const QRect &rect)
{
    painter->save();
    painter->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter->setPen(QColor(color));
    painter->setBrush(QColor(color));
    QFont font = iconFontObj;
    font.setPixelSize(fontSize);
    painter->setFont(font);
    painter->drawText(rect, Qt::AlignCenter, c);
    painter->restore();
}
