// The program's command line: the input is its arguments, separated by zero bytes, in the locale's
// encoding as the process receives them.
#include "FuzzCheck.h"
#include "app/StartupCommand.h"

#include <QByteArray>
#include <QDir>
#include <QStringList>
#include <QTemporaryDir>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const QTemporaryDir programFolder;
    QStringList arguments;
    const QByteArray raw(reinterpret_cast<const char*>(data), qsizetype(size));
    if (!raw.isEmpty()) {
        for (const QByteArray& argument : raw.split('\0'))
            arguments.append(QString::fromLocal8Bit(argument));
    }
    const quillora::StartupCommand command(arguments);
    fuzzCheck(!(command.keepsUpdater() && command.startsHidden()), "one command at a time");
    fuzzCheck(quillora::updaterPath(command.line()).endsWith(QLatin1String("/Update.exe")),
              "the updater file sits in the folder");
    fuzzCheck(quillora::removeLeftoverUpdater(programFolder.path(), command).isEmpty(),
              "a folder without an updater has nothing left to do");
    return 0;
}
