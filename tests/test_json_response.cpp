#include "translate/ResponseParser.h"

#include <QTest>

using namespace quillora;

class JsonResponseTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void requestUrl()
    {
        const QUrl url = jsonRequestUrl(QStringLiteral("http://127.0.0.1:8123"), QStringLiteral("gtx"),
                                        QStringLiteral("a+b&c=d é\n中#?"), QString(), QStringLiteral("de"),
                                        QStringLiteral("en"));
        QCOMPARE(url.toEncoded(),
                 QByteArray("http://127.0.0.1:8123/translate_a/single?client=gtx&sl=auto&tl=de&hl=en"
                            "&dt=t&dt=rm&dt=bd&ie=UTF-8&oe=UTF-8"
                            "&q=a%2Bb%26c%3Dd%20%C3%A9%0A%E4%B8%AD%23%3F"));
        QCOMPARE(url.path(), QStringLiteral("/translate_a/single"));
        QVERIFY(!url.hasFragment());

        const QUrl chosen =
            jsonRequestUrl(QStringLiteral("https://api.test"), QStringLiteral("x"), QStringLiteral("hi"),
                           QStringLiteral("zh-CN"), QStringLiteral("fr"), QStringLiteral("es"));
        QCOMPARE(chosen.toEncoded(),
                 QByteArray("https://api.test/translate_a/single?client=x&sl=zh-CN&tl=fr&hl=es"
                            "&dt=t&dt=rm&dt=bd&ie=UTF-8&oe=UTF-8&q=hi"));
    }

    void sentencesAreJoined()
    {
        TranslationResult r;
        const QByteArray body = "[[[\"Hallo Welt. \",\"Hello world. \",null,null,3],"
                                "[\"Wie geht's?\",\"How are you?\",null,null,3]],null,\"en\"]";
        QVERIFY(parseJsonResponse(body, &r));
        QCOMPARE(r.translation, QStringLiteral("Hallo Welt. Wie geht's?"));
        QCOMPARE(r.romanization, QString());
        QCOMPARE(r.dictionary, QString());
    }

    void romanizationOfTheTranslation()
    {
        TranslationResult r;
        const QByteArray body = "[[[\"\\u4f60\\u597d\",\"Hello\",null,null,1],"
                                "[null,null,\"N\\u01d0 h\\u01ceo\",\"hello\"]],null,\"en\"]";
        QVERIFY(parseJsonResponse(body, &r));
        QCOMPARE(r.translation, QStringLiteral("你好"));
        QCOMPARE(r.romanization, QStringLiteral("Nǐ hǎo"));

        // Only the source carries one: the translation has none.
        const QByteArray sourceOnly =
            "[[[\"Hallo\",\"\\u4f60\\u597d\"],[null,null,null,\"Ni hao\"],[null,null,\"late\"]]]";
        QVERIFY(parseJsonResponse(sourceOnly, &r));
        QCOMPARE(r.translation, QStringLiteral("Hallo"));
        QCOMPARE(r.romanization, QString());
    }

    void dictionaryLayout()
    {
        TranslationResult r;
        const QByteArray body =
            "[[[\"Haus\",\"house\"]],[[\"noun\",[\"house\",\"home\"],[[\"house\",[\"Haus\"]]],\"Haus\",1],"
            "[\"verb\",[\"to house\"],[],\"hausen\",2]],\"de\"]";
        QVERIFY(parseJsonResponse(body, &r));
        QCOMPARE(r.dictionary, QStringLiteral("noun:\r\n1. house\r\n2. home\r\nverb:\r\n1. to house\r\n"));
    }

    void noEntityRules()
    {
        TranslationResult r;
        const QByteArray body = "[[[\"Why? &amp;quot; &lt;b&gt;  x\"]],[[\"n\",[\"a?\"]]]]";
        QVERIFY(parseJsonResponse(body, &r));
        QCOMPARE(r.translation, QStringLiteral("Why? &amp;quot; &lt;b&gt;  x"));
        QCOMPARE(r.dictionary, QStringLiteral("n:\r\n1. a?\r\n"));
    }

    void wrongTypesInsideAreSkipped()
    {
        TranslationResult r;
        const QByteArray body = "[[1,\"x\",null,[],{\"a\":1},[5,\"t\"],[true],[\"ok\"],[null,2,3,4]],"
                                "[[1,[\"w\"]],[\"n\",7],[\"v\",[1,\"w\",null,[\"z\"]]],\"s\",null,[]],{}]";
        QVERIFY(parseJsonResponse(body, &r));
        QCOMPARE(r.translation, QStringLiteral("ok"));
        QCOMPARE(r.romanization, QString());
        QCOMPARE(r.dictionary, QStringLiteral("n:\r\nv:\r\n1. w\r\n"));

        QVERIFY(parseJsonResponse("[[]]", &r));
        QCOMPARE(r, TranslationResult());
        const QByteArray list = "[[[\"a\"]],\"not a list\"]";
        QVERIFY(parseJsonResponse(list, &r));
        QCOMPARE(r.translation, QStringLiteral("a"));
        QCOMPARE(r.dictionary, QString());
    }

    void notSuchAnArray_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("html") << QByteArray("<html><body><div id=result_box>x</div></body></html>");
        QTest::newRow("truncated") << QByteArray("[[[\"Hallo\",\"Hello\",null,null,1]],null,\"e");
        QTest::newRow("object") << QByteArray("{\"sentences\":[{\"trans\":\"x\"}]}");
        QTest::newRow("null") << QByteArray("null");
        QTest::newRow("number") << QByteArray("42");
        QTest::newRow("string") << QByteArray("\"[[[\\\"x\\\"]]]\"");
        QTest::newRow("empty array") << QByteArray("[]");
        QTest::newRow("null first") << QByteArray("[null,null,\"en\"]");
        QTest::newRow("string first") << QByteArray("[\"x\"]");
        QTest::newRow("object first") << QByteArray("[{\"0\":[\"x\"]}]");
        QTest::newRow("trailing garbage") << QByteArray("[[[\"x\"]]] trailing");
        QTest::newRow("binary") << QByteArray("\x00\xff[[\x01", 5);
        QTest::newRow("deep nesting") << QByteArray(100000, '[');
        QTest::newRow("deep closed") << QByteArray(5000, '[') + QByteArray(5000, ']');
    }

    void notSuchAnArray()
    {
        QFETCH(QByteArray, body);
        TranslationResult r{QStringLiteral("kept"), {}, {}};
        QVERIFY(!parseJsonResponse(body, &r));
        QCOMPARE(r.translation, QStringLiteral("kept"));
    }
};

QTEST_APPLESS_MAIN(JsonResponseTest)
#include "test_json_response.moc"
