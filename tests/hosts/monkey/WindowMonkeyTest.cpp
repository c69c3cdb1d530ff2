// Random events of every kind on the whole window, over services that do wrong whatever services can do
// wrong: nothing crashes, nothing stops, nothing stays behind.
#include "tests/hosts/monkey/WindowMonkey.h"
#include "tests/hosts/monkey/ProcessFigures.h"

#include "pages/Pages.h"

#include <QApplication>
#include <QPixmapCache>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

namespace {

/// A number that the environment may set for a long run.
int Setting(const char* AName, int ADefault) {
    const int value = qEnvironmentVariableIntValue(AName);
    return value > 0 ? value : ADefault;
}

class WindowMonkey : public testing::Test {
protected:
    WindowMonkey() : FontBefore(QApplication::font()), CacheBefore(QPixmapCache::cacheLimit()) {
        // Of each picture that it ever cached the library keeps the name for good, and the style makes others
        // for each size of a control: that would be counted, too.
        QPixmapCache::setCacheLimit(0);
        QApplication::setQuitOnLastWindowClosed(false);
        StartPages();
    }
    ~WindowMonkey() override {
        StopPages();
        QPixmapCache::setCacheLimit(CacheBefore);
        QApplication::setQuitOnLastWindowClosed(true);
    }

    /// One cycle; returns what the process holds after everything was closed.
    TProcessFigures Run(quint32 ASeed, int AEvents) {
        {
            TWindowMonkey monkey(ASeed);
            monkey.Run(AEvents);
            Check(monkey);
        }
        QApplication::setFont(FontBefore);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        return TProcessFigures::Now();
    }

    void Check(const TWindowMonkey& AMonkey) {
        EXPECT_EQ(AMonkey.World().Wrongs(), QStringList());
        for (const TMonkeyPace::TPause& pause : AMonkey.Pace().Pauses())
            ADD_FAILURE() << "a pause of " << pause.Ms << " ms after " << pause.During;
        std::string acts;
        for (const auto& counts : {AMonkey.Acts(), AMonkey.World().Shown}) {
            for (const auto& [name, count] : counts)
                acts += name + " " + std::to_string(count) + ", ";
        }
        std::vector<qint64> repaints = AMonkey.Pace().Repaints();
        std::sort(repaints.begin(), repaints.end());
        const auto at = [&](double APart) {
            return repaints.empty() ? 0
                                    : repaints[static_cast<std::size_t>(APart * double(repaints.size() - 1))];
        };
        // Few of them say nothing on a machine that has more to do.
        if (repaints.size() > 20) {
            EXPECT_LE(at(0.5), 150 * Slowness()) << "between two paintings of a running request's progress";
        }
        std::printf("%s\nlongest pause %lld ms; %zu repaints of running requests, after %lld, %lld, at most "
                    "%lld ms\n",
                    acts.c_str(), AMonkey.Pace().LongestMs(), repaints.size(), at(0.5), at(0.99), at(1));
        std::fflush(stdout);
    }

    const QFont FontBefore;
    const int CacheBefore;
};

} // namespace

TEST_F(WindowMonkey, LeavesTheExplorerWhole) {
    const int cycles = Setting("ZO_MONKEY_SEEDS", 2);
    const int events = Setting("ZO_MONKEY_EVENTS", 2000);
    const int seed = Setting("ZO_MONKEY_FIRST_SEED", 1);
    TProcessFigures first;
    for (int i = 0; i < cycles; ++i) {
        SCOPED_TRACE(testing::Message() << "seed " << seed + i);
        const TProcessFigures now = Run(static_cast<quint32>(seed + i), events);
        std::cout << "seed " << seed + i << " leaves " << now << std::endl;
        if (i == 0)
            first = now;
        EXPECT_LE(now.Descriptors, first.Descriptors);
        EXPECT_LE(now.Threads, first.Threads);
        if (CountsMemory()) {
            EXPECT_LE(now.Memory, first.Memory + first.Memory / 10);
        }
    }
}
