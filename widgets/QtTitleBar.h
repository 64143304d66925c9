#ifndef QTTITLEBAR_H
#define QTTITLEBAR_H

#include "QtWidgetBase.h"

#include <QPixmap>
#include <QPoint>

class QHBoxLayout;
class QLabel;
class QLayout;
class QToolButton;

// The title bar every frameless window and dialog puts on top of itself. It moves,
// minimises and maximises its parent; closing is left to the owner, which connects
// signalCloseWindow (the main window to its quit slot, dialogs to reject).
class QtTitleBar : public QtWidgetBase
{
    Q_OBJECT
public:
    // Which controls the bar creates. The close button always exists; a value of
    // exactly QtWindowNoFlag (1) also hides the logo.
    enum QtWindowFlag {
        QtWindowNoFlag = 0x01,
        QtWindowMaxButton = 0x02,
        QtWindowMinButton = 0x04,
        QtWindowStayOnTopButton = 0x08,
        QtWindowSkinButton = 0x10,
        QtWindowSystemButton = 0x20,
        QtWindowBackButton = 0x80,
    };
    Q_DECLARE_FLAGS(QtWindowFlags, QtWindowFlag)

    explicit QtTitleBar(QWidget *parent = nullptr, QtWindowFlags flags = QtWindowFlags(QFlag(0x0f)));
    // callers usually pass the plain value: 15 main window, 7 file dialog, 1 message boxes
    QtTitleBar(QWidget *parent, int flags);

    void setWinTitle(const QString &title);
    void setWinLogo(const QPixmap &pixmap);
    void setTitleLayout(QLayout *layout);
    void setBtnBackVisible(bool visible);
    bool checkWindowFlag(QtWindowFlags flags) const;
    QtWindowFlags windowFlagsOfBar() const { return m_flags; }

signals:
    void signalCloseWindow();
    void signalBtnBackClicked();

public slots:
    void SltBtnMinClicked();
    void SltBtnMaxClicked();
    void SltStayOnTopClicked(bool checked);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    void InitWidget();
    QToolButton *addButton(QHBoxLayout *layout, const char *objectName, ushort glyph, int size,
                           const QString &tip);
    QWidget *parentWindow() const;

    QLabel *m_labLogo = nullptr;
    QLabel *m_labTitle = nullptr;
    QWidget *m_widgetTitle = nullptr;
    QToolButton *m_btnBack = nullptr;
    QToolButton *m_btnTop = nullptr;
    QToolButton *m_btnMax = nullptr;
    QWidget *m_widgetParent = nullptr;
    QtWindowFlags m_flags;
    bool m_bDragging = false;
    QPoint m_ptDragOffset;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(QtTitleBar::QtWindowFlags)

#endif // QTTITLEBAR_H
