#pragma once

#include <filesystem>

namespace kelvinbar {

/// Sets XDG_RUNTIME_DIR if it is not set, as in a program that cron starts, to the folder that the login
/// manager has made for this user: where the first instance keeps its lock and the session bus listens. Does
/// nothing if there is no folder of the user's own that others have no access to. A bus address in the
/// environment counts before the folder.
///
/// `folders` has one for each user, named by the user id. To be called before anything uses the variable and
/// before there are threads that read the environment.
void provideRuntimeFolder(const std::filesystem::path& folders = "/run/user");

} // namespace kelvinbar
