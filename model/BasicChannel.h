#pragma once

#include "model/ChannelTypes.h"
#include "platform/common/Series.h"

#include <cstdint>
#include <optional>
#include <sigc++/signal.h>
#include <string>
#include <type_traits>

namespace TavNA {

// Stands in for the phase of a channel kind that has none; takes no room.
struct NoPhase {};

// One channel of a stream, SV or GOOSE. `Traits` tells the kind of curve the
// channel draws and what its source type and phase, where it has them, do to
// that curve. The description and transform ratio live in the series itself,
// so that the oscillograph shows exactly what the stream list shows.
template <typename Self, typename Traits> class BasicChannel {
    static constexpr bool hasPhase = requires { &Traits::applyPhase; };
    static constexpr bool scalesBySource = requires { &Traits::applySourceType; };

public:
    using SourceType = typename Traits::SourceType;

    sigc::signal<void(Self*)> signalSelected;
    sigc::signal<void(Self*)> signalUnSelected;

    BasicChannel() {
        serie.kind = Traits::serieKind;
        serie.gain = 1.0f;
        serie.transformRatio = 0.0f;
        if (Traits::initialColor)
            serie.color = *Traits::initialColor;
    }
    BasicChannel(const BasicChannel&) = delete;
    BasicChannel& operator=(const BasicChannel&) = delete;

    void setName(const std::string& value) { name = value; }
    std::string getName() const { return name; }

    void setDescription(const std::string& value) { serie.description = value; }
    // What the configuration says of the channel, shown as its box's tooltip.
    void setHint(const std::string& value) { hint = value; }
    const std::string& getHint() const { return hint; }
    std::string getDescription() const { return serie.description; }

    // Creators that want a ratio of their own set it after this, which resets it.
    void setSourceType(SourceType value) {
        sourceType = value;
        if constexpr (scalesBySource)
            Traits::applySourceType(value, serie);
    }
    SourceType getSourceType() const { return sourceType; }

    void setPhase(TavCalculate::Phase value) requires hasPhase {
        phase = value;
        Traits::applyPhase(value, serie);
    }
    TavCalculate::Phase getPhase() const requires hasPhase { return phase; }

    void setTransformRatio(float value) { serie.transformRatio = value; }
    float getTransformRatio() const { return serie.transformRatio; }

    // Position in the stream's data set.
    void setIndex(std::uint64_t value) { index = value; }
    std::uint64_t getIndex() const { return index; }

    Tav::Series& getSerie() { return serie; }
    const Tav::Series& getSerie() const { return serie; }

    // Emits even when the state does not change: a repeated tick is news to
    // listeners that rebuilt themselves in between.
    void setSelected(bool value) {
        selected = value;
        if (value)
            signalSelected.emit(static_cast<Self*>(this));
        else
            signalUnSelected.emit(static_cast<Self*>(this));
    }
    bool isSelected() const { return selected; }

private:
    using PhaseField = std::conditional_t<hasPhase, TavCalculate::Phase, NoPhase>;

    bool selected = false;
    std::string name;
    std::string hint;
    SourceType sourceType{};
    [[no_unique_address]] PhaseField phase{};
    std::uint64_t index = 0;
    Tav::Series serie;
};

} // namespace TavNA
