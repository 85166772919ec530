#include "net/MakerLists.h"
#include "net/WebLink.h"

#include <QTest>

using namespace quillora;
using namespace Qt::StringLiterals;

using Records = QList<SiteRecord>;

class MakerListsTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void updateList_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("fields"); // version/number/download/details
        QTest::addColumn<QByteArray>("sha256Hex");
        const QByteArray digest = QByteArray(32, '\xab').toHex();
        QTest::newRow("four fields") << u"2.1.92|3|http://d/q|Updates:\r\nmore"_s
                                     << u"2.1.92/3/http://d/q/Updates:\r\nmore"_s << QByteArray();
        QTest::newRow("digest, blanks and upper case")
            << u"2.2.0|12| http://d/q |Updates| "_s + QString::fromLatin1(digest.toUpper()) + u"\n"_s
            << u"2.2.0/12/http://d/q/Updates"_s << digest;
        QTest::newRow("short digest")
            << u"2.2.0|1|u|Updates|abcd"_s << u"2.2.0/1/u/Updates"_s << QByteArray();
        QTest::newRow("digest not hex")
            << u"2.2.0|1|u|Updates|"_s + QString(64, u'g') << u"2.2.0/1/u/Updates"_s << QByteArray();
        QTest::newRow("number not a number") << u"v|x|u|d"_s << u"v/0/u/d"_s << QByteArray();
        QTest::newRow("version only") << u" 2.1.92"_s << u" 2.1.92/0//"_s << QByteArray();
    }
    void updateList()
    {
        QFETCH(QString, text);
        QFETCH(QString, fields);
        const UpdateList list = parseUpdateList(text);
        QCOMPARE(
            QStringList({list.version, QString::number(list.number), list.download, list.details}).join(u'/'),
            fields);
        QTEST(list.sha256.toHex(), "sha256Hex");
    }

    void sitesList()
    {
        const Records two{{u"News"_s, u"http://n"_s}, {u"Maps"_s, u"http://m"_s}};
        const QList<std::pair<QString, Records>> rows{
            {u"News|http://n<Maps|http://m"_s, two},
            {u"News|http://n\r\n<Maps|http://m<\r\n"_s, two}, // a trailing separator and line break
            {u"Just a caption"_s, {{u"Just a caption"_s, {}}}},
            {u"A|http://a|ignored"_s, {{u"A"_s, u"http://a"_s}}},
            {QString(), {}},
            {u"S|http://s<"_s.repeated((16 << 20) / 11), Records(100, {u"S"_s, u"http://s"_s})}}; // 16 MiB
        for (const auto& [text, records] : rows)
            QCOMPARE(parseSitesList(text), records);
    }

    void pageList()
    {
        const QList<std::pair<QString, QStringList>> rows{
            {u"http://a<|http://b"_s, {u"http://a"_s, u"http://b"_s}},
            {u"http://a<|http://b<|\r\n"_s, {u"http://a"_s, u"http://b"_s, QString()}}, // an empty place kept
            {u"http://a?x<y"_s, {u"http://a?x<y"_s}}, // a lone < is part of the address
            {QString(), {}},
            {u"p<|"_s.repeated(150), QStringList(100, u"p"_s)}};
        for (const auto& [text, pages] : rows)
            QCOMPARE(splitPageList(text), pages);
    }

    // Which addresses go to the browser, and which update lists may replace the program.
    void webLinks()
    {
        const QList<std::tuple<QString, bool, bool>> rows{{u"https://maker.example/Update.txt"_s, true, true},
                                                          {u"http://maker.example/Update.txt"_s, true, false},
                                                          {u"HTTP://[::1]:8/Update.txt"_s, true, true},
                                                          {u"file:///etc/passwd"_s, false, false},
                                                          {u"steam://run/1"_s, false, false},
                                                          {u"http:///x"_s, false, false}};
        for (const auto& [address, web, trusted] : rows) {
            QStringList opened;
            const bool ok = openWebAddress(QUrl(address),
                                           [&opened](const QUrl& u) { return opened << u.toString(), true; });
            QVERIFY2(ok == web && opened.size() == (web ? 1 : 0) &&
                         isTrustedUpdateSource(QUrl(address)) == trusted,
                     qPrintable(address));
        }
    }
};

QTEST_APPLESS_MAIN(MakerListsTest)
#include "test_maker_lists.moc"
