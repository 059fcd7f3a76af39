#pragma once

#include "view/DescSection.h"
#include "view/IGooseDescView.h"

namespace TavNA {

class GooseDescView : public IGooseDescView, public DescSection {
public:
    enum Row { AppId, GoCbRef, DataSet, GoId, Simulation };

    GooseDescView();
    void clear() override;
    void setAppId(const std::string& text) override;
    void setGoCbRef(const std::string& text) override;
    void setDataSet(const std::string& text) override;
    void setGoId(const std::string& text) override;
    void setSimulation(bool simulation) override;
};

} // namespace TavNA
