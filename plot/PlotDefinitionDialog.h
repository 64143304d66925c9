#ifndef PLOTDEFINITIONDIALOG_H
#define PLOTDEFINITIONDIALOG_H

#include "PlotFrameDefinition.h"

#include <QDialog>

class QLabel;
class QPlainTextEdit;

// Edits a frame definition as its JSON text. "确定" only closes the dialog when the text
// is a usable definition; otherwise the reason stands under the text and nothing typed
// is lost. "表单编辑…" opens the same definition as a form.
class PlotDefinitionDialog : public QDialog
{
    Q_OBJECT
public:
    PlotDefinitionDialog(const PlotFrameDefinition &definition, QWidget *parent = nullptr);
    const PlotFrameDefinition &definition() const { return m_definition; }
    // the text checked; false leaves the reason shown
    bool check();

public slots:
    void accept() override;

private slots:
    void SltSaveAs();
    void SltEditAsForm();

private:
    PlotFrameDefinition m_definition;
    QPlainTextEdit *m_edtJson;
    QLabel *m_labError;
};

#endif // PLOTDEFINITIONDIALOG_H
