#include "view/SvDescView.h"

namespace TavNA {

std::string simulationText(bool simulation) {
    return simulation ? "да" : "нет";
}

SvDescView::SvDescView() : DescSection("IEC61850 Sampled Values") {
    addRow("Sv ID: ");
    addRow("App ID: ");
    addRow("Режим симуляции: ");
}

void SvDescView::setSvId(const std::string& text) {
    setValue(SvId, text);
}
void SvDescView::setAppId(const std::string& text) {
    setValue(AppId, text);
}
void SvDescView::setSimulation(bool simulation) {
    setValue(Simulation, simulationText(simulation));
}
void SvDescView::clear() {
    clearValues();
}

} // namespace TavNA
