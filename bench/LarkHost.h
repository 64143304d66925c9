#ifndef LARKHOST_H
#define LARKHOST_H

// What the whole-program hosts of the benchmarks share: the program's own start-up
// before its window, and the event-loop stall meter the scripts read.
#include "MyApp.h"
#include "UiSkin.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFont>
#include <QObject>
#include <QTimer>
#include <QTranslator>

#include <cstdio>

namespace LarkHost {

// font, Qt's Chinese texts and the settings, as main() sets them
inline void startLikeTheProgram(QTranslator &translator)
{
    QApplication::setFont(QFont(UiSkin::m_strAppFontNormal, 9));
    translator.load(":/resources/qm/qt_zh_CN.qm");
    QApplication::installTranslator(&translator);
    MyApp::InitApp();
}

// Prints "stall MS" each second: the longest the event loop went without serving a
// 10 ms heartbeat, beyond those 10 ms.
class StallMeter
{
public:
    void start()
    {
        QObject::connect(&m_heartbeat, &QTimer::timeout, [this] {
            m_longest = qMax(m_longest, m_sinceBeat.restart() - 10);
            if (m_sinceReport.elapsed() >= 1000) {
                std::printf("stall %lld\n", static_cast<long long>(m_longest));
                std::fflush(stdout);
                m_longest = 0;
                m_sinceReport.restart();
            }
        });
        m_heartbeat.setTimerType(Qt::PreciseTimer);
        m_sinceBeat.start();
        m_sinceReport.start();
        m_heartbeat.start(10);
    }

private:
    QTimer m_heartbeat;
    QElapsedTimer m_sinceBeat, m_sinceReport;
    qint64 m_longest = 0;
};

} // namespace LarkHost

#endif // LARKHOST_H
