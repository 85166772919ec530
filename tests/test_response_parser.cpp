#include "translate/ResponseParser.h"

#include <QTest>

using namespace quillora;

namespace
{

enum Cut { Translation, Romanization, Dictionary };
QString (*const kCuts[])(const QString&) = {cutTranslation, cutRomanization, cutDictionary};
const QString End = QStringLiteral("</span></div>");

void row(const char* name, Cut cut, const QString& page, const QString& expected)
{
    QTest::newRow(name) << int(cut) << page << expected;
}

void row(const char* name, const char* raw, const char* translation, const char* romanization)
{
    QTest::newRow(name) << QString(raw) << QString(translation) << QString(romanization);
}

} // namespace

class ResponseParserTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cuts_data()
    {
        QTest::addColumn<int>("cut");
        QTest::addColumn<QString>("page");
        QTest::addColumn<QString>("expected");
        const QString span = "<span title=\"t\" " + SpanMark;
        row("marker at position 1", Translation, SpanMark + "abc" + End, "abc");
        row("spans joined", Translation, span + "Hallo.</span> " + span + "Wie<br>dir" + End,
            "Hallo.Wie\r\ndir");
        for (int n : {46, 47, 48}) // a piece without the marker gives its characters from the 47th on
            QTest::addRow("piece of %d", n)
                << int(Translation) << SpanMark + "a</span>" + QString(n - 2, u'.') + "YZ" + End
                << "a" + QStringLiteral("YZ").right(n - 46);
        row("empty pieces", Translation, SpanMark + "a</span></span>" + SpanMark + "b" + End, "ab");
        row("closing tags after the marker", Translation, "x" + End + SpanMark + "late" + End, "late");
        row("translation not closed", Translation, SpanMark + "text</span></p>", "");
        row("no span marker", Translation, "<span>text" + End, "");
        row("romanization", Romanization, "</div>" + TranslitMark + "Nǐ hǎo</div>", "Nǐ hǎo");
        row("romanization not closed", Romanization, TranslitMark + "no end", "");
        row("not decoded", Dictionary, DictMark + "n<div><div>a&amp;b?</li></ol>", "n:\r\n1. a&amp;b?\r\n");
        row("heading alone, empty word", Dictionary,
            DictMark + "adj</li></li>adv<div><div>w</div><div></li></ol>", "adj:\r\nadv:\r\n1. w\r\n2. \r\n");
        row("second list ignored", Dictionary, DictMark + "n<div><div>a<div><div>b</li></ol>",
            "n:\r\n1. a\r\n");
        row("dictionary not closed", Dictionary, DictMark + "n<div><div>a</div></div>", "");
    }

    void cuts()
    {
        QFETCH(int, cut);
        QFETCH(QString, page);
        QTEST(kCuts[cut](page), "expected");
    }

    void entities_data()
    {
        QTest::addColumn<QString>("raw");
        QTest::addColumn<QString>("translation");
        QTest::addColumn<QString>("romanization");
        row("double-escaped lt first", "&amp;lt;", "<", "<");
        row("double-escaped quote a break", "a&amp;quot;b", "a\r\nb", "a\r\nb");
        row("question mark", "Why?", "Why ", "Why ");
        row("two and three spaces", "ni  hao   x", "ni  hao   x", "ni\r\nhao\r\n x");
        row("escaped br", "a&lt;br&gt;b", "a\r\nb", "a<br>b");
        row("triple escape", "&amp;amp;#39;", "'", "&#39;");
        row("quote, apostrophes, gt", "&quot;&#39;&amp;#39;&gt;&amp;gt;", "\"''>>", "\"''>>");
        row("amp last, case-sensitive", "&amp;lt &LT;", "&lt &LT;", "&lt &LT;");
    }

    void entities()
    {
        QFETCH(QString, raw);
        QTEST(cutTranslation(SpanMark + raw + End), "translation");
        QTEST(cutRomanization(TranslitMark + raw + "</div>"), "romanization");
    }

    void wholePageAndMarkers()
    {
        // Written out as the service sent it, so a changed marker shows here.
        const QString page =
            "<div id=result_box dir=\"ltr\"><span title=\"x\" onmouseover=\"this.style.backgroundColor="
            "'#ebeff9'\" onmouseout=\"this.style.backgroundColor='#fff'\">Is it &amp;lt;ok&amp;gt;?"
            "</span></span></div><div id=res-translit class=translit dir=ltr style=\"text-align:\">"
            "shi  ma</div><h3>d</h3><ol><li>adj<div><div>fine</div></div></li></ol>";
        QCOMPARE(parseFormResponse(page),
                 (TranslationResult{"Is it <ok> ", "shi\r\nma", "adj:\r\n1. fine\r\n"}));
        for (const QString& marker : {SpanMark, TranslitMark, DictMark})
            QVERIFY(hasFormMarkers("x" + marker));
        QVERIFY(!hasFormMarkers("<html><body>[[[\"Hallo\"]]]</body></html>"));
    }
};

QTEST_APPLESS_MAIN(ResponseParserTest)
#include "test_response_parser.moc"
