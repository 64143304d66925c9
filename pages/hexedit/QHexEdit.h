#ifndef QHEXEDIT_H
#define QHEXEDIT_H

#include <Okteta/ByteArrayColumnView>
#include <QByteArray>
#include <QColor>
#include <QHash>
#include <QPair>
#include <QVector>

namespace Okteta {
class ByteArrayChange;
class PieceTableByteArrayModel;
}

// Hex view and editor: Okteta's column view over a piece table of the loaded bytes.
// The piece table keeps the loaded bytes untouched and stores edits beside them, so a
// large file is held once, and every edit is a version that undo and redo step through.
// Colours come from the style sheet: background and colour as usual, the address
// column, changed bytes and the selection through the three colour properties.
class QHexEdit : public Okteta::ByteArrayColumnView
{
    Q_OBJECT
    Q_PROPERTY(QColor addressAreaColor READ addressAreaColor WRITE setAddressAreaColor)
    Q_PROPERTY(QColor highlightingColor READ highlightingColor WRITE setHighlightingColor)
    Q_PROPERTY(QColor selectionColor READ selectionColor WRITE setSelectionColor)
public:
    explicit QHexEdit(QWidget *parent = nullptr);

    // replaces the content and forgets every edit: undo cannot go behind new data
    void setData(const QByteArray &data);
    QByteArray data() const;
    // shows a model owned elsewhere: a window of total bytes (-1: the model is the
    // whole content) that starts at base. Addresses and the size go out counted in
    // the whole content; edits stay in the model and their marks come back with it.
    void setModel(Okteta::PieceTableByteArrayModel *model, qint64 base, qint64 total);
    Okteta::PieceTableByteArrayModel *model() const { return m_model; }
    qint64 base() const { return m_nBase; }

    QColor addressAreaColor() const { return m_colorAddressArea; }
    void setAddressAreaColor(const QColor &color);
    QColor highlightingColor() const { return m_colorHighlighting; }
    void setHighlightingColor(const QColor &color);
    QColor selectionColor() const { return m_colorSelection; }
    void setSelectionColor(const QColor &color);

public slots:
    void undo();
    void redo();

signals:
    void currentAddressChanged(qint64 address);
    void currentSizeChanged(qint64 size);

protected:
    void changeEvent(QEvent *event) override;

private slots:
    void SltCursorMoved(Okteta::Address index);
    void SltContentsChanged();
    void SltChangesDone(const QVector<Okteta::ByteArrayChange> &changes);
    void markChangedBytes();
    void SltModelDestroyed(QObject *model);

private:
    void applyColors();

    Okteta::PieceTableByteArrayModel *m_model = nullptr;
    // the model setData made; other models belong to whoever passed them in
    Okteta::PieceTableByteArrayModel *m_ownModel = nullptr;
    qint64 m_nBase = 0;
    qint64 m_nTotal = -1;
    // the change marks of models not shown, for when they are shown again
    QHash<QObject *, QVector<QVector<QPair<int, int>>>> m_parkedEdits;
    qint64 m_nSize = -1;
    // per version since the last setData: the byte ranges (offset, length) it wrote
    QVector<QVector<QPair<int, int>>> m_edits;
    // the version the marks were last drawn for
    int m_nVersion = 0;
    QColor m_colorAddressArea;
    QColor m_colorHighlighting;
    QColor m_colorSelection;
};

#endif // QHEXEDIT_H
