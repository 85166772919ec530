// The yardstick for the program's start-up: a bare Qt window of about the same make-up (four text
// boxes, six buttons, a 59-item combo box, a menu) that, like the program's update check, makes one
// HTTPS request a second after showing: to the first argument, by default a closed local port, so
// nothing leaves the machine. Reports its first showing like the program (ui/ShownReport.h).
#include "ui/ShownReport.h"

#include <QApplication>
#include <QComboBox>
#include <QGridLayout>
#include <QMainWindow>
#include <QMenuBar>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    const QUrl address(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("https://127.0.0.1:9/"));
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Minimal"));
    QMenu* file = window.menuBar()->addMenu(QStringLiteral("&File"));
    file->addAction(QStringLiteral("Open..."));
    file->addAction(QStringLiteral("Exit"), &app, &QCoreApplication::quit);

    auto* central = new QWidget(&window);
    auto* grid = new QGridLayout(central);
    for (int i = 0; i < 4; ++i)
        grid->addWidget(new QPlainTextEdit(central), i + 1, 0, 1, 6);
    auto* combo = new QComboBox(central);
    for (int i = 0; i < 59; ++i)
        combo->addItem(QStringLiteral("Language %1").arg(i));
    grid->addWidget(combo, 0, 0, 1, 6);
    for (int i = 0; i < 6; ++i)
        grid->addWidget(new QPushButton(QStringLiteral("Button %1").arg(i), central), 5, i);
    window.setCentralWidget(central);
    window.resize(735, 561);
    quillora::ShownReport shownReport;
    if (quillora::ShownReport::wanted())
        app.installEventFilter(&shownReport);
    window.show();

    QNetworkAccessManager network;
    QTimer::singleShot(1000, &network, [&network, address] {
        QNetworkReply* reply = network.get(QNetworkRequest(address));
        QObject::connect(reply, &QNetworkReply::finished, reply, &QObject::deleteLater);
    });
    return app.exec();
}
