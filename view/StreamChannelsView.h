#pragma once

#include "view/IGooseStreamChannelsView.h"
#include "view/ISvStreamChannelsView.h"

#include <gtkmm/box.h>
#include <gtkmm/flowbox.h>
#include <gtkmm/flowboxchild.h>
#include <memory>
#include <vector>

namespace TavNA {

// The check buttons of one stream, row by row. They fill flowing boxes of a
// bounded size one after another: a single box of thousands of buttons costs
// time for every button added to it.
template <typename Interface> class StreamChannelsView : public Interface, public Gtk::Box {
public:
    static constexpr std::size_t kButtonsPerBox = 200;

    StreamChannelsView();
    // The flowing boxes go before the buttons, which their presenters own.
    ~StreamChannelsView() override;
    void addView(Tav::IView* view) override;

    // Every button's cell, in the order the buttons were added.
    std::vector<Gtk::FlowBoxChild*> cells();

private:
    Gtk::FlowBox& _boxWithRoom();

    std::vector<std::unique_ptr<Gtk::FlowBox>> boxes;
    std::size_t inLastBox = 0;
};

extern template class StreamChannelsView<ISvStreamChannelsView>;
extern template class StreamChannelsView<IGooseStreamChannelsView>;

} // namespace TavNA
