#include "batch/BatchDispatcher.h"
#include "batch/CmdLine.h"
#include "batch/ExCmdId.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

// Parsing and command look-up of one typical line.
static void BM_ParseLine(benchmark::State &state)
{
    const QString text = QStringLiteral("load_I1_files_of_pattern NEW \"/data/beam time/run 1/\" *.tif # first");
    for (auto _ : state) {
        CmdLine c = CmdLine::parse(text);
        benchmark::DoNotOptimize(exCmdId(c.cmd));
        benchmark::DoNotOptimize(c);
    }
}
BENCHMARK(BM_ParseLine);

// A meta-only loop: one :for, then an :echo and a :next per pass, with the
// variable table and loop substitution at work. Items are batch lines.
static void BM_MetaLoop(benchmark::State &state)
{
    const QtMessageHandler previous =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const int passes = int(state.range(0));
    const QStringList batch{":let a A", QStringLiteral(":for i $i$ 1 %1").arg(passes), ":echo $a$-$i$", ":next i",
                            ":end"};
    for (auto _ : state) {
        BatchDispatcher d{QStringLiteral("/data")};
        bool ended = false;
        QObject::connect(&d, &BatchDispatcher::Log, [&](const QString &m) { ended = m == QLatin1String("end"); });
        d.doDispatchCmds(batch);
        while (!ended)
            QCoreApplication::processEvents();
    }
    state.SetItemsProcessed(state.iterations() * (2 * passes + 3));
    qInstallMessageHandler(previous);
}
BENCHMARK(BM_MetaLoop)->Arg(10000);

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
