#include "net/MakerLists.h"
#include "translate/ResponseParser.h"

#include <QByteArray>
#include <QString>
#include <benchmark/benchmark.h>

using namespace quillora;

namespace
{

const QString Sentence =
    QStringLiteral("Das ist ein &amp;quot;Beispiel&amp;quot; f\u00fcr den Text, oder? "
                   "Er sagt &#39;ja&#39; &amp;amp; &lt;br&gt;geht &amp;lt;weiter&amp;gt;. ");

// An answer page of about `bytes` characters: most of it the result spans, then the romanization
// and a dictionary, with the page's own markup around them.
QString formAnswer(qsizetype bytes)
{
    QString page;
    page.reserve(bytes + 4096);
    page +=
        QStringLiteral("<html><head><title>Google Translate</title><script>var a=1;</script></head><body>");
    page += QStringLiteral("<div id=gt-res-content><div id=result_box dir=\"ltr\">");
    const qsizetype spansEnd = bytes * 7 / 10;
    for (int i = 0; page.size() < spansEnd; ++i) {
        page += QStringLiteral("<span title=\"Source sentence number %1.\" "
                               "onmouseover=\"this.style.backgroundColor='#ebeff9'\" ")
                    .arg(i);
        page += SpanMark;
        page += Sentence;
        page += QStringLiteral("</span> ");
        if (i % 8 == 7)
            page += QStringLiteral("<br>");
    }
    page += QStringLiteral("</span></div></div>");
    page += TranslitMark;
    const qsizetype translitEnd = bytes * 8 / 10;
    while (page.size() < translitEnd)
        page += QStringLiteral("D\u00e0s ist ein  B\u00e9isp\u00edel &amp;amp; &#39;ja&#39;? ");
    page += QStringLiteral("</div><div id=gt-lc><h3>Dictionary</h3><ol><li>");
    const qsizetype dictEnd = bytes - 64;
    for (int i = 0; page.size() < dictEnd; ++i) {
        page += QStringLiteral("noun%1<div><div>house</div><div>home</div><div>building</div><div>dwelling"
                               "</div></div></li><li>")
                    .arg(i);
    }
    page += QStringLiteral("end<div><div>x</div></div></li></ol></div></body></html>");
    return page;
}

// The worst case for the entity tables: one span whose text is nothing but escapes.
QString denseAnswer(qsizetype bytes)
{
    QString page = SpanMark;
    page.reserve(bytes + 64);
    while (page.size() < bytes)
        page += QStringLiteral(
            "&amp;quot;&lt;br&gt;?&amp;#39;&amp;amp;&amp;lt;&amp;gt;&lt;&gt;&#39;&quot;&amp;<br>");
    page += QStringLiteral("</span></div>");
    return page;
}

QByteArray jsonAnswer(qsizetype bytes)
{
    QByteArray json;
    json.reserve(bytes + 4096);
    json += "[[";
    const qsizetype sentencesEnd = bytes * 8 / 10;
    while (json.size() < sentencesEnd)
        json +=
            R"(["Das ist ein Beispiel f\u00fcr den Text, oder? ","This is an example of the text, right? ",)"
            R"(null,null,3,null,null,[[]],[[["7c8e2a","en_de_2023q1.md"]]]],)";
    json += R"([null,null,"Das ist ein Beispiel","This is an example"]],[)";
    const qsizetype dictEnd = bytes - 16;
    while (json.size() < dictEnd)
        json += R"(["noun",["house","home","building"],[["house",["Haus","Heim"],null,0.5]],"Haus",1],)";
    json += R"(["verb",["to house"]]],"en"])";
    return json;
}

void parseForm(benchmark::State& state, const QString& page)
{
    const qsizetype bytes = page.toUtf8().size();
    qsizetype translated = 0;
    for (auto _ : state) {
        const TranslationResult r = parseFormResponse(page);
        translated = r.translation.size() + r.romanization.size() + r.dictionary.size();
        benchmark::DoNotOptimize(translated);
    }
    if (translated == 0)
        state.SkipWithError("nothing was cut out of the page");
    state.SetBytesProcessed(state.iterations() * bytes);
    state.counters["page_bytes"] = double(bytes);
}

void BM_FormResponse(benchmark::State& state)
{
    parseForm(state, formAnswer(state.range(0)));
}

void BM_FormResponseDenseEntities(benchmark::State& state)
{
    parseForm(state, denseAnswer(state.range(0)));
}

void BM_JsonResponse(benchmark::State& state)
{
    const QByteArray body = jsonAnswer(state.range(0));
    for (auto _ : state) {
        TranslationResult r;
        if (!parseJsonResponse(body, &r)) {
            state.SkipWithError("the answer did not parse");
            break;
        }
        benchmark::DoNotOptimize(r.translation.size());
    }
    state.SetBytesProcessed(state.iterations() * body.size());
    state.counters["page_bytes"] = double(body.size());
}

// A sites list of this size from the maker's site: only the records kept are read.
void BM_SitesList(benchmark::State& state)
{
    const QString text = QStringLiteral("Site|http://s<").repeated(state.range(0) / 14);
    for (auto _ : state)
        benchmark::DoNotOptimize(parseSitesList(text).size());
    state.counters["list_chars"] = double(text.size());
}

} // namespace

BENCHMARK(BM_SitesList)->Arg(16 << 20)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FormResponse)->Arg(64 << 10)->Arg(1 << 20)->Arg(8 << 20)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FormResponseDenseEntities)
    ->Arg(64 << 10)
    ->Arg(1 << 20)
    ->Arg(8 << 20)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_JsonResponse)->Arg(64 << 10)->Arg(1 << 20)->Arg(8 << 20)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
