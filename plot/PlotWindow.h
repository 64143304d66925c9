#ifndef PLOTWINDOW_H
#define PLOTWINDOW_H

#include "PlotBatch.h"
#include "PlotFrameParser.h"
#include "PlotSampleStore.h"
#include "PlotTextParser.h"
#include "QtMainWindow.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QVector>

class LinkTap;
class QCheckBox;
class QComboBox;
class QCustomPlot;
class QDoubleSpinBox;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QMouseEvent;
class QPushButton;
class QTimer;
class QtTitleBar;

// A live plot of what one page's link receives, beside the page: text lines of numbers
// or binary frames a user described. Everything received is recorded, also while the
// plot is paused, and can be exported as one CSV table. The plot is redrawn by a
// short single-shot timer started by arriving data, so an idle link costs nothing;
// each redraw takes from the recording at most two points a pixel column of the range
// shown, so it costs the same however much is recorded.
class PlotWindow : public QtMainWindow
{
    Q_OBJECT
public:
    enum Mode { TextLines, BinaryFrames };
    static constexpr int RedrawMs = 25;
    static constexpr int MaxRedrawMs = 250;
    static constexpr int MaxParseBytes = 128 * 1024; // parsed in one turn of the event loop
    static constexpr double MaxSpread = 0.25;

    PlotWindow(LinkTap *tap, const QString &title, QWidget *parent = nullptr);
    ~PlotWindow() override;

    // the one window of that tap, made on first use and raised after
    static PlotWindow *showFor(LinkTap *tap, const QString &title);
    // that window while it is shown, else nullptr
    static PlotWindow *shownFor(LinkTap *tap);

    void setMode(Mode mode);
    Mode mode() const { return m_mode; }
    void setDefinition(const PlotFrameDefinition &definition);
    const PlotFrameDefinition &definition() const { return m_frameParser.definition(); }
    const PlotSampleStore &store() const { return m_store; }
    const PlotTextParser &textParser() const { return m_textParser; }
    const PlotFrameParser &frameParser() const { return m_frameParser; }
    bool isPaused() const;
    // redraws so far: the plot work follows the data and stops with it
    qint64 redraws() const { return m_nRedraws; }
    // a redraw or received bytes still to come
    bool redrawPending() const;
    QCustomPlot *plot() const { return m_plot; }

    // the work after the file name is chosen
    bool exportCsv(const QString &path, QString *error, QString *written = nullptr) const;
    bool loadDefinition(const QString &path, QString *error);

    static QString definitionFolder();

public slots:
    void SltReceived(const QByteArray &bytes);
    void SltClear();
    // one value of a named channel from outside the link (a script's plot), recorded
    // as a record of its own at the time it comes
    void SltPlotValue(const QString &name, double value);

private slots:
    void SltRedraw();
    void SltParsePending();
    void SltModeChanged(int index);
    void SltSeparatorChanged(int index);
    void SltLoadDefinition();
    void SltEditDefinition();
    void SltPauseToggled(bool paused);
    void SltExport();
    void SltYModeChanged();
    void SltWindowChanged();
    void SltChannelChanged(QListWidgetItem *item);
    void SltChannelColor(QListWidgetItem *item);
    void SltPlotMouseMove(QMouseEvent *event);
    void SltXRangeChanged();
    void SltAfterReplot();
    void SltTapGone();

private:
    void InitWidget();
    void parse(const QByteArray &bytes);
    void syncGraphs();
    void rebuildGraphs();
    void refreshView(bool queued = false);
    void updateStats();
    void applyXAxis();
    void applyYAxis();
    void restartRecording();
    // the records of m_batch into the store, now
    void recordBatch();
    static QString savedDefinitionPath();

    QPointer<LinkTap> m_tap;
    Mode m_mode = TextLines;
    int m_nCodecIndex;
    PlotTextParser m_textParser;
    PlotFrameParser m_frameParser;
    PlotBatch m_batch;
    QByteArray m_baPending; // received, not parsed yet, from m_nPendingPos on
    int m_nPendingPos = 0;
    PlotSampleStore m_store;
    QElapsedTimer m_clock;
    QElapsedTimer m_redrawClock; // from a redraw's start to its painting
    qint64 m_nShownRows = 0; // absolute rows the graphs may show: the plot stands still while paused
    bool m_bFollowing = false; // the x range is being moved by the window, not the user
    qint64 m_nRedraws = 0;
    double m_lastTime = 0;

    QtTitleBar *m_titleBar = nullptr;
    QComboBox *m_cbxMode = nullptr;
    QComboBox *m_cbxSeparator = nullptr;
    QPushButton *m_btnLoadDef = nullptr;
    QPushButton *m_btnEditDef = nullptr;
    QLabel *m_labDef = nullptr;
    QComboBox *m_cbxWindow = nullptr;
    QPushButton *m_btnPause = nullptr;
    QCheckBox *m_chkAutoY = nullptr;
    QDoubleSpinBox *m_spinYMin = nullptr;
    QDoubleSpinBox *m_spinYMax = nullptr;
    QListWidget *m_listChannels = nullptr;
    QCustomPlot *m_plot = nullptr;
    QLabel *m_labCursor = nullptr;
    QLabel *m_labStats = nullptr;
    QTimer *m_timerRedraw = nullptr;
    QTimer *m_timerParse = nullptr;
};

#endif // PLOTWINDOW_H
