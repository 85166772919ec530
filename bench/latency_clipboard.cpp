// How long a copy in another program takes to reach the translation service: xclip (X11) or wl-copy
// (Wayland) is started with a new text and the clock stops when the stand-in service receives the
// request. Run it inside tests/xsession.sh or tests/waylandsession.sh; the rows carry the platform's
// name. A second figure isolates the clipboard notice alone.
#include "desktop/ModmonClip.h"
#include "x11/ClipboardDesk.h"

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QTest>
#include <algorithm>
#include <benchmark/benchmark.h>

using namespace quillora;
using quillora::test::ClipboardDesk;
using quillora::test::OtherPrograms;
using quillora::test::StandinService;

namespace
{

constexpr int kCopies = 20;
int copyNumber = 0;

QByteArray nextText()
{
    return QStringLiteral("hello %1").arg(++copyNumber).toUtf8();
}

template <bool Wayland> void BM_CopyToServiceRequest(benchmark::State& state)
{
    ClipboardDesk desk({});
    OtherPrograms copier(Wayland);
    QElapsedTimer clock;
    qint64 seenNs = -1;
    QObject::connect(&desk.service(), &StandinService::requestReceived, &desk.service(),
                     [&] { seenNs = clock.nsecsElapsed(); });
    for (auto _ : state) {
        const int before = desk.translationRequests();
        seenNs = -1;
        clock.start();
        copier.copy(nextText());
        // The request is answered inside the window's own loop; wait until the translation ends.
        for (int waited = 0; desk.translationRequests() == before || desk.window().isTranslating();
             ++waited) {
            if (waited > 1000) {
                state.SkipWithError("no request within 5 s");
                return;
            }
            QTest::qWait(5);
        }
        state.SetIterationTime(double(seenNs) / 1e9);
    }
}

template <bool Wayland> void BM_CopyToClipboardNotice(benchmark::State& state)
{
    ClipboardMonitor monitor(QGuiApplication::clipboard());
    monitor.setMonitoring(true);
    OtherPrograms copier(Wayland);
    QElapsedTimer clock;
    qint64 seenNs = -1;
    QObject::connect(&monitor, &ClipboardMonitor::textCopied, &monitor,
                     [&] { seenNs = clock.nsecsElapsed(); });
    for (auto _ : state) {
        seenNs = -1;
        clock.start();
        copier.copy(nextText());
        for (int waited = 0; seenNs < 0; ++waited) {
            if (waited > 1000) {
                state.SkipWithError("no notice within 5 s");
                return;
            }
            QTest::qWait(5);
        }
        state.SetIterationTime(double(seenNs) / 1e9);
    }
}

double minimum(const std::vector<double>& v)
{
    return *std::min_element(v.begin(), v.end());
}

double maximum(const std::vector<double>& v)
{
    return *std::max_element(v.begin(), v.end());
}

} // namespace

// One copy per run, twenty runs: the spread matters as much as the median.
void perCopy(benchmark::internal::Benchmark* b)
{
    b->UseManualTime()
        ->Iterations(1)
        ->Repetitions(kCopies)
        ->ReportAggregatesOnly(true)
        ->ComputeStatistics("min", minimum)
        ->ComputeStatistics("max", maximum)
        ->Unit(benchmark::kMillisecond);
}

template <bool Wayland> void registerFor(const std::string& platform)
{
    benchmark::RegisterBenchmark(("BM_CopyToServiceRequest/" + platform).c_str(),
                                 BM_CopyToServiceRequest<Wayland>)
        ->Apply(perCopy);
    benchmark::RegisterBenchmark(("BM_CopyToClipboardNotice/" + platform).c_str(),
                                 BM_CopyToClipboardNotice<Wayland>)
        ->Apply(perCopy);
}

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (QGuiApplication::platformName() == QLatin1String("wayland"))
        registerFor<true>("wayland");
    else
        registerFor<false>("x11");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
