#include <benchmark/benchmark.h>

#include <QCoreApplication>

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("KORVE_TRACE"))
        qputenv("KORVE_TRACE", "0"); // here and in the processes at the other end
    const QCoreApplication application(argc, argv); // whose event loop the remote ones run
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
