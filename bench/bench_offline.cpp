// One offline translation through the engine against the same `apertium` command run by hand from a
// shell on the same text, for a sentence and for a 10 KB text.
#include "Answer.h"
#include "translate/OfflineEngine.h"

#include <QCoreApplication>
#include <QTemporaryFile>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

using namespace quillora;

namespace
{

const QString kSentence = QStringLiteral("The weather is nice today and I want to go to the beach.");
const OfflinePair kPair{QStringLiteral("eng-spa"), QStringLiteral("en"), QStringLiteral("es")};

QString textOf(int64_t kind)
{
    if (kind == 0)
        return kSentence;
    const QString paragraph = QStringLiteral(
        "The committee met on Tuesday to discuss the new library, which will open next spring in the old "
        "railway station. Several members asked whether the building could hold enough books for the "
        "whole town, and the architect explained how the upper floor would be used for reading rooms.\n");
    QString text;
    while (text.size() + paragraph.size() <= 10 * 1024)
        text += paragraph;
    return text;
}

TranslationOutcome translated(OfflineEngine& engine, const QString& text)
{
    return answer<TranslationOutcome>([&](auto done) { engine.translate(kPair, text, done); });
}

void BM_Engine(benchmark::State& state)
{
    OfflineEngine engine;
    const QString text = textOf(state.range(0));
    for (auto _ : state) {
        const TranslationOutcome outcome = translated(engine, text);
        if (!outcome.ok())
            state.SkipWithError("apertium eng-spa did not translate");
        benchmark::DoNotOptimize(outcome.result.translation.size());
    }
}

void BM_ByHand(benchmark::State& state)
{
    QTemporaryFile input;
    if (!input.open() || input.write(textOf(state.range(0)).toUtf8()) < 0 || !input.flush()) {
        state.SkipWithError("cannot write the text");
        return;
    }
    const std::string command =
        "apertium -u eng-spa < '" + input.fileName().toStdString() + "' > /dev/null 2>&1";
    for (auto _ : state) {
        if (std::system(command.c_str()) != 0)
            state.SkipWithError("apertium eng-spa failed");
    }
}

BENCHMARK(BM_Engine)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK(BM_ByHand)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

class MedianReporter : public benchmark::ConsoleReporter
{
public:
    MedianReporter() : ConsoleReporter(OO_Tabular) {}
    std::map<std::string, double> medianMs;
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
                medianMs[run.run_name.function_name + "/" + run.run_name.args] = run.GetAdjustedRealTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }
};

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    std::vector<char*> args(argv, argv + argc);
    // Interleaved, so that a busy spell of the machine does not fall on one side only.
    std::string repetitions = "--benchmark_repetitions=5";
    std::string interleave = "--benchmark_enable_random_interleaving=true";
    args.push_back(repetitions.data());
    args.push_back(interleave.data());
    int count = int(args.size());
    benchmark::Initialize(&count, args.data());
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    for (const char* size : {"0", "1"}) {
        const auto engine = reporter.medianMs.find(std::string("BM_Engine/") + size);
        const auto hand = reporter.medianMs.find(std::string("BM_ByHand/") + size);
        if (engine == reporter.medianMs.end() || hand == reporter.medianMs.end())
            continue;
        const double over = (engine->second / hand->second - 1.0) * 100.0;
        std::printf("%s: engine %.1f ms, by hand %.1f ms, %+.1f%% (target within 10%%): %s\n",
                    size[0] == '0' ? "sentence" : "10 KB text", engine->second, hand->second, over,
                    over <= 10.0 ? "met" : "MISSED");
    }
    return 0;
}
