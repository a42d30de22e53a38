#include "outernetwork.h"
#include "networklab.h"
#include "simulatedpanel.h"

namespace OuterNetwork {

bool set(bool up, QString *error)
{
    if (NetworkLab::notInsideLab().isEmpty())
        return NetworkLab::setFarLinks(up, error);
    const QString root = qEnvironmentVariable("PANEL_ROOT");
    if (root.isEmpty() || !SimulatedPanel::setOuterNetwork(root, up)) {
        *error = QStringLiteral("cannot record the outer network's state below \"%1\"").arg(root);
        return false;
    }
    return true;
}

} // namespace OuterNetwork
