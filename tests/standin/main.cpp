#include "standin/StandinService.h"

#include <QCoreApplication>
#include <cstdio>

// The stand-in service as its own process: prints "PORT <n>" and serves until killed.
int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    quillora::test::StandinService service;
    if (!service.listen())
        return 1;
    std::printf("PORT %u\n", unsigned(service.port()));
    std::fflush(stdout);
    return app.exec();
}
