#include "platform/common/Language.h"
#include "platform/common/PointerConnectionsDispatcher.h"
#include "platform/common/Series.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <sigc++/signal.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

TEST(Language, RussianLocalesGiveRussianAndAllOthersEnglish) {
    for (const char* ru : {"ru_RU.UTF-8", "ru_RU", "ru", "ru_UA.KOI8-U"})
        EXPECT_EQ(lng::languageFromLocale(ru), 1) << ru;
    for (const char* other : {"en_US.UTF-8", "C", "POSIX", "", "uk_UA.UTF-8", "de_DE", "C.UTF-8"})
        EXPECT_EQ(lng::languageFromLocale(other), 0) << other;
}

// Run in a child with a chosen environment (see below); checks the language
// the library picked before main.
TEST(Language, StartUpLanguageProbe) {
    const char* expected = std::getenv("TAVNA_EXPECT_LANGUAGE");
    if (expected == nullptr)
        GTEST_SKIP() << "only meaningful in the child run";
    EXPECT_EQ(lng::language, std::atoi(expected));
}

int languageAtStartUp(const std::string& environment) {
    const std::string cmd = "env -u LC_ALL -u LC_MESSAGES -u LANG " + environment + " /proc/" +
                            std::to_string(getpid()) +
                            "/exe --gtest_filter=Language.StartUpLanguageProbe >/dev/null 2>&1";
    for (int candidate : {0, 1}) {
        const int status =
            std::system(("TAVNA_EXPECT_LANGUAGE=" + std::to_string(candidate) + " " + cmd).c_str());
        if (WIFEXITED(status) && WEXITSTATUS(status) == 0)
            return candidate;
    }
    return -1;
}

TEST(Language, FollowsTheLocaleAtStartUpWithLcAllFirst) {
    EXPECT_EQ(languageAtStartUp("LANG=ru_RU.UTF-8"), 1);
    EXPECT_EQ(languageAtStartUp("LANG=en_GB.UTF-8"), 0);
    EXPECT_EQ(languageAtStartUp("LANG=en_US.UTF-8 LC_MESSAGES=ru_RU.UTF-8"), 1);
    EXPECT_EQ(languageAtStartUp("LANG=ru_RU.UTF-8 LC_ALL=C"), 0);
    EXPECT_EQ(languageAtStartUp(""), 0);
}

struct Counter {
    sigc::signal<void()> signal;
    int calls = 0;
    sigc::connection listen() {
        return signal.connect([this] { ++calls; });
    }
};

TEST(PointerConnectionsDispatcher, CutsOneKeyOrAllOfThem) {
    Counter a, b;
    Tav::PointerConnectionsDispatcher dispatcher;
    dispatcher.connect(&a, a.listen());
    dispatcher.connect(&a, a.listen());
    dispatcher.connect(&b, b.listen());
    EXPECT_EQ(dispatcher.size(), 3u);

    dispatcher.disconnect(&a);
    a.signal.emit();
    b.signal.emit();
    EXPECT_EQ(a.calls, 0);
    EXPECT_EQ(b.calls, 1);
    EXPECT_EQ(dispatcher.size(), 1u);
    dispatcher.disconnect(&a); // an unknown key is no error

    dispatcher.disconnectAll();
    b.signal.emit();
    EXPECT_EQ(b.calls, 1);
    EXPECT_EQ(dispatcher.size(), 0u);

    // The dispatcher stays usable after a full cut, and its end cuts everything.
    {
        Tav::PointerConnectionsDispatcher scoped;
        scoped.connect(&b, b.listen());
        b.signal.emit();
    }
    b.signal.emit();
    EXPECT_EQ(b.calls, 2);
    dispatcher.connect(&b, b.listen());
    b.signal.emit();
    EXPECT_EQ(b.calls, 3);
}

TEST(PointerConnectionsDispatcher, ConnectionsCutElsewhereAreHarmless) {
    Counter a;
    Tav::PointerConnectionsDispatcher dispatcher;
    auto connection = a.listen();
    dispatcher.connect(&a, connection);
    connection.disconnect();
    {
        // The emitter goes first: its connections die with it.
        Counter gone;
        dispatcher.connect(&gone, gone.listen());
    }
    EXPECT_NO_THROW(dispatcher.disconnectAll());
}

TEST(Series, RangesSpanThePointsWhateverTheirOrderAndLeaveNanOut) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    struct Case {
        std::vector<Tav::PointF> points;
        float minX, maxX, minY, maxY;
    };
    const Case cases[] = {
        {{{0.5f, -3.0f}, {0.25f, 7.5f}, {2.0f, 0.0f}, {1.0f, -3.5f}}, 0.25f, 2.0f, -3.5f, 7.5f},
        {{}, 0, 0, 0, 0},
        {{{nan, 4.0f}, {1.0f, nan}, {3.0f, -1.0f}}, 1.0f, 3.0f, -1.0f, 4.0f},
        // Nothing but NaN on an axis is the same as no points there.
        {{{nan, nan}}, 0, 0, 0, 0},
    };
    for (const Case& c : cases) {
        Tav::Series s;
        s.points = c.points;
        float minX = -1, maxX = -1, minY = -1, maxY = -1, lo = -1, hi = -1;
        s.getRangeXY(minX, maxX, minY, maxY);
        s.getRangeY(lo, hi);
        SCOPED_TRACE(testing::Message() << c.points.size() << " points");
        EXPECT_FLOAT_EQ(minX, c.minX);
        EXPECT_FLOAT_EQ(maxX, c.maxX);
        EXPECT_FLOAT_EQ(minY, c.minY);
        EXPECT_FLOAT_EQ(maxY, c.maxY);
        EXPECT_FLOAT_EQ(lo, c.minY);
        EXPECT_FLOAT_EQ(hi, c.maxY);
    }
}

TEST(Series, ColourBytesInMemoryAreRedGreenBlueAlpha) {
    Tav::Series s;
    const unsigned char bytes[4] = {0xFF, 0x80, 0x00, 0x40};
    std::memcpy(&s.color, bytes, 4);
    EXPECT_DOUBLE_EQ(s.red(), 1.0);
    EXPECT_DOUBLE_EQ(s.green(), 128 / 255.0);
    EXPECT_DOUBLE_EQ(s.blue(), 0.0);
    EXPECT_DOUBLE_EQ(s.alpha(), 64 / 255.0);
    EXPECT_EQ(s.getFragmentableColor(), s.color);
}

} // namespace
