#include "QHexEdit.h"

#include <Okteta/ArrayChangeMetricsList>
#include <Okteta/Bookmark>
#include <Okteta/ByteArrayChange>
#include <Okteta/PieceTableByteArrayModel>
#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QVector>

namespace {

// Okteta paints bytes in the colours of a KDE colour scheme, not of the widget's
// palette; the application property below names the scheme file it reads. The file's
// name changes with its content, because the scheme is cached by name.
QString writeColorScheme(const QPalette &palette, const QColor &highlighting, const QColor &selection)
{
    static QTemporaryDir dir;
    auto rgb = [](const QColor &c) { return QString("%1,%2,%3").arg(c.red()).arg(c.green()).arg(c.blue()); };
    const QString text = rgb(palette.color(QPalette::Text));
    const QColor baseColor = palette.color(QPalette::Base);
    const QString base = rgb(baseColor);
    // marks are the background tinted towards this colour by a fixed, small contrast:
    // the highlighting hue at full strength, bright on a dark view and dark on a light
    // one, is what makes them show
    const int hue = qMax(highlighting.hue(), 0);
    const QColor mark = QColor::fromHsv(hue, 255, baseColor.lightness() < 128 ? 255 : 96);
    const QString scheme = QString("[Colors:View]\nBackgroundNormal=%1\nBackgroundAlternate=%1\n"
                                   "ForegroundNormal=%2\nForegroundNeutral=%3\n"
                                   "[Colors:Selection]\nBackgroundNormal=%4\nForegroundNormal=%2\n"
                                   "[ColorEffects:Inactive]\nEnable=false\nChangeSelectionColor=false\n")
                               .arg(base, text, rgb(mark), rgb(selection));
    const QString path = dir.filePath(QString("view-%1.colors").arg(qHash(scheme), 8, 16, QChar('0')));
    QFile file(path);
    if (!file.exists() && file.open(QIODevice::WriteOnly))
        file.write(scheme.toUtf8());
    return path;
}

} // namespace

QHexEdit::QHexEdit(QWidget *parent)
    : Okteta::ByteArrayColumnView(parent)
    , m_colorAddressArea(0xee, 0xee, 0xee)
    , m_colorHighlighting(0xff, 0xff, 0x99)
    , m_colorSelection(0x99, 0xc9, 0xef)
{
    setNoOfBytesPerLine(16);
    toggleOffsetColumn(true);
    setVisibleCodings(ValueAndCharCodings);
    // keys type hex digits first; Tab moves to the character column
    setActiveCoding(ValueCodingId);
    setByteTypeColored(false);
    setReadOnly(false);
    setOverwriteOnly(false);
    setOverwriteMode(true);
    setFont(QFont("Monospace", 10));
    connect(this, SIGNAL(cursorPositionChanged(Okteta::Address)), this, SLOT(SltCursorMoved(Okteta::Address)));
    setData(QByteArray());
    applyColors();
}

void QHexEdit::setData(const QByteArray &data)
{
    // a fresh model: its version history starts at the new data. The model shares the
    // array's storage, and the piece table never writes into it, so nothing is copied.
    Okteta::PieceTableByteArrayModel *old = m_ownModel;
    m_ownModel = new Okteta::PieceTableByteArrayModel(data, this);
    setModel(m_ownModel, 0, -1);
    delete old;
}

void QHexEdit::setModel(Okteta::PieceTableByteArrayModel *model, qint64 base, qint64 total)
{
    if (m_model) {
        // only its end is still of interest: the parked marks go with it
        disconnect(m_model, nullptr, this, nullptr);
        connect(m_model, SIGNAL(destroyed(QObject *)), this, SLOT(SltModelDestroyed(QObject *)));
        m_parkedEdits.insert(m_model, m_edits);
    }
    m_model = model;
    m_nBase = base;
    m_nTotal = total;
    connect(m_model, SIGNAL(contentsChanged(Okteta::ArrayChangeMetricsList)), this, SLOT(SltContentsChanged()));
    connect(m_model, SIGNAL(changesDone(QVector<Okteta::ByteArrayChange>, int, int)), this,
            SLOT(SltChangesDone(QVector<Okteta::ByteArrayChange>)));
    connect(m_model, SIGNAL(revertedToVersionIndex(int)), this, SLOT(markChangedBytes()));
    connect(m_model, SIGNAL(destroyed(QObject *)), this, SLOT(SltModelDestroyed(QObject *)), Qt::UniqueConnection);
    setByteArrayModel(m_model);
    // the offset column counts in the view's int addresses: a window beyond them
    // shows offsets from its own start
    setStartOffset(base + m_model->size() <= INT_MAX ? Okteta::Address(base) : 0);
    m_edits = m_parkedEdits.take(m_model);
    m_nVersion = m_model->versionIndex();
    setCursorPosition(0);
    m_nSize = -1;
    SltContentsChanged();
    emit currentAddressChanged(base);
}

