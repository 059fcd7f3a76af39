#pragma once

#include <string>

namespace Tav {

// Where one of the application's data files (help documents, icons, the
// style sheet; `relative` as "Icons/Shell/x.png") lies: in the working folder
// when it is there, as the build's run folder has them; else where an
// installed program keeps them, share/tavna beside its bin folder; else
// beside the executable. `relative` itself when none holds the file.
std::string dataFile(const std::string& relative);

} // namespace Tav
