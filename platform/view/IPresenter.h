#pragma once

#include "platform/view/IView.h"

#include <sigc++/trackable.h>

namespace Tav {

// Base of every presenter: it creates and owns its view and hands it out.
class IPresenter : public sigc::trackable {
public:
    virtual ~IPresenter() = default;
    virtual IView* getView() = 0;
};

} // namespace Tav
