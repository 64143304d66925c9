#ifndef NOFOCUSDELEGATE_H
#define NOFOCUSDELEGATE_H

#include <QStyledItemDelegate>

// Paints items without the dotted focus rectangle, which looks like a stray selection
// in the file lists.
class NoFocusDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit NoFocusDelegate(QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};

#endif // NOFOCUSDELEGATE_H
