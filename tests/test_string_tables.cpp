#include "app/StringTable.h"

#include <QFile>
#include <QMap>
#include <QSet>
#include <QStringDecoder>
#include <QTest>

using quillora::StringTable;

namespace
{

constexpr int kEnglish = 1;
constexpr int kSimplified = 2;
constexpr int kTraditional = 3;

QList<int> expectedOffsets()
{
    QList<int> offsets;
    for (int offset = 1; offset <= 128; ++offset) {
        if (offset != 97 && offset != 98)
            offsets.append(offset);
    }
    for (int offset = quillora::MsgServiceRefused; offset <= quillora::MsgTranslating; ++offset)
        offsets.append(offset);
    return offsets;
}

// A table file read byte for byte, with every fault in its form collected instead of skipped.
struct RawTable {
    QMap<int, QString> texts;
    QStringList faults;
};

RawTable readRawTable(int language)
{
    RawTable table;
    QFile file(QStringLiteral(":/strings/lang%1.txt").arg(language));
    if (!file.open(QIODevice::ReadOnly)) {
        table.faults.append(QStringLiteral("resource missing"));
        return table;
    }
    const QByteArray bytes = file.readAll();
    if (bytes.startsWith("\xEF\xBB\xBF"))
        table.faults.append(QStringLiteral("byte order mark"));
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString content = decoder(bytes);
    if (decoder.hasError())
        table.faults.append(QStringLiteral("invalid UTF-8"));

    const QList<int> offsets = expectedOffsets();
    const QSet<int> known(offsets.cbegin(), offsets.cend());
    const QStringList lines = content.split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < lines.size(); ++i) {
        QString line = lines.at(i);
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const QString where = QStringLiteral("line %1").arg(i + 1);
        const qsizetype tab = line.indexOf(QLatin1Char('\t'));
        bool ok = false;
        const int offset = tab > 0 ? line.left(tab).toInt(&ok) : 0;
        if (!ok) {
            table.faults.append(where + QStringLiteral(": no offset"));
            continue;
        }
        if (!known.contains(offset))
            table.faults.append(where + QStringLiteral(": unknown offset %1").arg(offset));
        if (table.texts.contains(offset))
            table.faults.append(where + QStringLiteral(": duplicate offset %1").arg(offset));
        const QString text = line.mid(tab + 1);
        if (text.trimmed().isEmpty())
            table.faults.append(where + QStringLiteral(": empty text"));
        table.texts.insert(offset, text);
    }
    return table;
}

QChar acceleratorOf(const QString& text)
{
    const qsizetype amp = text.indexOf(QLatin1Char('&'));
    return amp >= 0 && amp + 1 < text.size() ? text.at(amp + 1).toCaseFolded() : QChar();
}

void addTranslatedLanguages()
{
    QTest::addColumn<int>("language");
    const char* names[] = {"zh-Hans", "zh-Hant", "th", "es", "sk", "fr"};
    for (int language = 2; language <= quillora::kInterfaceLanguageCount; ++language)
        QTest::newRow(names[language - 2]) << language;
}

} // namespace

class TestStringTables : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filesAreWellFormed_data();
    void filesAreWellFormed();
    void loaderServesEveryOffset_data();
    void loaderServesEveryOffset();
    void tablesAreTranslated_data();
    void tablesAreTranslated();
    void acceleratorsSurviveTranslation_data();
    void acceleratorsSurviveTranslation();
    void productNameAndContactStayConsistent_data();
    void productNameAndContactStayConsistent();
    void traditionalChineseIsTaiwanese();
};

void TestStringTables::filesAreWellFormed_data()
{
    QTest::addColumn<int>("language");
    for (int language = 1; language <= quillora::kInterfaceLanguageCount; ++language)
        QTest::newRow(qPrintable(QStringLiteral("lang%1").arg(language))) << language;
}

void TestStringTables::filesAreWellFormed()
{
    QFETCH(int, language);
    const RawTable table = readRawTable(language);
    QVERIFY2(table.faults.isEmpty(), qPrintable(table.faults.join(QStringLiteral("; "))));
    QCOMPARE(table.texts.keys(), expectedOffsets());

    // Stray blanks are editing slips in the translations (English 16 keeps its own trailing blank).
    if (language != kEnglish) {
        for (auto it = table.texts.cbegin(); it != table.texts.cend(); ++it)
            QVERIFY2(it.value() == it.value().trimmed(), qPrintable(QString::number(it.key())));
    }

    // The pickers list 59 languages; two equal names would make two rows indistinguishable.
    QSet<QString> names;
    for (int offset = 38; offset <= 96; ++offset)
        names.insert(table.texts.value(offset));
    QCOMPARE(names.size(), 59);
    QVERIFY(!names.contains(table.texts.value(99)));
}

void TestStringTables::loaderServesEveryOffset_data()
{
    filesAreWellFormed_data();
}

void TestStringTables::loaderServesEveryOffset()
{
    QFETCH(int, language);
    const RawTable raw = readRawTable(language);
    for (int offset : expectedOffsets()) {
        const int id = language * 1000 + offset;
        QVERIFY2(StringTable::contains(id), qPrintable(QString::number(id)));
        QCOMPARE(StringTable::text(id), raw.texts.value(offset));
    }
    for (int offset : {97, 98, 129, 200, 210})
        QVERIFY(!StringTable::contains(language * 1000 + offset));
}

