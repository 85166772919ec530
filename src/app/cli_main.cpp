#include "Version.h"
#include "app/Settings.h"
#include "translate/LanguageCatalogue.h"
#include "translate/TranslationEngine.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>

using namespace quillora;

namespace
{

enum ExitCode { ExitTranslated = 0, ExitNothing = 1, ExitUsage = 2 };

void write(FILE* stream, const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
}

int usageError(const QString& message)
{
    write(stderr,
          QStringLiteral("quillora-cli: %1\nUsage: quillora-cli [-s CODE] [-t CODE] [--hl CODE] [--json] "
                         "[TEXT ...]\n")
              .arg(message));
    return ExitUsage;
}

// A catalogue code as typed; "auto" and "" mean detection where allowed. False when unknown.
bool resolveCode(const QString& typed, bool detectionAllowed, QString* code)
{
    if (detectionAllowed && (typed.isEmpty() || typed == QLatin1String("auto"))) {
        code->clear();
        return true;
    }
    if (languageIndexForCode(typed) < 0)
        return false;
    *code = typed;
    return true;
}

int optionField(const ParsedOptions& stored, OptionField field)
{
    return stored.has(field) ? stored.fields.at(field) : parseOptions(kDefaultOptions).fields.at(field);
}

// The languages the window would start with, from the stored "Options".
TranslationRequest storedLanguages()
{
    const ParsedOptions stored = Settings().options();
    TranslationRequest request;
    request.sourceCode = sourceRowEffect(optionField(stored, OptSourceRow)).sourceCode;
    request.targetCode = LanguageCode(optionField(stored, OptTargetRow));
    request.interfaceCode = LanguageCode(optionField(stored, OptInterfaceLanguageRow));
    return request;
}

QString plainText(QString text)
{
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    while (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    return text + QLatin1Char('\n');
}

QString plainOutput(const TranslationResult& result)
{
    QString out = plainText(result.translation);
    if (!result.romanization.isEmpty())
        out += QLatin1Char('\n') + plainText(result.romanization);
    if (!result.dictionary.isEmpty())
        out += QLatin1Char('\n') + plainText(result.dictionary);
    return out;
}

QString jsonOutput(const TranslationRequest& request, const TranslationResult& result)
{
    const QJsonObject object{
        {QStringLiteral("translation"), result.translation},
        {QStringLiteral("romanization"), result.romanization},
        {QStringLiteral("dictionary"), result.dictionary},
        {QStringLiteral("source"), request.text},
        {QStringLiteral("sourceLanguage"),
         request.sourceCode.isEmpty() ? QStringLiteral("auto") : request.sourceCode},
        {QStringLiteral("targetLanguage"), request.targetCode},
    };
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)) + QLatin1Char('\n');
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("quillora-cli"));
    QCoreApplication::setApplicationVersion(versionText());

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Translates TEXT (or standard input) with the service the Quillora window uses.\n"
                       "Languages default to the window's stored options."));
    const QCommandLineOption helpOption = parser.addHelpOption();
    const QCommandLineOption versionOption = parser.addVersionOption();
    const QCommandLineOption sourceOption({QStringLiteral("s"), QStringLiteral("source")},
                                          QStringLiteral("Source language code, \"auto\" to detect."),
                                          QStringLiteral("CODE"));
    const QCommandLineOption targetOption({QStringLiteral("t"), QStringLiteral("target")},
                                          QStringLiteral("Target language code."), QStringLiteral("CODE"));
    const QCommandLineOption hlOption(QStringLiteral("hl"),
                                      QStringLiteral("Interface language code for the service."),
                                      QStringLiteral("CODE"));
    const QCommandLineOption jsonOption(QStringLiteral("json"), QStringLiteral("Print one JSON object."));
    parser.addOptions({sourceOption, targetOption, hlOption, jsonOption});
    parser.addPositionalArgument(QStringLiteral("TEXT"),
                                 QStringLiteral("Words to translate, joined by spaces."),
                                 QStringLiteral("[TEXT ...]"));

    if (!parser.parse(QCoreApplication::arguments()))
        return usageError(parser.errorText());
    if (parser.isSet(helpOption))
        parser.showHelp(ExitTranslated);
    if (parser.isSet(versionOption))
        parser.showVersion();

    TranslationRequest request = storedLanguages();
    if (parser.isSet(sourceOption) && !resolveCode(parser.value(sourceOption), true, &request.sourceCode))
        return usageError(QStringLiteral("unknown language code \"%1\"").arg(parser.value(sourceOption)));
    if (parser.isSet(targetOption) && !resolveCode(parser.value(targetOption), false, &request.targetCode))
        return usageError(QStringLiteral("unknown language code \"%1\"").arg(parser.value(targetOption)));
    if (parser.isSet(hlOption) && !resolveCode(parser.value(hlOption), false, &request.interfaceCode))
        return usageError(QStringLiteral("unknown language code \"%1\"").arg(parser.value(hlOption)));

    const QStringList words = parser.positionalArguments();
    if (words.isEmpty()) {
        QFile in;
        if (!in.open(stdin, QIODevice::ReadOnly))
            return usageError(QStringLiteral("cannot read standard input"));
        request.text = QString::fromUtf8(in.readAll());
    } else {
        request.text = words.join(QLatin1Char(' '));
    }

    TranslationEngine engine;
    const TranslationOutcome outcome = engine.translate(request);
    if (!outcome.ok()) {
        write(stderr, QStringLiteral("quillora-cli: %1\n").arg(failureReasonText(outcome.failure)));
        return ExitNothing;
    }
    write(stdout,
          parser.isSet(jsonOption) ? jsonOutput(request, outcome.result) : plainOutput(outcome.result));
    return ExitTranslated;
}
