#pragma once

namespace Tav {

// Where the panel manager puts a panel. Left and right are columns at the
// sides; top and bottom share the centre column.
enum class Positions : int { Left = 0, Right = 1, Top = 2, Bottom = 3 };

} // namespace Tav
