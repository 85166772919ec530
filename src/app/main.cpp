#include <QApplication>
#include <QMainWindow>

#include "Version.h"

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Quillora %1").arg(quillora::versionText()));
    window.show();
    return app.exec();
}
