// Showing a long text in a text box: setting it, then the first paint; and giving back exactly what
// was set. Runs on the offscreen platform.
#include "app/UniTextBox.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <QWidget>
#include <benchmark/benchmark.h>

namespace
{

// Latin without spaces, Chinese, Thai, and words with spaces.
const QString kUnits[] = {QStringLiteral("a"), QStringLiteral("\u4e2d\u6587"),
                          QStringLiteral("\u0e20\u0e32\u0e29\u0e32\u0e44\u0e17\u0e22"),
                          QStringLiteral("word ")};

void showLongText(benchmark::State& state)
{
    const QString& unit = kUnits[state.range(0)];
    QString text;
    while (text.size() < state.range(1))
        text += unit;
    text.truncate(state.range(1));
    QWidget window;
    window.resize(740, 200);
    QPlainTextEdit* box = quillora::createTextBox(&window, QRect(0, 0, 710, 135));
    window.show();
    QApplication::processEvents();
    for (auto _ : state) {
        box->setPlainText(text);
        window.repaint();
        QApplication::processEvents();
        state.PauseTiming();
        if (box->toPlainText() != text)
            state.SkipWithError("the box does not hold the text");
        box->clear();
        QApplication::processEvents();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(1));
}

// Get-text and set-text of a text with a block break every few words, each kind of break in turn;
// what comes back must be the very text.
void exactRoundTrip(benchmark::State& state)
{
    const QString breaks[] = {QStringLiteral("\r\n"), QStringLiteral("\uFDD0"), QStringLiteral("\r"),
                              QStringLiteral("\uFDD1"), QStringLiteral("\n")};
    QString text;
    for (int i = 0; text.size() < state.range(0); ++i)
        text += QStringLiteral("some words ") + breaks[i % 5];
    QWidget window;
    QPlainTextEdit* box = quillora::createTextBox(&window, QRect(0, 0, 710, 135));
    for (auto _ : state) {
        quillora::setBoxText(box, text);
        if (quillora::boxText(box) != text)
            state.SkipWithError("the box changed the text");
    }
    state.SetItemsProcessed(state.iterations() * text.size());
}

} // namespace

BENCHMARK(exactRoundTrip)
    ->ArgName("chars")
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

BENCHMARK(showLongText)
    ->ArgNames({"script", "chars"})
    ->ArgsProduct({{0, 1, 2, 3}, {100000, 400000, 1000000}})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(2);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
