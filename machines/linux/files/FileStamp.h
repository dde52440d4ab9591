#pragma once

#include <filesystem>
#include <string>

namespace kelvinbar {

/// A text that changes when the file is changed or replaced (path, inode, size and times); empty without a
/// file. Does not read it. Any thread.
std::string fileStamp(const std::filesystem::path& file);

} // namespace kelvinbar
