#ifndef PLOTDEFINITIONFORMDIALOG_H
#define PLOTDEFINITIONFORMDIALOG_H

#include "PlotDefinitionForm.h"

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QSpinBox;
class QTableWidget;

// A frame definition as a form: markers, length, check and the channel table. Every
// change is read at once: the definition's own reason stands under the form while the
// values are not a usable definition, otherwise a frame built from them. "确定" closes
// only on a usable definition; nothing typed is lost either way.
class PlotDefinitionFormDialog : public QDialog
{
    Q_OBJECT
public:
    PlotDefinitionFormDialog(const PlotFrameDefinition &definition, QWidget *parent = nullptr);
    const PlotFrameDefinition &definition() const { return m_definition; }
    PlotDefinitionForm form() const;
    void setForm(const PlotDefinitionForm &form);

public slots:
    void accept() override;

private slots:
    void SltChanged();
    void SltAddChannel();
    void SltRemoveChannel();
    void SltMoveUp();
    void SltMoveDown();

private:
    void InitWidget();
    void moveChannel(int step);
    void setChannelRow(int row, const PlotDefinitionForm::ChannelRow &channel);
    QComboBox *choice(const QStringList &items);
    QSpinBox *spin(int min, int max);
    bool check();

    PlotFrameDefinition m_definition;
    bool m_bFilling = false; // the form is being filled: its signals are not edits
    QLineEdit *m_edtName = nullptr;
    QLineEdit *m_edtStart = nullptr;
    QLineEdit *m_edtEnd = nullptr;
    QComboBox *m_cbxLengthMode = nullptr;
    QSpinBox *m_spinFixedLength = nullptr;
    QSpinBox *m_spinLengthOffset = nullptr;
    QComboBox *m_cbxLengthSize = nullptr;
    QComboBox *m_cbxLengthEndian = nullptr;
    QComboBox *m_cbxLengthCounts = nullptr;
    QSpinBox *m_spinMaxLength = nullptr;
    QComboBox *m_cbxChecksum = nullptr;
    QSpinBox *m_spinCheckFrom = nullptr;
    QSpinBox *m_spinCheckAt = nullptr;
    QComboBox *m_cbxCheckEndian = nullptr;
    QTableWidget *m_tabChannels = nullptr;
    QLabel *m_labError = nullptr;
    QLabel *m_labPreview = nullptr;
};

#endif // PLOTDEFINITIONFORMDIALOG_H
