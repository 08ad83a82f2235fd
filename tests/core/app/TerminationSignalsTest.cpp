#include "core/app/TerminationSignals.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <gtest/gtest.h>

#include <csignal>

using namespace mirtex;

TEST(TerminationSignalsTest, EachSignalArrivesOnTheEventLoopAndHandlersAreRestored)
{
    struct sigaction before
    {};

    sigaction(SIGTERM, nullptr, &before);
    {
        TerminationSignals termination;
        ASSERT_TRUE(termination.isActive());
        EXPECT_FALSE(TerminationSignals().isActive()); // one at a time

        QList<int> received;
        QObject::connect(&termination, &TerminationSignals::received, [&](int number) {
            received.append(number);
        });
        for (int number : {SIGTERM, SIGHUP, SIGINT, SIGTERM})
            ASSERT_EQ(std::raise(number), 0);
        EXPECT_TRUE(received.isEmpty()); // never from inside the handler

        QDeadlineTimer deadline(5000);
        while (received.size() < 4 && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        EXPECT_EQ(received, QList<int>({SIGTERM, SIGHUP, SIGINT, SIGTERM}));
    }

    struct sigaction after
    {};

    sigaction(SIGTERM, nullptr, &after);
    EXPECT_EQ(after.sa_handler, before.sa_handler);

    // A new instance after the first is gone works again.
    TerminationSignals again;
    EXPECT_TRUE(again.isActive());
}
