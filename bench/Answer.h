#pragma once

#include <QEventLoop>

// Runs the event loop until a callback-style call has answered: no polling, so the wait adds nothing to
// what is measured.
template <typename T, typename Start> T answer(Start start)
{
    T got{};
    bool done = false;
    QEventLoop loop;
    start([&](const T& value) {
        got = value;
        done = true;
        loop.quit();
    });
    if (!done)
        loop.exec();
    return got;
}
