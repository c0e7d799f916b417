// Whose a log is.
#pragma once

#include <string>

namespace qmx {

// Returns why the log belongs to the wrong user, or an empty text. The copies' user is the one that runs this program;
// for root it is the owner of the folder. Without owners that hinder others, no user is wrong.
std::string WrongOwner(const std::string& log, const std::string& folder);

}  // namespace qmx
