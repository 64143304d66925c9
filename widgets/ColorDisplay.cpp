#include "ColorDisplay.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

ColorDisplay::ColorDisplay(QWidget *parent)
    : QWidget(parent)
    , m_color(Qt::white)
    , m_labColor(nullptr)
    , m_edtHex(nullptr)
{
    InitWidget();
}

QSize ColorDisplay::sizeHint() const
{
    return QSize(260, 100);
}

void ColorDisplay::InitWidget()
{
    m_labColor = new QLabel(this);
    m_labColor->setFixedSize(82, 62);
    m_edtHex = new QLineEdit(this);
    m_edtHex->setFixedSize(82, 26);
    connect(m_edtHex, SIGNAL(returnPressed()), this, SLOT(SltChangeColor()));

    QVBoxLayout *leftLayout = new QVBoxLayout();
    leftLayout->setSpacing(10);
    leftLayout->addWidget(m_labColor);
    leftLayout->addWidget(m_edtHex);

    // two columns of three rows; "绿(R):" carries the red mnemonic as it always has
    const char *labels[] = {"色调(E):", "饱和度(S):", "亮度(&L):", "红(R):", "绿(R):", "蓝(B):"};
    QGridLayout *numberLayout = new QGridLayout();
    for (int i = 0; i < 6; ++i) {
        QLineEdit *edit = new QLineEdit("90", this);
        edit->setReadOnly(true);
        edit->setFixedSize(30, 26);
        edit->setAlignment(Qt::AlignCenter);
        QLabel *label = new QLabel(QString::fromUtf8(labels[i]), this);
        label->setBuddy(edit);
        numberLayout->addWidget(label, i % 3, (i / 3) * 2);
        numberLayout->addWidget(edit, i % 3, (i / 3) * 2 + 1);
        m_edtNumbers.append(edit);
    }

    // the field beside it takes the spare height; the read-out keeps its own
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    QHBoxLayout *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(leftLayout);
    layout->addLayout(numberLayout);
}

QList<int> ColorDisplay::colorNumbers(const QColor &color)
{
    return {color.hslHue(), color.hslSaturation(), color.lightness(), color.red(), color.green(), color.blue()};
}

void ColorDisplay::SltDisplayColor(const QColor &color)
{
    m_color = color;
    m_labColor->setStyleSheet(QString("QLabel{background-color: %1;}").arg(color.name()));
    m_edtHex->setText(color.name().toUpper());
    const QList<int> numbers = colorNumbers(color);
    for (int i = 0; i < numbers.size(); ++i)
        m_edtNumbers.at(i)->setText(QString::number(numbers.at(i)));
}

// a text that names no colour is left in the edit and changes nothing
void ColorDisplay::SltChangeColor()
{
    const QColor color(m_edtHex->text());
    if (color.isValid())
        SltDisplayColor(color);
}
