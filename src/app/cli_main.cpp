#include "Version.h"
#include "app/Settings.h"
#include "translate/LanguageCatalogue.h"
#include "translate/TranslationSession.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>

using namespace quillora;

namespace
{

enum ExitCode { ExitTranslated = 0, ExitNothing = 1, ExitUsage = 2, ExitRefused = 3, ExitTooLong = 4 };

void write(FILE* stream, const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
}

int usageError(const QString& message)
{
    write(stderr, QStringLiteral("quillora-cli: %1\nUsage: quillora-cli [-s CODE] [-t CODE] [--hl CODE] "
                                 "[--engine service|offline|auto] [--timeout SECONDS] [--json] [TEXT ...] | "
                                 "--list-offline\n")
                      .arg(message));
    return ExitUsage;
}

// A catalogue code as typed, in any case; "he" is the catalogue's "iw"; "auto" and "" mean detection
// where allowed. False when unknown.
bool resolveCode(const QString& typed, bool detectionAllowed, QString* code)
{
    if (detectionAllowed &&
        (typed.isEmpty() || typed.compare(QLatin1String("auto"), Qt::CaseInsensitive) == 0)) {
        code->clear();
        return true;
    }
    const QString wanted =
        typed.compare(QLatin1String("he"), Qt::CaseInsensitive) == 0 ? QStringLiteral("iw") : typed;
    for (int index = 0; index < kLanguageCount; ++index) {
        if (LanguageCode(index).compare(wanted, Qt::CaseInsensitive) == 0) {
            *code = LanguageCode(index);
            return true;
        }
    }
    return false;
}

// Standard input up to one byte over the cap: a larger text is refused without reading it all.
bool readBounded(QFile& in, QByteArray* text)
{
    while (text->size() <= kMaxTextBytes) {
        const QByteArray chunk = in.read(kMaxTextBytes + 1 - text->size());
        if (chunk.isEmpty())
            break;
        text->append(chunk);
    }
    return text->size() <= kMaxTextBytes;
}

int failureExitCode(TranslationFailure failure)
{
    switch (failure) {
    case TranslationFailure::Refused:
    case TranslationFailure::HumanCheck:
        return ExitRefused;
    case TranslationFailure::TooLong:
        return ExitTooLong;
    default:
        return ExitNothing;
    }
}

QString failureMessage(const TranslationRequest& request, const SessionResult& result)
{
    const TranslationOutcome& outcome = result.outcome;
    if (result.uncovered)
        return QStringLiteral(
                   "No installed Apertium pair translates this text into \"%1\" (see --list-offline).")
            .arg(request.targetCode);
    QString message = failureReasonText(outcome.failure, result.offlinePair.has_value());
    if (outcome.retryAt.isValid())
        message += QStringLiteral(" It will not be asked again before %1.")
                       .arg(localTimeText(outcome.retryAt, QDateTime::currentDateTime()));
    return message;
}

// The languages the window would start with, from the stored "Options": its pickers keep their
// default rows where a field did not read or names a row they lack.
TranslationRequest storedLanguages()
{
    const Options stored = Settings().options();
    const Options defaults = Options::defaults();
    const auto row = [](std::optional<int> read, std::optional<int> fallback, int rows) {
        return read && *read >= 0 && *read < rows ? *read : *fallback;
    };
    TranslationRequest request;
    const int source = row(stored.sourceRow, defaults.sourceRow, kLanguageCount + kSourcePickerOffset);
    request.sourceCode = sourceRowEffect(source).sourceCode;
    request.targetCode = LanguageCode(row(stored.targetRow, defaults.targetRow, kLanguageCount));
    request.interfaceCode =
        LanguageCode(stored.interfaceLanguageRow.value_or(*defaults.interfaceLanguageRow));
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

bool parseEngine(const QString& typed, EngineChoice* choice)
{
    const QHash<QString, EngineChoice> names{{QStringLiteral("service"), EngineChoice::Service},
                                             {QStringLiteral("offline"), EngineChoice::Offline},
                                             {QStringLiteral("auto"), EngineChoice::Auto}};
    if (!names.contains(typed))
        return false;
    *choice = names.value(typed);
    return true;
}

QString engineName(const SessionResult& result)
{
    return result.offlinePair ? QStringLiteral("Apertium ") + result.offlinePair->mode
                              : QStringLiteral("service");
}

// "en-es<TAB>eng-spa" per installed direction.
QString offlineListing(const QList<OfflinePair>& pairs)
{
    QString out;
    for (const OfflinePair& pair : pairs)
        out +=
            pair.source + QLatin1Char('-') + pair.target + QLatin1Char('\t') + pair.mode + QLatin1Char('\n');
    return out;
}

QString jsonOutput(const TranslationRequest& request, const SessionResult& session)
{
    const TranslationResult& result = session.outcome.result;
    const QJsonObject object{
        {QStringLiteral("translation"), result.translation},
        {QStringLiteral("romanization"), result.romanization},
        {QStringLiteral("dictionary"), result.dictionary},
        {QStringLiteral("source"), request.text},
        {QStringLiteral("sourceLanguage"),
         request.sourceCode.isEmpty() ? QStringLiteral("auto") : request.sourceCode},
        {QStringLiteral("targetLanguage"), request.targetCode},
        {QStringLiteral("engine"), engineName(session)},
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
        QStringLiteral(
            "Translates TEXT (or standard input, at most %1 KiB) with the service the Quillora window "
            "uses.\nLanguages default to the window's stored options.\n"
            "Exit status: 0 translated, 1 nothing came back, 2 usage error, 3 the service refuses\n"
            "for now (asked again only after the time it named), 4 the text is too long.")
            .arg(kMaxTextBytes / 1024));
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
    const QCommandLineOption engineOption(
        QStringLiteral("engine"),
        QStringLiteral(
            "service, offline (installed Apertium pairs) or auto: the service, and an installed pair "
            "when it refuses or fails (default)."),
        QStringLiteral("ENGINE"), QStringLiteral("auto"));
    const QCommandLineOption timeoutOption(
        QStringLiteral("timeout"),
        QStringLiteral("Give up after SECONDS (default %1).").arg(HttpClient::kDefaultTimeoutMs / 1000),
        QStringLiteral("SECONDS"), QString::number(HttpClient::kDefaultTimeoutMs / 1000));
    const QCommandLineOption listOfflineOption(QStringLiteral("list-offline"),
                                               QStringLiteral("List the installed offline pairs and exit."));
    parser.addOptions(
        {sourceOption, targetOption, hlOption, jsonOption, engineOption, timeoutOption, listOfflineOption});
    parser.addPositionalArgument(QStringLiteral("TEXT"),
                                 QStringLiteral("Words to translate, joined by spaces."),
                                 QStringLiteral("[TEXT ...]"));

    if (!parser.parse(QCoreApplication::arguments()))
        return usageError(parser.errorText());
    if (parser.isSet(helpOption))
        parser.showHelp(ExitTranslated);
    if (parser.isSet(versionOption))
        parser.showVersion();

    // The one place that waits: the answers come by callback and signal.
    QEventLoop loop;
    OfflineEngine offline;
    if (parser.isSet(listOfflineOption)) {
        QList<OfflinePair> pairs;
        offline.listPairs([&](const QList<OfflinePair>& listed) {
            pairs = listed;
            loop.quit();
        });
        if (!offline.knownPairs())
            loop.exec();
        write(stdout, offlineListing(pairs));
        return ExitTranslated;
    }
    EngineChoice choice = EngineChoice::Auto;
    if (!parseEngine(parser.value(engineOption), &choice))
        return usageError(QStringLiteral("unknown engine \"%1\"").arg(parser.value(engineOption)));
    bool timeoutOk = false;
    const int timeoutSecs = parser.value(timeoutOption).toInt(&timeoutOk);
    if (!timeoutOk || timeoutSecs < 1 || timeoutSecs > 24 * 3600)
        return usageError(QStringLiteral("bad time limit \"%1\"").arg(parser.value(timeoutOption)));

    TranslationRequest request = storedLanguages();
    if (parser.isSet(sourceOption) && !resolveCode(parser.value(sourceOption), true, &request.sourceCode))
        return usageError(QStringLiteral("unknown language code \"%1\"").arg(parser.value(sourceOption)));
    if (parser.isSet(targetOption) && !resolveCode(parser.value(targetOption), false, &request.targetCode))
        return usageError(QStringLiteral("unknown language code \"%1\"").arg(parser.value(targetOption)));
    if (parser.isSet(hlOption) && !resolveCode(parser.value(hlOption), false, &request.interfaceCode))
        return usageError(QStringLiteral("unknown language code \"%1\"").arg(parser.value(hlOption)));

    const QStringList words = parser.positionalArguments();
    bool withinCap = true;
    if (words.isEmpty()) {
        QFile in;
        if (!in.open(stdin, QIODevice::ReadOnly))
            return usageError(QStringLiteral("cannot read standard input"));
        QByteArray input;
        withinCap = readBounded(in, &input);
        request.text = QString::fromUtf8(input);
    } else {
        request.text = words.join(QLatin1Char(' '));
    }
    if (!withinCap || request.text.toUtf8().size() > kMaxTextBytes) {
        write(stderr,
              QStringLiteral("quillora-cli: %1\n").arg(failureReasonText(TranslationFailure::TooLong)));
        return ExitTooLong;
    }

    TranslationEngine engine;
    engine.http().setTimeoutMs(timeoutSecs * 1000);
    offline.setTimeoutMs(timeoutSecs * 1000);
    // No temporary folder: no speech pages.
    TranslationSession session(&engine, &offline, QString());
    session.setSourceRow(
        request.sourceCode.isEmpty() ? 0 : languageIndexForCode(request.sourceCode) + kSourcePickerOffset);
    session.setTargetRow(languageIndexForCode(request.targetCode));
    session.setInterfaceRow(languageIndexForCode(request.interfaceCode));
    SessionResult result;
    QObject::connect(&session, &TranslationSession::finished, &loop, [&](const SessionResult& finished) {
        result = finished;
        loop.quit();
    });
    session.translate(request.text, choice);
    loop.exec();
    if (!result.outcome.ok()) {
        write(stderr, QStringLiteral("quillora-cli: %1\n").arg(failureMessage(request, result)));
        return failureExitCode(result.outcome.failure);
    }
    if (parser.isSet(jsonOption)) {
        write(stdout, jsonOutput(request, result));
        return ExitTranslated;
    }
    if (result.offlinePair && choice == EngineChoice::Auto)
        write(stderr, QStringLiteral("quillora-cli: translated offline by %1\n").arg(engineName(result)));
    write(stdout, plainOutput(result.outcome.result));
    return ExitTranslated;
}
