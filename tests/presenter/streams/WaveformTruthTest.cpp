// What the curves must never hide or invent: a steady sine stays a steady
// band zoomed out, a one-sample spike survives, every ASDU is drawn at its own
// instant, samples keep their spacing hours from the start, and a GOOSE state
// comes from the latest frame of whichever file holds it.
#include "tests/presenter/streams/ScopeFixture.h"
#include "tests/support/TestCaptures.h"
#include "waveform/SampleSummary.h"

#include <cairomm/context.h>
#include <cairomm/surface.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace TavNA;
using TavTest::generated;
using TavTest::OscillographDrawing;
using TavTest::timeOf;

constexpr double kPeakA = 100.0 * 1000.0; // the generator's current peak, in mA
constexpr double kSpikeAt = 61.2345;      // seconds after the start

float rawCurrentA(long n, double rate) {
    return static_cast<float>(std::lround(kPeakA * std::sin(2.0 * M_PI * 50.0 * n / rate)));
}

// 100 s of a steady 50 Hz sine with one sample at three times the peak.
const std::string& longSine() {
    static const std::string path = generated(
        "sine-100s-spike", {"--sv", "1", "--duration", "100", "--spike", std::to_string(kSpikeAt)});
    return path;
}

// The lowest and highest value drawn in each pixel column of the plot.
std::map<long, std::pair<double, double>> columnBands(OscillographView& view,
                                                      const Tav::Series& serie) {
    const auto& layout = view.layout();
    std::map<long, std::pair<double, double>> bands;
    for (std::size_t i = 0; i < serie.points.size(); ++i) {
        const auto column = static_cast<long>(std::floor(layout.mapper.timeToX(timeOf(serie, i))));
        const double y = serie.points[i].y;
        auto [at, added] = bands.try_emplace(column, y, y);
        at->second.first = std::min(at->second.first, y);
        at->second.second = std::max(at->second.second, y);
    }
    return bands;
}

TEST_F(OscillographDrawing, ZoomedOutSineSpansItsFullAmplitudeInEveryColumnAndKeepsItsSpike) {
    loaded.open(longSine());
    SvChannel& ia = tick(*list.getSvStreams().at(0), 0);
    const Tav::Series& serie = ia.getSerie();
    auto& view = scope.getViewObj();
    // As a double click does: the range is reported at the next frame.
    view.showWholeDuration();
    ASSERT_TRUE(TavTest::pumpUntil([&] { return serie.envelope; }, std::chrono::seconds(30)));
    TavTest::pumpPending();
    EXPECT_LT(serie.points.size(), 4u * 1000u);

    const float ratio = ia.getTransformRatio();
    const auto& layout = view.layout();
    ASSERT_EQ(layout.curves.size(), 1u);
    const auto pixel = [&](double v) { return layout.curves[0].value.toPixel(v * serie.gain); };
    const double top = pixel(kPeakA * ratio), bottom = pixel(-kPeakA * ratio);
    const long spikeAt = static_cast<long>(std::floor(layout.mapper.timeToX(kSpikeAt)));
    const auto expectFullBands = [&](const char* drawnFrom) {
        const auto bands = columnBands(view, serie);
        EXPECT_GE(bands.size(), 990u) << drawnFrom;
        for (const auto& [column, band] : bands) {
            if (column == spikeAt) {
                EXPECT_FLOAT_EQ(static_cast<float>(band.second),
                                static_cast<float>(3 * kPeakA) * ratio)
                    << drawnFrom;
                continue;
            }
            EXPECT_NEAR(pixel(band.second), top, 1.0) << drawnFrom << column;
            EXPECT_NEAR(pixel(band.first), bottom, 1.0) << drawnFrom << column;
        }
    };
    expectFullBands("every frame");
    EXPECT_TRUE(layout.envelope);

    // Meanwhile the stream's min/max summary is built on a worker, and the
    // curve drawn again from it: whole blocks give two points at one instant.
    const auto fromSummary = [&] {
        for (std::size_t i = 1; i < serie.points.size(); ++i)
            if (serie.points[i].x == serie.points[i - 1].x)
                return true;
        return false;
    };
    ASSERT_TRUE(TavTest::pumpUntil(fromSummary, std::chrono::seconds(60)));
    EXPECT_LT(serie.points.size(), 4u * 1000u);
    expectFullBands("the summary");

    // The real widget's own drawing: in every column the curve's colour runs
    // from the peak's row to the trough's.
    Gtk::DrawingArea& area = view.plotArea();
    const int width = area.get_allocated_width(), height = area.get_allocated_height();
    auto surface = Cairo::ImageSurface::create(Cairo::FORMAT_RGB24, width, height);
    gtk_widget_draw(GTK_WIDGET(area.gobj()), Cairo::Context::create(surface)->cobj());
    surface->flush();
    const auto curveRows = [&](int x) {
        int first = -1, last = -1;
        for (int y = static_cast<int>(layout.analog.y); y < layout.analog.bottom(); ++y) {
            const unsigned char* px = surface->get_data() + y * surface->get_stride() + 4 * x;
            // Cairo's RGB24 is blue, green, red in memory; the curve is yellow.
            if (px[2] > 160 && px[1] > 140 && px[0] < 90) {
                first = first < 0 ? y : first;
                last = y;
            }
        }
        return std::pair{first, last};
    };
    int checked = 0;
    for (int x = static_cast<int>(layout.plot.x) + 1; x + 1 < layout.plot.right(); ++x) {
        if (std::abs(x - spikeAt) <= 1)
            continue;
        const auto [first, last] = curveRows(x);
        ASSERT_GE(first, 0) << x;
        EXPECT_NEAR(first, top, 1.5) << x;
        EXPECT_NEAR(last, bottom, 1.5) << x;
        ++checked;
    }
    EXPECT_GT(checked, 990);
}

