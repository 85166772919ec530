// What the engine adds to one translation over the bare HTTP exchange, against the stand-in service
// on loopback; and what the connectivity test costs.
#include "Answer.h"
#include "net/Connectivity.h"
#include "net/Http.h"
#include "standin/StandinService.h"
#include "translate/TranslationEngine.h"

#include <QCoreApplication>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <map>
#include <string>

using namespace quillora;
using quillora::test::StandinService;

namespace
{

StandinService* service = nullptr;

const TranslationRequest kRequest{QStringLiteral("hello world, good morning"), QString(),
                                  QStringLiteral("fr"), QStringLiteral("en")};

ServiceAddresses standinAddresses()
{
    ServiceAddresses a;
    a.service = a.api = service->baseUrl();
    a.apiClient = QStringLiteral("gtx");
    return a;
}

void BM_EngineTranslate(benchmark::State& state)
{
    TranslationEngine engine(standinAddresses());
    for (auto _ : state) {
        const TranslationOutcome outcome =
            answer<TranslationOutcome>([&](auto done) { engine.translate(kRequest, done); });
        if (!outcome.ok())
            state.SkipWithError("translation failed");
        benchmark::DoNotOptimize(outcome.result.translation.size());
    }
    service->clearRequests();
}

void BM_BareHttpPost(benchmark::State& state)
{
    HttpClient http;
    const QUrl url = standinAddresses().formUrl();
    const QByteArray body =
        buildRequestBody(kRequest.text, kRequest.interfaceCode, kRequest.sourceCode, kRequest.targetCode);
    for (auto _ : state) {
        const HttpReply reply = answer<HttpReply>([&](auto done) {
            http.post(url, body, QByteArrayLiteral("application/x-www-form-urlencoded"), done);
        });
        if (!reply.ok())
            state.SkipWithError("request failed");
        benchmark::DoNotOptimize(reply.body.size());
    }
    service->clearRequests();
}

void BM_IsInternetConnected(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(IsInternetConnected());
}

BENCHMARK(BM_EngineTranslate)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_BareHttpPost)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_IsInternetConnected)->Unit(benchmark::kMicrosecond);

// Keeps the medians so the difference can be reported after the table.
class MedianReporter : public benchmark::ConsoleReporter
{
public:
    MedianReporter() : ConsoleReporter(OO_Tabular) {}
    std::map<std::string, double> medianUs;
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
                medianUs[run.run_name.function_name] = run.GetAdjustedRealTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }
};

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    StandinService standin;
    if (!standin.listen())
        return 1;
    service = &standin;

    std::vector<char*> args(argv, argv + argc);
    std::string repetitions = "--benchmark_repetitions=9";
    args.push_back(repetitions.data());
    int count = int(args.size());
    benchmark::Initialize(&count, args.data());
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    const auto engine = reporter.medianUs.find("BM_EngineTranslate");
    const auto bare = reporter.medianUs.find("BM_BareHttpPost");
    if (engine != reporter.medianUs.end() && bare != reporter.medianUs.end()) {
        const double addedMs = (engine->second - bare->second) / 1000.0;
        std::printf("engine over bare HTTP at the median: %.3f ms (target < 1 ms): %s\n", addedMs,
                    addedMs < 1.0 ? "met" : "MISSED");
    }
    return 0;
}
