// Test entry: a Qt application object exists for the whole run, as in the program. Listing the
// tests (CTest's discovery) makes none, so it needs no display.
#ifdef MIRTEX_UI_TESTS
#include <QApplication>
using TestApplication = QApplication;
#else
#include <QCoreApplication>
using TestApplication = QCoreApplication;
#endif

#include <gtest/gtest.h>

#include <cstring>
#include <optional>

int main(int argc, char **argv)
{
    bool listing = false;
    for (int i = 1; i < argc; ++i)
        listing = listing || std::strcmp(argv[i], "--gtest_list_tests") == 0;
    std::optional<TestApplication> app;
    if (!listing)
        app.emplace(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