TEST_F(OscillographDrawing, ZoomedOutGooseStepsKeepEveryChange) {
    // A 1 ms pulse every 0.3 s for 100 s: the new state stands in one frame
    // only, and the repeats make some 3300 frames, more than three for every
    // point a 500 px plot takes one by one.
    std::vector<std::string> options{"--goose", "1", "--bools", "1", "--duration", "100"};
    const int pulses = 330, changes = 2 * pulses;
    for (int k = 1; k <= pulses; ++k)
        for (double at : {k * 0.3, k * 0.3 + 0.001}) {
            options.push_back("--change");
            options.push_back(std::to_string(at));
        }
    setPlotWidth(500);
    loaded.open(generated("goose-330-changes", options));
    GooseChannel& entry = tick(*list.getGooseStreams().at(0), 0);
    const Tav::Series& serie = entry.getSerie();
    scope.getViewObj().showWholeDuration();
    ASSERT_TRUE(TavTest::pumpUntil([&] { return serie.envelope; }, std::chrono::seconds(30)));
    EXPECT_LT(serie.points.size(), 4u * 500u);
    int flips = 0;
    for (std::size_t i = 1; i < serie.points.size(); ++i) {
        EXPECT_LE(serie.points[i - 1].x, serie.points[i].x) << i;
        flips += serie.points[i].y != serie.points[i - 1].y;
    }
    EXPECT_EQ(flips, changes);
}

