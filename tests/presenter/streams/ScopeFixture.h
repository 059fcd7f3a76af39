#pragma once

#include "presenter/OscillographPresenter.h"
#include "presenter/PackageListPresenter.h"
#include "tests/presenter/streams/LoadedModel.h"
#include "tests/support/GuiTest.h"

#include <gtest/gtest.h>
#include <gtkmm/window.h>

#include <chrono>
#include <utility>

namespace TavTest {

using namespace std::chrono_literals;

template <typename Presenter>
inline Gtk::CheckButton& checkBox(Presenter& stream, std::size_t channel) {
    return stream.getChannelsPresenter().getEntries().at(channel)->getViewObj().checkButton();
}

class OscillographDrawing : public testing::Test {
protected:
    TavTest::LoadedModel loaded;
    TavNA::PackageListPresenter list{loaded.model.getPackageListModel(), loaded.model.getLoad()};
    TavNA::OscillographPresenter scope{loaded.model};
    Gtk::Window window;

    void SetUp() override {
        window.set_default_size(1200, 400);
        window.add(scope.getViewObj());
        window.show_all();
        setPlotWidth(1000);
    }

    void setPlotWidth(int width) {
        auto& view = scope.getViewObj();
        for (int attempt = 0; attempt < 5 && view.getPixelWidth() != width; ++attempt) {
            window.resize(window.get_width() + width - view.getPixelWidth(), 400);
            TavTest::pumpUntil([&] { return view.getPixelWidth() == width; }, 2s);
        }
        ASSERT_EQ(view.getPixelWidth(), width);
    }

    template <typename Presenter> auto& tick(Presenter& stream, std::size_t channel) {
        stream.getViewObj()->nameButton().clicked();
        checkBox(stream, channel).set_active(true);
        return *stream.getModel().getChannels().getItems().at(channel);
    }

    // The window actually set, which the view may have clamped.
    std::pair<double, double> showRange(double from, double to) {
        scope.getViewObj().setSeriesRange(from, to);
        double f = 0.0, t = 0.0;
        scope.getViewObj().getSeriesRange(f, t);
        return {f, t};
    }
};

// A point's time on the widget's axis: the series' origin plus its x.
inline double timeOf(const Tav::Series& serie, std::size_t i) {
    return serie.origin + static_cast<double>(serie.points[i].x);
}

} // namespace TavTest
