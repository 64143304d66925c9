#ifndef LARKBENCH_H
#define LARKBENCH_H

// The main() of every benchmark executable: Google Benchmark run inside a Qt
// application, widgets on the offscreen platform unless the caller chose one.
#include <QGuiApplication>
#include <benchmark/benchmark.h>

#include <type_traits>

namespace LarkBench {

template <class App>
int run(int &argc, char **argv)
{
    if (std::is_base_of<QGuiApplication, App>::value && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    App app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

} // namespace LarkBench

#endif // LARKBENCH_H
