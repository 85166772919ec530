#include "TestSupport.h"
#include "app/LocaleChoice.h"

#include <QTemporaryDir>
#include <QTest>
#include <array>

using namespace quillora;
using namespace Qt::StringLiterals;

class TestLocaleChoice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Locale name: its Windows identifier and the interface language for it; the edges of the table.
    void localeTable()
    {
        for (const QString& row :
             {u"zh_SG.GB2312@stroke 4100 3"_s, u"ES_pr 20490 5"_s, u"es_MX 2058 1"_s, u"C.UTF-8 0 1"_s}) {
            const int lcid = windowsLocaleId(row.section(u' ', 0, 0));
            QCOMPARE(u"%1 %2"_s.arg(lcid).arg(interfaceLanguageForLcid(lcid)), row.section(u' ', 1));
        }
    }

    // locale.conf, then default/locale (null: no such file), then the environment; what is chosen.
    void systemLocaleComesFromTheRightPlace()
    {
        const QString es = u"LANG=es_ES"_s, none;
        const QList<std::array<QString, 4>> rows{
            {u"LANG=fr_FR"_s, u"LANG=th_TH"_s, es, u"fr_FR fr_FR 7"_s},
            {none, u"LANG=th_TH.UTF-8"_s, es, u"th_TH.UTF-8 th_TH 4"_s},
            {u"#\nLC_TIME=de_DE"_s, u"# update-locale"_s, es, u"es_ES es_ES 5"_s},
            {none, none, u"LC_MESSAGES=sk LC_ALL=zh LANG=fr"_s, u"zh zh 2"_s},
            {none, none, u"LC_MESSAGES=sk LC_ALL= LANG=fr"_s, u"sk sk 6"_s},
            {none, none, none, u"C C 1"_s},
            {u"LANG=\"sr_RS@latin\""_s, none, none, u"sr_RS@latin sr_RS 1"_s},
            {none, u"export LANG='es_MX.UTF-8'"_s, es, u"es_MX.UTF-8 es_MX 1"_s},
            {u"LANG=de\nLANG=es_PR\nLANGUAGE=fr"_s, none, es, u"es_PR es_PR 5"_s},
            {u"LANG="_s, u"LANG=th_TH"_s, es, u"th_TH th_TH 4"_s}};
        for (const auto& [conf, etcDefault, environment, chosen] : rows) {
            QTemporaryDir dir;
            LocaleSources s{dir.filePath(u"locale.conf"_s), dir.filePath(u"locale"_s), {}};
            QVERIFY(conf.isNull() || test::writeFile(s.localeConf, (conf + u'\n').toUtf8()));
            QVERIFY(etcDefault.isNull() || test::writeFile(s.defaultLocale, (etcDefault + u'\n').toUtf8()));
            for (const QString& pair : environment.split(u' ', Qt::SkipEmptyParts))
                s.environment.insert(pair.section(u'=', 0, 0), pair.section(u'=', 1));
            QCOMPARE(QStringList({systemLocaleSpec(s), systemLocaleName(s), interfaceLanguageFor({}, s)})
                         .join(u' '),
                     chosen);
            // A stored language is taken as it is when it is one of the seven, else it is English.
            QCOMPARE(interfaceLanguageFor(u"6"_s, s) + interfaceLanguageFor(u"9"_s, s) +
                         interfaceLanguageFor(u" 2"_s, s),
                     u"611"_s);
        }
    }
};

QTEST_GUILESS_MAIN(TestLocaleChoice)
#include "test_locale_choice.moc"
