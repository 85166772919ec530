#include "translate/ResponseParser.h"

#include <QTest>

using namespace quillora;

class JsonResponseTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void requestUrl()
    {
        QCOMPARE(
            jsonRequestUrl("http://127.0.0.1:8", "gtx", "a+b&c=d é\n中#?", "", "de", "en").toEncoded(),
            "http://127.0.0.1:8/translate_a/single?client=gtx&sl=auto&tl=de&hl=en&dt=t&dt=rm&dt=bd&ie=UTF-8"
            "&oe=UTF-8&q=a%2Bb%26c%3Dd%20%C3%A9%0A%E4%B8%AD%23%3F");
    }

    void parse_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("parts"); // translation|romanization|dictionary
        QTest::newRow("sentences joined")
            << QByteArray(R"([[["Hallo. ","Hello. ",null,null,3],["Wie?","How?"]],null,"en"])")
            << "Hallo. Wie?||";
        QTest::newRow("romanization of the translation")
            << QByteArray(R"([[["\u4f60\u597d","Hello"],[null,null,"N\u01d0 h\u01ceo","hello"]],null,"en"])")
            << "你好|Nǐ hǎo|";
        QTest::newRow("romanization inside each sentence")
            << QByteArray(R"([[["你好。","Hello.","Nǐ hǎo.","Hello."],)"
                          R"(["再见","Bye",null,null],["谢","Thanks"," Xiè ",null]],null,"en"])")
            << "你好。再见谢|Nǐ hǎo. Xiè|";
        QTest::newRow("an entry of its own wins over the sentences'")
            << QByteArray(R"([[["a","x","in sentence"],[null,null,"whole text"]]])") << "a|whole text|";
        QTest::newRow("source romanization ignored")
            << QByteArray(R"([[["Hallo","\u4f60\u597d"],[null,null,null,"Ni hao"],[null,null,"late"]]])")
            << "Hallo||";
        QTest::newRow("dictionary layout, no entity rules")
            << QByteArray(
                   R"([[["Why? &amp;quot;  x"]],[["noun",["house","a?"],[["house",["Haus"]]],"Haus",1],)"
                   R"(["verb",["to house"],[],"hausen",2]],"de"])")
            << "Why? &amp;quot;  x||noun:\r\n1. house\r\n2. a?\r\nverb:\r\n1. to house\r\n";
        QTest::newRow("wrong types inside skipped")
            << QByteArray(R"([[1,"x",null,[],{"a":1},[5,"t"],[true],["ok"],[null,2,3,4]],)"
                          R"([[1,["w"]],["n",7],["v",[1,"w",null,["z"]]],"s",null,[]],{}])")
            << "ok||n:\r\nv:\r\n1. w\r\n";
        QTest::newRow("no sentences") << QByteArray("[[]]") << "||";
        QTest::newRow("empty elements")
            << QByteArray("[[[\"\u4f60\u597d\",\"Hello\",,,1],[,, \"N\u01d0\" ,\"hello\"],],,\"en\",]")
            << "你好|Nǐ|";
        QTest::newRow("empty translation, dictionary")
            << QByteArray(R"([,[["noun",["house",,"home"],,"Haus",],[,["x"]]],"de"])")
            << "||noun:\r\n1. house\r\n2. home\r\n";
        QTest::newRow("commas inside strings")
            << QByteArray("[[[\"a,,b\",\"[,]\",,],[\"say \\\",,\\\" \\\\\",,]],[]]") << "a,,bsay \",,\" \\||";
    }

    void parse()
    {
        QFETCH(QByteArray, body);
        TranslationResult r{"stale", "stale", "stale"};
        QVERIFY(parseJsonResponse(body, &r));
        QTEST(r.translation + '|' + r.romanization + '|' + r.dictionary, "parts");
    }

    void garbageAndHtmlRejected()
    {
        const QByteArray bodies[] = {"",
                                     "<html><body><div id=result_box>x</div></body></html>",
                                     "[[[\"Hallo\",\"Hello\"]],null,\"e",
                                     R"({"sentences":[{"trans":"x"}]})",
                                     "[]",
                                     R"([,,"en",,,,0.8])",
                                     R"([[["x"]]] trailing)",
                                     QByteArray("\x00\xff[[\x01", 5),
                                     QByteArray(100000, '[')};
        for (const QByteArray& body : bodies) {
            TranslationResult r{"kept", {}, {}};
            QVERIFY2(!parseJsonResponse(body, &r), body.left(60).constData());
            QCOMPARE(r.translation, QStringLiteral("kept"));
        }
    }
};

QTEST_APPLESS_MAIN(JsonResponseTest)
#include "test_json_response.moc"
