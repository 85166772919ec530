#include "translate/ResponseParser.h"

#include <QTest>

using namespace quillora;

namespace
{

const QString Crlf = QStringLiteral("\r\n");

// A span as the service writes it around one translated sentence.
QString span(const QString& text)
{
    return QStringLiteral("<span title=\"source\" onmouseover=\"this.style.backgroundColor='#ebeff9'\" ") +
           SpanMark + text + QStringLiteral("</span>");
}

QString resultBox(const QString& spans)
{
    return QStringLiteral("<html><body><div id=result_box dir=\"ltr\">") + spans + QStringLiteral("</div>");
}

QString translit(const QString& text)
{
    return TranslitMark + text + QStringLiteral("</div>");
}

} // namespace

class ResponseParserTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void markersHaveTheirLengths()
    {
        QCOMPARE(SpanMark.size(), 47);
        QCOMPARE(TranslitMark.size(), 64);
        QCOMPARE(DictMark.size(), 13);
    }

    void requestBody_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("textField");
        QTest::newRow("ampersand") << QStringLiteral("a&b") << QByteArray("a%26b");
        QTest::newRow("plus kept") << QStringLiteral("a+b") << QByteArray("a+b");
        QTest::newRow("percent, equals, spaces") << QStringLiteral(" 5% = x ") << QByteArray(" 5% = x ");
        QTest::newRow("line breaks") << QStringLiteral("a\r\nb") << QByteArray("a\r\nb");
        QTest::newRow("non-ASCII as UTF-8") << QStringLiteral("é中") << QByteArray("\xC3\xA9\xE4\xB8\xAD");
        QTest::newRow("escape sequence not re-escaped") << QStringLiteral("%26&") << QByteArray("%26%26");
    }

    void requestBody()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, textField);
        QCOMPARE(buildRequestBody(text, QStringLiteral("en"), QStringLiteral("fr"), QStringLiteral("de")),
                 "prev=hp&hl=en&ie=UTF-8&js=y&text=" + textField + "&file=&sl=fr&tl=de");
    }

    void requestBodyWithDetection()
    {
        QCOMPARE(
            buildRequestBody(QStringLiteral("x"), QStringLiteral("zh-CN"), QString(), QStringLiteral("ja")),
            QByteArray("prev=hp&hl=zh-CN&ie=UTF-8&js=y&text=x&file=&sl=&tl=ja"));
        QCOMPARE(sentText(QStringLiteral("&&")), QStringLiteral("%26%26"));
    }

    void translationJoinsSpans()
    {
        const QString page = resultBox(span(QStringLiteral("Hallo Welt.")) + QStringLiteral(" ") +
                                       span(QStringLiteral("Wie geht's<br>dir")) + QStringLiteral("</div>")) +
                             QStringLiteral("</body></html>");
        QCOMPARE(cutTranslation(page),
                 QStringLiteral("Hallo Welt.Wie geht's") + Crlf + QStringLiteral("dir"));
    }

    void translationMarkerAtFirstPosition()
    {
        QCOMPARE(cutTranslation(SpanMark + QStringLiteral("abc</span></div>")), QStringLiteral("abc"));
    }

    // A piece without the marker gives its characters from the 47th on.
    void pieceWithoutMarker_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("expected");
        QTest::newRow("46") << 46 << QString();
        QTest::newRow("47") << 47 << QStringLiteral("Z");
        QTest::newRow("48") << 48 << QStringLiteral("YZ");
    }

    void pieceWithoutMarker()
    {
        QFETCH(int, length);
        QFETCH(QString, expected);
        QString piece = QString(length, QLatin1Char('.'));
        piece[length - 1] = QLatin1Char('Z');
        if (length > 1)
            piece[length - 2] = length == 48 ? QLatin1Char('Y') : QLatin1Char('.');
        const QString page = SpanMark + QStringLiteral("a</span>") + piece + QStringLiteral("</span></div>");
        QCOMPARE(cutTranslation(page), QStringLiteral("a") + expected);
    }

    void emptyPiecesAddNothing()
    {
        QCOMPARE(cutTranslation(SpanMark + QStringLiteral("a</span></span>") + SpanMark +
                                QStringLiteral("b</span></div>")),
                 QStringLiteral("ab"));
    }

    void closingTagsSearchedFromMarker()
    {
        const QString page =
            QStringLiteral("<p>x</span></div>") + SpanMark + QStringLiteral("late</span></div>");
        QCOMPARE(cutTranslation(page), QStringLiteral("late"));
    }

    void missingPartsGiveEmptyTranslation()
    {
        // Without "</span></div>" after the marker the block is empty, not the rest of the page.
        QCOMPARE(cutTranslation(SpanMark + QStringLiteral("text</span></p>")), QString());
        QCOMPARE(cutTranslation(QStringLiteral("<span>text</span></div>")), QString());
        QCOMPARE(cutTranslation(QString()), QString());
        QCOMPARE(cutTranslation(SpanMark + QStringLiteral("</span></div>")), QString());
    }

    void translationEntities_data()
    {
        QTest::addColumn<QString>("raw");
        QTest::addColumn<QString>("decoded");
        QTest::newRow("double-escaped lt") << QStringLiteral("&amp;lt;") << QStringLiteral("<");
        QTest::newRow("double-escaped quote is a break")
            << QStringLiteral("a&amp;quot;b") << "a" + Crlf + "b";
        QTest::newRow("escaped br") << QStringLiteral("a&lt;br&gt;b") << "a" + Crlf + "b";
        QTest::newRow("question mark") << QStringLiteral("Why?") << QStringLiteral("Why ");
        QTest::newRow("quote") << QStringLiteral("&quot;x&quot;") << QStringLiteral("\"x\"");
        QTest::newRow("apostrophes") << QStringLiteral("&#39;&amp;#39;") << QStringLiteral("''");
        QTest::newRow("gt") << QStringLiteral("&gt;&amp;gt;") << QStringLiteral(">>");
        QTest::newRow("amp last") << QStringLiteral("&amp;lt") << QStringLiteral("&lt");
        QTest::newRow("triple escape resolves") << QStringLiteral("&amp;amp;#39;") << QStringLiteral("'");
        QTest::newRow("amp amp lt") << QStringLiteral("&amp;amp;lt;") << QStringLiteral("<");
        QTest::newRow("case-sensitive") << QStringLiteral("&LT;&Amp;") << QStringLiteral("&LT;&Amp;");
    }

    void translationEntities()
    {
        QFETCH(QString, raw);
        QFETCH(QString, decoded);
        QCOMPARE(decodeTranslationEntities(raw), decoded);
        QCOMPARE(cutTranslation(SpanMark + raw + QStringLiteral("</span></div>")), decoded);
    }

    void romanizationEntities_data()
    {
        QTest::addColumn<QString>("raw");
        QTest::addColumn<QString>("decoded");
        QTest::newRow("two spaces") << QStringLiteral("ni  hao") << "ni" + Crlf + "hao";
        QTest::newRow("three spaces") << QStringLiteral("a   b") << "a" + Crlf + " b";
        QTest::newRow("double-escaped quote is a break") << QStringLiteral("&amp;quot;") << Crlf;
        QTest::newRow("question mark") << QStringLiteral("?") << QStringLiteral(" ");
        // The apostrophe step runs before "&amp;amp;", so the triple escape stops one level short.
        QTest::newRow("triple escape stops") << QStringLiteral("&amp;amp;#39;") << QStringLiteral("&#39;");
        QTest::newRow("escaped br stays markup") << QStringLiteral("&lt;br&gt;") << QStringLiteral("<br>");
        QTest::newRow("double-escaped lt") << QStringLiteral("&amp;lt;") << QStringLiteral("<");
    }

    void romanizationEntities()
    {
        QFETCH(QString, raw);
        QFETCH(QString, decoded);
        QCOMPARE(decodeRomanizationEntities(raw), decoded);
        QCOMPARE(cutRomanization(QStringLiteral("<p>") + translit(raw)), decoded);
    }

    void romanizationCut()
    {
        QCOMPARE(cutRomanization(translit(QStringLiteral("Nǐ hǎo"))), QStringLiteral("Nǐ hǎo"));
        QCOMPARE(cutRomanization(QStringLiteral("</div>") + translit(QStringLiteral("x"))),
                 QStringLiteral("x"));
        QCOMPARE(cutRomanization(translit(QString())), QString());
        QCOMPARE(cutRomanization(TranslitMark + QStringLiteral("no end")), QString());
        QCOMPARE(cutRomanization(QStringLiteral("<div id=res-translit>x</div>")), QString());
    }

    void dictionaryLayout()
    {
        const QString page =
            QStringLiteral("<div><h3>Dictionary</h3><ol><li>noun<div><div>house</div><div>home</div>"
                           "</div></li><li>verb<div><div>to house</div></div></li></ol></div>");
        QCOMPARE(cutDictionary(page),
                 QStringLiteral("noun:\r\n1. house\r\n2. home\r\nverb:\r\n1. to house\r\n"));
    }

    void dictionaryEdges()
    {
        // Not entity-decoded, question marks kept.
        QCOMPARE(cutDictionary(DictMark + QStringLiteral("n<div><div>a&amp;b?</li></ol>")),
                 QStringLiteral("n:\r\n1. a&amp;b?\r\n"));
        // A heading without words, an empty entry, an empty last word.
        QCOMPARE(cutDictionary(DictMark + QStringLiteral("adj</li></li>adv<div><div>w</div><div></li></ol>")),
                 QStringLiteral("adj:\r\nadv:\r\n1. w\r\n2. \r\n"));
        // Only the words before a second word list count.
        QCOMPARE(cutDictionary(DictMark + QStringLiteral("n<div><div>a<div><div>b</li></ol>")),
                 QStringLiteral("n:\r\n1. a\r\n"));
        QCOMPARE(cutDictionary(DictMark + QStringLiteral("n<div><div></li></ol>")), QStringLiteral("n:\r\n"));
        QCOMPARE(cutDictionary(DictMark + QStringLiteral("n<div><div>a</div></div>")), QString());
        QCOMPARE(cutDictionary(QStringLiteral("<h3><ol><li>n<div><div>a</li></ol>")), QString());
        QCOMPARE(cutDictionary(DictMark + QStringLiteral("</li></ol>")), QString());
    }

    void wholePage()
    {
        const QString page =
            resultBox(span(QStringLiteral("Is it &amp;lt;ok&amp;gt;?")) + QStringLiteral("</div>")) +
            translit(QStringLiteral("shi  ma")) +
            QStringLiteral("<h3>d</h3><ol><li>adj<div><div>fine</div></div></li></ol>");
        const TranslationResult expected{QStringLiteral("Is it <ok> "), "shi" + Crlf + "ma",
                                         QStringLiteral("adj:\r\n1. fine\r\n")};
        QCOMPARE(parseFormResponse(page), expected);
        QVERIFY(hasFormMarkers(page));
        QCOMPARE(parseFormResponse(QString()), TranslationResult());
    }

    void formMarkers()
    {
        QVERIFY(hasFormMarkers(QStringLiteral("x") + SpanMark));
        QVERIFY(hasFormMarkers(TranslitMark));
        QVERIFY(hasFormMarkers(DictMark));
        QVERIFY(!hasFormMarkers(QStringLiteral("<html><body>[[[\"Hallo\"]]]</body></html>")));
        QVERIFY(!hasFormMarkers(QString()));
    }
};

QTEST_APPLESS_MAIN(ResponseParserTest)
#include "test_response_parser.moc"