void TestStringTables::tablesAreTranslated_data()
{
    addTranslatedLanguages();
}

void TestStringTables::tablesAreTranslated()
{
    QFETCH(int, language);
    const RawTable english = readRawTable(kEnglish);
    const RawTable table = readRawTable(language);

    // Only names (Office XP, the product, some language names) and international words may stay as they are.
    QStringList same;
    for (auto it = english.texts.cbegin(); it != english.texts.cend(); ++it) {
        if (table.texts.value(it.key()) == it.value())
            same.append(QString::number(it.key()));
    }
    QVERIFY2(same.size() * 100 < english.texts.size() * 15, qPrintable(same.join(QLatin1Char(' '))));

    for (int offset : {2, 5, 25, 99, 100, 102, 103, 104, 110, 201, 209})
        QVERIFY2(table.texts.value(offset) != english.texts.value(offset),
                 qPrintable(QString::number(offset)));

    // The menu of interface languages names each of the seven in the current language.
    QSet<QString> interfaceNames;
    for (int offset : {53, 47, 48, 90, 87, 85, 57})
        interfaceNames.insert(StringTable::text(language, offset));
    QCOMPARE(interfaceNames.size(), 7);
    QVERIFY(StringTable::text(language, 53) != StringTable::text(kEnglish, 53));
}

void TestStringTables::acceleratorsSurviveTranslation_data()
{
    addTranslatedLanguages();
}

void TestStringTables::acceleratorsSurviveTranslation()
{
    QFETCH(int, language);
    const RawTable english = readRawTable(kEnglish);
    const RawTable table = readRawTable(language);
    for (auto it = english.texts.cbegin(); it != english.texts.cend(); ++it) {
        if (!it.value().contains(QLatin1Char('&')))
            continue;
        const QString text = table.texts.value(it.key());
        QVERIFY2(text.count(QLatin1Char('&')) == 1, qPrintable(QString::number(it.key())));
        QVERIFY2(acceleratorOf(text).isLetter(), qPrintable(text));
    }

    // The four menu bar titles share one Alt key space.
    QSet<QChar> barKeys;
    for (int offset : {1, 6, 12, 126})
        barKeys.insert(acceleratorOf(table.texts.value(offset)));
    QCOMPARE(barKeys.size(), 4);
}

void TestStringTables::productNameAndContactStayConsistent_data()
{
    filesAreWellFormed_data();
}

void TestStringTables::productNameAndContactStayConsistent()
{
    QFETCH(int, language);
    const QString product = StringTable::text(language, 17);
    QVERIFY(!product.isEmpty());
    for (int offset : {14, 15, 19, 20, 106, 119})
        QVERIFY2(StringTable::text(language, offset).contains(product), qPrintable(QString::number(offset)));
    QVERIFY(StringTable::text(language, 106).startsWith(QStringLiteral("© 2026")));
    QVERIFY(StringTable::text(language, 107).endsWith(QStringLiteral("quillora@zelvan.org")));
    QVERIFY(StringTable::text(language, 18).contains(QStringLiteral("(F11)")));
    QVERIFY(StringTable::text(language, quillora::MsgHotKeyTaken).contains(QStringLiteral("F11")));
    QVERIFY(StringTable::text(language, 103).contains(QStringLiteral("58")));
}

void TestStringTables::traditionalChineseIsTaiwanese()
{
    const RawTable simplified = readRawTable(kSimplified);
    const RawTable traditional = readRawTable(kTraditional);

    int differing = 0;
    for (auto it = simplified.texts.cbegin(); it != simplified.texts.cend(); ++it) {
        if (traditional.texts.value(it.key()) != it.value())
            ++differing;
    }
    QVERIFY2(differing * 10 > simplified.texts.size() * 9, qPrintable(QString::number(differing)));

    // Characters that exist only in one of the two scripts, pairwise.
    const QString simplifiedOnly =
        QStringLiteral("译语设关简体网连开选项显动复制贴检测结务应时运认换种软为这载详细发现");
    const QString traditionalOnly =
        QStringLiteral("譯語設關簡體網連開選項顯動複製貼檢測結務應時運認換種軟為這載詳細發現");
    QCOMPARE(simplifiedOnly.size(), traditionalOnly.size());
    const QString allSimplified = QStringList(simplified.texts.values()).join(QString());
    const QString allTraditional = QStringList(traditional.texts.values()).join(QString());
    for (QChar c : simplifiedOnly)
        QVERIFY2(!allTraditional.contains(c), qPrintable(QString(c)));
    for (QChar c : traditionalOnly)
        QVERIFY2(!allSimplified.contains(c), qPrintable(QString(c)));

    // Mainland wording written in traditional characters is not what a reader in Taiwan expects.
    for (const char* mainland :
         {"軟件", "網絡", "默認", "信息", "程序", "界面", "文件", "緩存", "菜單", "設置", "鏈接"})
        QVERIFY2(!allTraditional.contains(QString::fromUtf8(mainland)), mainland);
}

QTEST_GUILESS_MAIN(TestStringTables)
#include "test_string_tables.moc"
