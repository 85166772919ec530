// A translation whose answer is as large as the cap: from the click to the shown result, with the peak
// memory of the whole process. The stand-in serves the page from this process; offscreen platform.
#include "x11/ClipboardDesk.h"

#include <QApplication>
#include <QFile>
#include <QSignalSpy>
#include <benchmark/benchmark.h>

namespace
{

double peakMiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toDouble() / 1024;
    return -1;
}

// Sentence spans up to `size` bytes, then romanization and dictionary.
QByteArray formPage(qsizetype size)
{
    const QByteArray span =
        "<span title=\"The weather is nice today.\" onmouseout=\"this.style.backgroundColor="
        "'#fff'\">Il fait beau aujourd'hui. </span>";
    const QByteArray tail = "</span></div><div id=res-translit class=translit dir=ltr style=\"text-align:\">"
                            "il fe bo</div><h3>x</h3><ol><li>phrase<div><div>beau</div></div></li></ol>";
    QByteArray page = "<html><body><div id=result_box>";
    while (page.size() + span.size() + tail.size() < size)
        page += span;
    return page + tail;
}

void capSizedAnswerToShown(benchmark::State& state)
{
    quillora::test::ClipboardDesk desk({});
    desk.service().setFormPage(formPage(quillora::HttpClient::kDefaultMaxBytes));
    quillora::FormMian& window = desk.window();
    window.show();
    QApplication::processEvents();
    for (auto _ : state) {
        QSignalSpy finished(&window, &quillora::FormMian::translationFinished);
        quillora::test::box(window, "sourceBox")->setPlainText(QStringLiteral("The weather is nice today."));
        window.jcbuttonClick(0);
        while (finished.isEmpty())
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        window.repaint();
        if (quillora::test::box(window, "resultBox")->toPlainText().isEmpty())
            state.SkipWithError("nothing was shown");
    }
    state.counters["peak_MiB"] = peakMiB();
    state.counters["answer_KiB"] = double(quillora::HttpClient::kDefaultMaxBytes) / 1024;
}

} // namespace

BENCHMARK(capSizedAnswerToShown)->Unit(benchmark::kMillisecond)->Iterations(5);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
