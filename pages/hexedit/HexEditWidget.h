#ifndef HEXEDITWIDGET_H
#define HEXEDITWIDGET_H

#include "QtWidgetBase.h"

class HexDocument;
class HexFindBar;
class QButtonGroup;
class QHexEdit;
class QLabel;
class QToolButton;

// The binary file editor page: a hex editor under a row of tool buttons (open, a
// button without action, undo, redo). Files come in by the open dialog or by dropping
// them on the page; edits stay in memory until saved (Ctrl+S, Ctrl+Shift+S). The page
// also finds bytes or text (Ctrl+F) and goes to an offset (Ctrl+G), and shows the
// file's name with a star while edits are unsaved.
class HexEditWidget : public QtWidgetBase
{
    Q_OBJECT
public:
    explicit HexEditWidget(QWidget *parent = nullptr);

    QStringList getCounts() override;
    void clearCounts() override;

    void loadFile(const QString &path);
    QHexEdit *hexEdit() const { return m_hexEdit; }
    HexDocument *document() const { return m_document; }
    HexFindBar *findBar() const { return m_findBar; }
    // writes the content to path; false, after telling the user why, leaves the file
    // on disk and the edits as they were
    bool saveFile(const QString &path);

public slots:
    void setSize(qint64 _size);
    void setAddress(qint64 _addr);
    void sltToolBtnsClicked(int index);
    void SltSave();
    void SltSaveAs();
    void SltShowFind();
    void SltShowGoto();
    void SltFind(bool backwards);
    void SltGoto(const QString &text);

private slots:
    void SltReleaseView();
    void SltUpdateFileLabel();

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void InitWidget();
    // true when there are no unsaved edits or the user gives them up
    bool askDiscardEdits();
    QString fileName() const;
    qint64 cursor() const;
    void select(qint64 offset, int length);
    void showWindow(int window);

    QHexEdit *m_hexEdit = nullptr;
    qint64 m_nAddress = 0;
    qint64 m_nSize = 0;
    QToolButton *m_toolBtns[4] = {};
    QButtonGroup *m_btnGroup = nullptr;
    QLabel *m_labFile = nullptr;
    HexDocument *m_document = nullptr;
    HexFindBar *m_findBar = nullptr;
};

#endif // HEXEDITWIDGET_H
