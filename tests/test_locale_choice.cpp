#include "TestSupport.h"
#include "app/LocaleChoice.h"

#include <QTemporaryDir>
#include <QTest>

using namespace quillora;

class TestLocaleChoice : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    // Sources with the given file contents (a null content means the file does not exist).
    LocaleSources sources(const QString& tag, const QByteArray& localeConf, const QByteArray& defaultLocale,
                          const QStringList& env)
    {
        LocaleSources s;
        s.localeConf = m_dir.filePath(tag + QStringLiteral("-locale.conf"));
        s.defaultLocale = m_dir.filePath(tag + QStringLiteral("-default-locale"));
        if (!localeConf.isNull())
            test::writeFile(s.localeConf, localeConf);
        if (!defaultLocale.isNull())
            test::writeFile(s.defaultLocale, defaultLocale);
        s.environment = QProcessEnvironment();
        for (const QString& pair : env)
            s.environment.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
        return s;
    }

private Q_SLOTS:
    void interfaceLanguageForLcid_data()
    {
        QTest::addColumn<int>("lcid");
        QTest::addColumn<QString>("language");
        const QString en = QStringLiteral("1");
        QTest::newRow("zh-CN") << 2052 << QStringLiteral("2");
        for (int id : {1028, 3076, 4100, 5124})
            QTest::addRow("traditional %d", id) << id << QStringLiteral("3");
        QTest::newRow("th") << 1054 << QStringLiteral("4");
        for (int id : {1034, 3082, 4106, 5130, 6154, 7178, 8202, 9226, 10250, 11274, 12298, 13322, 14346,
                       15370, 16394, 17418, 18442, 19466, 20490})
            QTest::addRow("spanish %d", id) << id << QStringLiteral("5");
        QTest::newRow("sk") << 1051 << QStringLiteral("6");
        QTest::newRow("fr-FR") << 1036 << QStringLiteral("7");
        QTest::newRow("es-MX is English") << 2058 << en;
        QTest::newRow("es-US is English") << 21514 << en;
        QTest::newRow("fr-CA is English") << 3084 << en;
        QTest::newRow("fr-BE is English") << 2060 << en;
        QTest::newRow("cs") << 1029 << en;
        QTest::newRow("unknown") << 0 << en;
    }

    void interfaceLanguageForLcid()
    {
        QFETCH(int, lcid);
        QTEST(quillora::interfaceLanguageForLcid(lcid), "language");
    }

    void windowsLocaleId_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("lcid");
        QTest::newRow("zh_CN") << QStringLiteral("zh_CN") << 2052;
        QTest::newRow("zh_TW") << QStringLiteral("zh_TW") << 1028;
        QTest::newRow("zh_HK") << QStringLiteral("zh_HK") << 3076;
        QTest::newRow("zh_SG") << QStringLiteral("zh_SG") << 4100;
        QTest::newRow("zh_MO") << QStringLiteral("zh_MO") << 5124;
        QTest::newRow("th_TH") << QStringLiteral("th_TH") << 1054;
        QTest::newRow("sk_SK") << QStringLiteral("sk_SK") << 1051;
        QTest::newRow("fr_FR") << QStringLiteral("fr_FR") << 1036;
        QTest::newRow("fr_CA") << QStringLiteral("fr_CA") << 3084;
        QTest::newRow("fr_BE") << QStringLiteral("fr_BE") << 2060;
        QTest::newRow("fr_CH") << QStringLiteral("fr_CH") << 4108;
        QTest::newRow("es_ES") << QStringLiteral("es_ES") << 3082;
        QTest::newRow("es_MX") << QStringLiteral("es_MX") << 2058;
        QTest::newRow("es_AR") << QStringLiteral("es_AR") << 11274;
        QTest::newRow("es_PR") << QStringLiteral("es_PR") << 20490;
        QTest::newRow("en_US") << QStringLiteral("en_US") << 1033;
        QTest::newRow("en_GB") << QStringLiteral("en_GB") << 2057;
        QTest::newRow("de_DE") << QStringLiteral("de_DE") << 1031;
        QTest::newRow("cs_CZ") << QStringLiteral("cs_CZ") << 1029;
        QTest::newRow("pl_PL") << QStringLiteral("pl_PL") << 1045;
        QTest::newRow("hu_HU") << QStringLiteral("hu_HU") << 1038;
        QTest::newRow("fil_PH") << QStringLiteral("fil_PH") << 1124;
        QTest::newRow("bare sk") << QStringLiteral("sk") << 1051;
        QTest::newRow("bare zh") << QStringLiteral("zh") << 2052;
        QTest::newRow("codeset and modifier") << QStringLiteral("zh_SG.GB2312@stroke") << 4100;
        QTest::newRow("odd case") << QStringLiteral("ES_pr") << 20490;
        QTest::newRow("C") << QStringLiteral("C") << 0;
        QTest::newRow("POSIX") << QStringLiteral("POSIX") << 0;
        QTest::newRow("unknown territory") << QStringLiteral("fr_ZZ") << 0;
        QTest::newRow("unknown language") << QStringLiteral("xx_YY") << 0;
        QTest::newRow("empty") << QString() << 0;
    }

    void windowsLocaleId()
    {
        QFETCH(QString, name);
        QTEST(quillora::windowsLocaleId(name), "lcid");
    }

    void systemLocaleComesFromTheRightPlace()
    {
        const QStringList env{QStringLiteral("LANG=es_ES.UTF-8")};
        const LocaleSources all =
            sources(QStringLiteral("all"), "LANG=fr_FR.UTF-8\n", "LANG=th_TH.UTF-8\n", env);
        QCOMPARE(systemLocaleName(all), QStringLiteral("fr_FR"));
        QCOMPARE(chooseInterfaceLanguage(all), QStringLiteral("7"));

        const LocaleSources noConf =
            sources(QStringLiteral("noconf"), QByteArray(), "LANG=th_TH.UTF-8\n", env);
        QCOMPARE(chooseInterfaceLanguage(noConf), QStringLiteral("4"));

        const LocaleSources confWithoutLang =
            sources(QStringLiteral("nolang"), "# comment\nLC_TIME=de_DE.UTF-8\n",
                    "#  File generated by update-locale\n", env);
        QCOMPARE(systemLocaleName(confWithoutLang), QStringLiteral("es_ES"));
        QCOMPARE(chooseInterfaceLanguage(confWithoutLang), QStringLiteral("5"));

        const LocaleSources onlyEnv =
            sources(QStringLiteral("env"), QByteArray(), QByteArray(),
                    {QStringLiteral("LANG=fr_FR.UTF-8"), QStringLiteral("LC_MESSAGES=sk_SK.UTF-8"),
                     QStringLiteral("LC_ALL=zh_SG.UTF-8")});
        QCOMPARE(chooseInterfaceLanguage(onlyEnv), QStringLiteral("3"));
        const LocaleSources messagesOverLang =
            sources(QStringLiteral("msg"), QByteArray(), QByteArray(),
                    {QStringLiteral("LANG=fr_FR.UTF-8"), QStringLiteral("LC_MESSAGES=sk_SK.UTF-8"),
                     QStringLiteral("LC_ALL=")});
        QCOMPARE(chooseInterfaceLanguage(messagesOverLang), QStringLiteral("6"));

        const LocaleSources nothing = sources(QStringLiteral("none"), QByteArray(), QByteArray(), {});
        QCOMPARE(systemLocaleName(nothing), QStringLiteral("C"));
        QCOMPARE(chooseInterfaceLanguage(nothing), QStringLiteral("1"));
    }

    void assignmentFilesAreReadLikeTheShellDoes()
    {
        const LocaleSources quoted =
            sources(QStringLiteral("quoted"), "LANG=\"sr_RS.UTF-8@latin\"\n", QByteArray(), {});
        QCOMPARE(systemLocaleSpec(quoted), QStringLiteral("sr_RS.UTF-8@latin"));
        QCOMPARE(systemLocaleName(quoted), QStringLiteral("sr_RS"));

        const LocaleSources exported =
            sources(QStringLiteral("export"), QByteArray(), "export LANG='es_MX.UTF-8'\n", {});
        QCOMPARE(systemLocaleName(exported), QStringLiteral("es_MX"));
        QCOMPARE(chooseInterfaceLanguage(exported), QStringLiteral("1"));

        const LocaleSources lastWins = sources(
            QStringLiteral("last"), "LANG=de_DE.UTF-8\nLANG=es_PR.UTF-8\nLANGUAGE=fr\n", QByteArray(), {});
        QCOMPARE(chooseInterfaceLanguage(lastWins), QStringLiteral("5"));

        const LocaleSources emptyLang = sources(QStringLiteral("emptylang"), "LANG=\n", "LANG=th_TH\n", {});
        QCOMPARE(systemLocaleName(emptyLang), QStringLiteral("th_TH"));
    }

    void legacyCodecForLocale_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("codec");
        const QByteArray gbk("GBK"), big5("Big5"), thai("windows-874"), ce("windows-1250"),
            west("windows-1252");
        QTest::newRow("zh_CN") << QStringLiteral("zh_CN.UTF-8") << gbk;
        QTest::newRow("zh_SG") << QStringLiteral("zh_SG") << gbk;
        QTest::newRow("zh_TW") << QStringLiteral("zh_TW") << big5;
        QTest::newRow("zh_HK") << QStringLiteral("zh_HK.UTF-8") << big5;
        QTest::newRow("zh_MO") << QStringLiteral("zh_MO") << big5;
        QTest::newRow("th_TH") << QStringLiteral("th_TH.UTF-8") << thai;
        for (const char* name :
             {"sk_SK", "cs_CZ", "pl_PL", "hu_HU", "sl_SI", "hr_HR", "ro_RO", "sq_AL", "bs_BA"})
            QTest::newRow(name) << QString::fromLatin1(name) << ce;
        QTest::newRow("sr latin") << QStringLiteral("sr_RS.UTF-8@latin") << ce;
        QTest::newRow("sr-Latn") << QStringLiteral("sr-Latn-RS") << ce;
        QTest::newRow("sr cyrillic") << QStringLiteral("sr_RS.UTF-8") << west;
        QTest::newRow("en_US") << QStringLiteral("en_US.UTF-8") << west;
        QTest::newRow("fr_FR") << QStringLiteral("fr_FR") << west;
        QTest::newRow("C") << QStringLiteral("C.UTF-8") << west;
    }

    void legacyCodecForLocale()
    {
        QFETCH(QString, name);
        QTEST(quillora::legacyCodecForLocale(name), "codec");
    }
};

QTEST_GUILESS_MAIN(TestLocaleChoice)
#include "test_locale_choice.moc"
