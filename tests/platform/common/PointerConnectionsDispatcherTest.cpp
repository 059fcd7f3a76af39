#include "platform/common/PointerConnectionsDispatcher.h"

#include <gtest/gtest.h>

#include <sigc++/signal.h>

namespace {

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

    // The dispatcher stays usable after a full cut.
    dispatcher.connect(&b, b.listen());
    b.signal.emit();
    EXPECT_EQ(b.calls, 2);
}

TEST(PointerConnectionsDispatcher, DestructionCutsEverything) {
    Counter a;
    {
        Tav::PointerConnectionsDispatcher dispatcher;
        dispatcher.connect(&a, a.listen());
        a.signal.emit();
    }
    a.signal.emit();
    EXPECT_EQ(a.calls, 1);
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

} // namespace
