// The yardstick for the program's start-up: a bare Qt window of about the same make-up (four text
// boxes, six buttons, a 59-item combo box, a menu). With QUILLORA_BENCH_EXIT_WHEN_SHOWN=1 it quits
// as soon as the window is first exposed, the same hook the program has.
#include "ui/ExitWhenShown.h"

#include <QApplication>
#include <QComboBox>
#include <QGridLayout>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
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
    quillora::ExitWhenShown exitWhenShown;
    if (quillora::ExitWhenShown::wanted())
        app.installEventFilter(&exitWhenShown);
    window.show();
    return app.exec();
}
