#pragma once

#include "tools/ChosenMachine.h"
#include "tools/OutputFormats.h"

#include <cstddef>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

namespace kelvinbar {

/// What the user asked for.
struct SnapshotOptions {
    MachineChoice machine;
    const OutputFormat* format = nullptr; ///< never null after parsing
    std::size_t verbosity = 0;            ///< how often --verbose was given
};

/// The options of kelvinbar-snapshot, in one place: how they are parsed, what help says of them and what
/// completes them. Main thread.
class SnapshotCommandLine {
  public:
    SnapshotCommandLine();
    SnapshotCommandLine(const SnapshotCommandLine&) = delete;
    SnapshotCommandLine& operator=(const SnapshotCommandLine&) = delete;
    ~SnapshotCommandLine() = default;

    /// Returns the exit status if there is nothing left to do: help or the version was printed, or an option
    /// is wrong and standard error says why.
    std::optional<int> parse(int argc, char** argv);

    /// Valid once `parse` has returned no value.
    [[nodiscard]] const SnapshotOptions& options() const { return options_; }

  private:
    void addMachineOptions();
    void addOutputOptions();
    void addRemainingOptions();
    void finishParsing();

    SnapshotOptions options_;
    std::string formatName_;
    CLI::App app_;
    CLI::Option* replay_ = nullptr;
    CLI::Option* demo_ = nullptr;
};

} // namespace kelvinbar