void QHexEdit::SltModelDestroyed(QObject *model)
{
    m_parkedEdits.remove(model);
    if (model == m_model)
        m_model = nullptr;
}

QByteArray QHexEdit::data() const
{
    if (m_model->versionIndex() == 0)
        return m_model->initialData();
    QByteArray bytes(m_model->size(), Qt::Uninitialized);
    m_model->copyTo(reinterpret_cast<Okteta::Byte *>(bytes.data()), 0, bytes.size());
    return bytes;
}

void QHexEdit::undo()
{
    if (m_model->versionIndex() > 0)
        m_model->revertToVersionByIndex(m_model->versionIndex() - 1);
}

void QHexEdit::redo()
{
    if (m_model->versionIndex() < m_model->versionCount() - 1)
        m_model->revertToVersionByIndex(m_model->versionIndex() + 1);
}

void QHexEdit::setAddressAreaColor(const QColor &color)
{
    m_colorAddressArea = color;
    applyColors();
}

void QHexEdit::setHighlightingColor(const QColor &color)
{
    m_colorHighlighting = color;
    applyColors();
}

void QHexEdit::setSelectionColor(const QColor &color)
{
    m_colorSelection = color;
    applyColors();
}

void QHexEdit::changeEvent(QEvent *event)
{
    Okteta::ByteArrayColumnView::changeEvent(event);
    // a style sheet sets the whole palette after the properties, the address column's
    // Button role included
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        applyColors();
}

void QHexEdit::applyColors()
{
    // the address column is painted in the palette's Button role
    if (palette().color(QPalette::Button) != m_colorAddressArea) {
        QPalette pal = palette();
        pal.setColor(QPalette::Button, m_colorAddressArea);
        setPalette(pal);
    }
    const QString path = writeColorScheme(palette(), m_colorHighlighting, m_colorSelection);
    if (qApp->property("KDE_COLOR_SCHEME_PATH").toString() != path) {
        qApp->setProperty("KDE_COLOR_SCHEME_PATH", path);
        viewport()->update();
    }
}

void QHexEdit::SltCursorMoved(Okteta::Address index)
{
    emit currentAddressChanged(m_nBase + index);
}

void QHexEdit::SltContentsChanged()
{
    const qint64 size = m_nTotal >= 0 ? m_nTotal : m_model->size();
    if (size != m_nSize) {
        m_nSize = size;
        emit currentSizeChanged(m_nSize);
    }
}

void QHexEdit::SltChangesDone(const QVector<Okteta::ByteArrayChange> &changes)
{
    // a new version drops the undone ones it replaces; a digit typed into the byte
    // being edited belongs to the version already there (the model's own version
    // arguments of this signal do not tell these apart)
    const int version = m_model->versionIndex();
    if (version != m_nVersion)
        m_edits.resize(qMin(m_nVersion, m_edits.size()));
    m_edits.resize(version);
    if (version > 0)
        for (const Okteta::ByteArrayChange &change : changes) {
            const Okteta::ArrayChangeMetrics &m = change.metrics();
            if (m.type() == Okteta::ArrayChangeMetrics::Replacement && m.insertLength() > 0)
                m_edits[version - 1].append(qMakePair(m.offset(), m.insertLength()));
        }
    markChangedBytes();
}

void QHexEdit::markChangedBytes()
{
    // the bytes written by the edits up to the current version carry a mark, drawn in
    // the highlighting colour; undo takes the marks of the undone edits away
    m_nVersion = m_model->versionIndex();
    QVector<Okteta::Bookmark> marks;
    const int applied = qMin(m_model->versionIndex(), m_edits.size());
    for (int v = 0; v < applied; ++v)
        for (const auto &range : m_edits.at(v))
            for (Okteta::Address a = range.first; a < range.first + range.second && a < m_model->size(); ++a)
                marks.append(Okteta::Bookmark(a));
    if (m_model->bookmarksCount() > 0)
        m_model->removeAllBookmarks();
    if (!marks.isEmpty())
        m_model->addBookmarks(marks);
}
