#pragma once

#include "view/IGooseStreamChannelsView.h"
#include "view/ISvStreamChannelsView.h"

#include <gtkmm/flowbox.h>

namespace TavNA {

template <typename Interface> class StreamChannelsView : public Interface, public Gtk::FlowBox {
public:
    StreamChannelsView();
    void addView(Tav::IView* view) override;
};

extern template class StreamChannelsView<ISvStreamChannelsView>;
extern template class StreamChannelsView<IGooseStreamChannelsView>;

} // namespace TavNA
