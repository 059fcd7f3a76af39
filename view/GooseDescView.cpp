#include "view/GooseDescView.h"

#include "view/SvDescView.h"

namespace TavNA {

GooseDescView::GooseDescView() : DescSection("GOOSE") {
    addRow("App ID: ");
    addRow("GoCbRef: ");
    addRow("DataSet: ");
    addRow("Go ID: ");
    addRow("Режим симуляции: ");
}

void GooseDescView::clear() {
    clearValues();
}
void GooseDescView::setAppId(const std::string& text) {
    setValue(AppId, text);
}
void GooseDescView::setGoCbRef(const std::string& text) {
    setValue(GoCbRef, text);
}
void GooseDescView::setDataSet(const std::string& text) {
    setValue(DataSet, text);
}
void GooseDescView::setGoId(const std::string& text) {
    setValue(GoId, text);
}
void GooseDescView::setSimulation(bool simulation) {
    setValue(Simulation, simulationText(simulation));
}

} // namespace TavNA
