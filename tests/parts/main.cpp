#include "parts/Parts.h"

#include <QApplication>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    int failed = 0;
    for (auto* run : {testHeldInput, testWindowVisibility, testTextPanes, testLanguagePickers, testWebPageBar,
                      testFocusMark})
        failed += run(argc, argv);
    return failed;
}
