// Loads the speech module the way the program does from the program folder given (the install
// check): exits 0 when it loads, otherwise prints why and exits 1.
#include "desktop/SpeechModule.h"

#include <QCoreApplication>
#include <cstdio>

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QString error;
    if (argc == 2 && quillora::loadSpeechModule(QString::fromLocal8Bit(argv[1]), &error))
        return 0;
    std::fprintf(stderr, "usage: quillora-speech-probe PROGRAM_FOLDER\n%s\n", qUtf8Printable(error));
    return 1;
}