TEST(SampleSummary, CostsAtMostTwoBytesAFrameAndHoldsEveryBlocksExtremes) {
    TavTest::LoadedModel loaded;
    loaded.open(longSine());
    const auto& stream = *loaded.model.getDb().svProto.svs.begin();
    const auto source =
        TavWaveform::SummarySource::of(stream, loaded.model.getClocks()->of(stream));
    ASSERT_TRUE(source);
    const std::atomic<bool> stop{false};
    const auto summary = TavWaveform::SampleSummary::build(*source, stop);
    ASSERT_TRUE(summary);
    const std::size_t frames = source->packages.size();
    EXPECT_EQ(frames, 400'000u);
    EXPECT_LE(summary->bytes(), TavWaveform::SampleSummary::kMaxBytesPerFrame * frames);

    // A block is shorter than a period: it never passes the peaks, and two
    // in a row reach both; only the spike's block goes beyond.
    const auto spikeNs =
        static_cast<std::int64_t>(std::llround(kSpikeAt * 1e9)) + 1'700'000'000LL * 1'000'000'000LL;
    std::int32_t lo = 0, hi = 0, previousLo = 0, previousHi = 0;
    for (std::size_t b = 0; b < summary->blockCount(); ++b) {
        ASSERT_TRUE(summary->range(b, 0, lo, hi));
        const auto& block = summary->block(b);
        const bool spike = block.firstNs <= spikeNs + 250'000 && spikeNs <= block.lastNs + 250'000;
        EXPECT_GE(lo, -kPeakA) << b;
        EXPECT_LE(hi, spike ? 3 * kPeakA : kPeakA) << b;
        if (b > 0 && !spike && b + 1 < summary->blockCount()) {
            EXPECT_EQ(std::min(lo, previousLo), -kPeakA) << b;
            EXPECT_GE(std::max(hi, previousHi), kPeakA) << b;
        }
        previousLo = lo;
        previousHi = hi;
    }
    EXPECT_FALSE(summary->range(0, 8, lo, hi)) << "no ninth channel";
}

struct AsduCase {
    unsigned asdus;
    unsigned rate;
};

class AsduInstants : public OscillographDrawing, public testing::WithParamInterface<AsduCase> {};

TEST_P(AsduInstants, EveryAsduIsASampleAtItsOwnInstant) {
    const auto [asdus, rate] = GetParam();
    loaded.open(generated("asdus" + std::to_string(asdus) + "-" + std::to_string(rate),
                          {"--sv", "1", "--asdus", std::to_string(asdus), "--rate",
                           std::to_string(rate), "--duration", "0.3"}));
    SvChannel& ia = tick(*list.getSvStreams().at(0), 0);
    const Tav::Series& serie = ia.getSerie();
    const auto [from, to] = showRange(0.1, 0.11);

    // Frames in the window, counted from the capture's own index.
    const double start = loaded.model.getOscillographModel().start;
    const auto fromStamp = OscillographPresenter::_getTimestFromSec(start + from);
    const auto toStamp = OscillographPresenter::_getTimestFromSec(start + to);
    std::size_t frames = 0;
    for (const auto& record : loaded.model.getDb().svProto.svs)
        for (const auto& file : record.files)
            frames += std::count_if(file.packages.begin(), file.packages.end(), [&](auto& p) {
                return !(p.time < fromStamp) && !(toStamp < p.time);
            });
    // Those, and the first ASDUs of the frame that arrived after the window's
    // end but was sampled within it: the curve reaches the window's end.
    ASSERT_GE(serie.points.size(), frames * asdus);
    ASSERT_LE(serie.points.size(), (frames + 1) * asdus);
    EXPECT_GT(timeOf(serie, serie.points.size() - 1), to - 1.0 / rate);
    EXPECT_LE(timeOf(serie, serie.points.size() - 1), to + 1e-9);
    EXPECT_FALSE(serie.envelope);

    // The generator stamps a frame with its first sample's time; drawn, its
    // last ASDU stands at that time and the others before it.
    for (std::size_t i = 0; i < serie.points.size(); ++i) {
        const double t = timeOf(serie, i);
        if (i > 0) {
            EXPECT_NEAR(t - timeOf(serie, i - 1), 1.0 / rate, 1e-6) << i;
        }
        const long n = std::lround(t * rate) + static_cast<long>(asdus) - 1;
        EXPECT_FLOAT_EQ(serie.points[i].y, rawCurrentA(n, rate) * ia.getTransformRatio()) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Frames, AsduInstants,
                         testing::Values(AsduCase{2, 4800}, AsduCase{6, 14400}),
                         [](const auto& info) {
                             return std::to_string(info.param.asdus) + "asdus" +
                                    std::to_string(info.param.rate) + "Hz";
                         });

// A real merging unit's capture: the capturing card stamps frames in bursts of
// two or three on one time, while the samples are 250 us apart by their
// counter. Drawn at arrival, a steady sine became a staircase.
TEST_F(OscillographDrawing, BurstyRealCaptureIsDrawnAtItsSamplingInstants) {
    loaded.open(
        TavTest::sharedCapture("sv_abb-rex640_50hz_harmonics_novlan_smpsynch1_25646frames.pcapng"));
    SvChannel& ia = tick(*list.getSvStreams().at(0), 0);
    const Tav::Series& serie = ia.getSerie();
    for (const double at : {0.5, 3.0, 6.0}) {
        showRange(at, at + 0.02);
        ASSERT_GE(serie.points.size(), 70u) << at; // frames are picked by arrival
        EXPECT_FALSE(serie.envelope);
        for (std::size_t i = 1; i < serie.points.size(); ++i)
            ASSERT_NEAR(timeOf(serie, i) - timeOf(serie, i - 1), 1.0 / 4000, 1e-6)
                << at << " s, sample " << i;
    }
}

// Two merging units synchronised to one clock sample together; the second's
// frames reach the capture 5.1 ms later all along. Drawn, their samples stand
// at the same instants, not 5.1 ms apart (off the other's grid).
TEST_F(OscillographDrawing, SynchronisedStreamsWithDifferentDelaysAreDrawnOnTopOfEachOther) {
    loaded.open(generated(
        "stagger", {"--sv", "2", "--duration", "0.5", "--bursts", "2", "--stagger", "0.0051"}));
    const Tav::Series& first = tick(*list.getSvStreams().at(0), 0).getSerie();
    const Tav::Series& second = tick(*list.getSvStreams().at(1), 0).getSerie();
    showRange(0.2, 0.24);
    ASSERT_GT(first.points.size(), 100u);
    // To a tenth of a microsecond; the generator gives each stream a phase of its own.
    std::set<long> firstAt;
    for (std::size_t i = 0; i < first.points.size(); ++i)
        firstAt.insert(std::lround(timeOf(first, i) * 1e7));
    std::size_t shared = 0;
    for (std::size_t i = 0; i < second.points.size(); ++i)
        shared += firstAt.count(std::lround(timeOf(second, i) * 1e7));
    // Every sample of the window, the late stream's last ones included,
    // although their frames arrived after the window's end.
    EXPECT_GE(shared, 160u) << "of " << second.points.size();
    double last = 0;
    for (std::size_t i = 0; i < second.points.size(); ++i)
        last = std::max(last, timeOf(second, i));
    EXPECT_GE(last, 0.24 - 1.0 / 4000);
}

TEST_F(OscillographDrawing, TwoHoursFromTheStartSamplesKeepTheirSpacing) {
    // A GOOSE heartbeat from the start, SV samples only in the last second.
    loaded.open(generated("two-hours", {"--duration", "7200", "--goose", "1", "--bools", "1",
                                        "--sv", "1", "--rate", "14400", "--sv-start", "7199"}));
    SvChannel& ia = tick(*list.getSvStreams().at(0), 0);
    const Tav::Series& serie = ia.getSerie();
    const auto [from, to] = showRange(7199.5, 7199.502);
    ASSERT_NEAR(from, 7199.5, 1e-9);
    ASSERT_GE(serie.points.size(), 28u);

    const double start = loaded.model.getOscillographModel().start;
    std::vector<double> frameTimes;
    for (const auto& record : loaded.model.getDb().svProto.svs)
        for (const auto& file : record.files)
            for (const auto& p : file.packages)
                frameTimes.push_back(p.time.toSeconds() - start);
    for (std::size_t i = 0; i < serie.points.size(); ++i) {
        const double t = timeOf(serie, i);
        if (i > 0) {
            EXPECT_NEAR(t - timeOf(serie, i - 1), 1.0 / 14400, 1e-6) << i;
        }
        const auto nearest = std::lower_bound(frameTimes.begin(), frameTimes.end(), t - 1e-6);
        ASSERT_NE(nearest, frameTimes.end());
        EXPECT_NEAR(*nearest, t, 1e-6) << i;
    }
}

TEST_F(OscillographDrawing, GooseStateComesFromTheLatestFrameOfAnyFile) {
    // The same publisher over two files: the change at 1 s lies in the first;
    // the second starts at 3 s from the initial state again.
    loaded.open(generated("goose-part1",
                          {"--goose", "1", "--bools", "2", "--duration", "3", "--change", "1"}));
    loaded.open(generated("goose-part2", {"--goose", "1", "--bools", "2", "--start", "1700000003",
                                          "--duration", "3"}));
    GooseChannel& first = tick(*list.getGooseStreams().back(), 0);
    const Tav::Series& serie = first.getSerie();

    // Between the second file's frames at 3.254 and 3.510 s: its state, not
    // the first file's last one at 2.510 s.
    showRange(3.26, 3.5);
    ASSERT_EQ(serie.points.size(), 2u);
    EXPECT_EQ(serie.points[0].y, 0.0f);
    EXPECT_EQ(serie.points[1].y, 0.0f);

    // Across the files' seam: the first file's state up to 3 s, then the
    // second's, in time order.
    const auto [from, to] = showRange(2.9, 3.1);
    ASSERT_GE(serie.points.size(), 3u);
    EXPECT_NEAR(timeOf(serie, 0), from, 1e-6);
    EXPECT_EQ(serie.points.front().y, 1.0f);
    EXPECT_EQ(serie.points.back().y, 0.0f);
    for (std::size_t i = 1; i < serie.points.size(); ++i) {
        EXPECT_LE(serie.points[i - 1].x, serie.points[i].x) << i;
        EXPECT_EQ(serie.points[i].y, timeOf(serie, i) < 3.0 - 1e-6 ? 1.0f : 0.0f) << i;
    }
}

} // namespace
