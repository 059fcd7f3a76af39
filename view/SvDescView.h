#pragma once

#include "view/DescSection.h"
#include "view/ISvDescView.h"

namespace TavNA {

class SvDescView : public ISvDescView, public DescSection {
public:
    enum Row { SvId, AppId, Simulation };

    SvDescView();
    void setSvId(const std::string& text) override;
    void setAppId(const std::string& text) override;
    void setSimulation(bool simulation) override;
    void clear() override;
};

// How the simulation flag reads in every description.
std::string simulationText(bool simulation);

} // namespace TavNA
