#include "standin/StandinService.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <cstdio>

using quillora::test::StandinService;

// The stand-in service as its own process, for tests that start the program or the command-line tool.
int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Stand-in translation service on 127.0.0.1 for tests."));
    parser.addHelpOption();
    const QCommandLineOption portOption(QStringLiteral("port"),
                                        QStringLiteral("Port (default: any free one)."), QStringLiteral("n"),
                                        QStringLiteral("0"));
    const QCommandLineOption formOption(QStringLiteral("form"),
                                        QStringLiteral("legacy, changed, empty or refused."),
                                        QStringLiteral("mode"), QStringLiteral("legacy"));
    const QCommandLineOption jsonOption(QStringLiteral("json"), QStringLiteral("ok, 429, 503 or html."),
                                        QStringLiteral("mode"), QStringLiteral("ok"));
    const QCommandLineOption delayOption(QStringLiteral("delay-ms"),
                                         QStringLiteral("Delay before every answer."), QStringLiteral("ms"),
                                         QStringLiteral("0"));
    const QCommandLineOption fileOption(QStringLiteral("file"),
                                        QStringLiteral("Serve the file PATH as /files/NAME (repeatable)."),
                                        QStringLiteral("NAME=PATH"));
    parser.addOptions({portOption, formOption, jsonOption, delayOption, fileOption});
    parser.process(app);

    StandinService service;
    bool formOk = false;
    bool jsonOk = false;
    bool delayOk = false;
    service.setFormMode(StandinService::formModeFromName(parser.value(formOption), &formOk));
    service.setJsonMode(StandinService::jsonModeFromName(parser.value(jsonOption), &jsonOk));
    service.setDelayMs(parser.value(delayOption).toInt(&delayOk));
    if (!formOk || !jsonOk || !delayOk) {
        std::fprintf(stderr, "quillora-standin: unknown mode\n");
        return 2;
    }
    for (const QString& spec : parser.values(fileOption)) {
        const int eq = spec.indexOf(QLatin1Char('='));
        QFile file(spec.mid(eq + 1));
        if (eq <= 0 || !file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "quillora-standin: cannot serve %s\n", qPrintable(spec));
            return 2;
        }
        service.setFile(spec.left(eq), file.readAll());
    }
    if (!service.listen(quint16(parser.value(portOption).toUInt()))) {
        std::fprintf(stderr, "quillora-standin: cannot listen\n");
        return 1;
    }
    std::printf("PORT %u\n", unsigned(service.port()));
    std::fflush(stdout);
    return app.exec();
}
