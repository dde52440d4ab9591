#pragma once

#include "tools/ChosenMachine.h"
#include "tools/Identification.h"
#include "tools/OutputFormats.h"
#include "tools/ReadingSelection.h"
#include "tools/ShellCompletion.h"

#include <chrono>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace kelvinbar {

/// What the user asked for.
struct SnapshotOptions {
    MachineChoice machine;
    const OutputFormat* format = nullptr; ///< never null after parsing
    ReadingSelection selection;
    bool isPinned = false; ///< the pins of the desktop program are added to the selection
    /// How often to read the machine; no value for once.
    std::optional<std::chrono::nanoseconds> interval;
    std::optional<IdentificationPlan> identification; ///< no value unless sensors are to be identified
    bool hasOwnCost = false;                          ///< what the program itself costs is printed, too
    std::vector<std::string> compared; ///< one or two files of snapshots to compare; otherwise empty
    double tolerance = 0;              ///< of numbers that are compared, in their units; not negative
    bool isDoctor = false;             ///< the machine is examined instead, in the format text or json
    std::size_t verbosity = 0;         ///< how often --verbose was given
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
    /// Of --watch, between two reads.
    static constexpr double usualSeconds = 2;
    static constexpr double fewestSeconds = 0.1;
    static constexpr double mostSeconds = 86400;

    /// Of --tolerance, in the unit of a reading.
    static constexpr double mostTolerance = 1e9;

    /// Of --identify.
    static constexpr double usualLoadSeconds = 20;
    static constexpr double usualWatchSeconds = 60;
    static constexpr double fewestIdentifySeconds = 5;
    static constexpr double mostIdentifySeconds = 3600;

    void addMachineOptions();
    void addSelectionOptions();
    void addOutputOptions();
    void addDiffOptions();
    void addIdentificationOptions();
    void addDoctorOption();
    void addRemainingOptions();
    void finishParsing();
    void finishSelection();
    void finishFormat();
    void finishDiff() const;
    void finishIdentification();
    void finishOwnCost() const;
    void finishDoctor() const;
    [[nodiscard]] std::string plainComplaint(const CLI::ArgumentMismatch& error) const;
    void requireAlone(const CLI::Option& option) const;
    [[nodiscard]] std::vector<CompletedOption> completedOptions() const;

    SnapshotOptions options_;
    std::string formatName_;
    std::string orderName_;
    std::vector<std::string> categoryNames_;
    double seconds_ = usualSeconds;
    double identifySeconds_ = 0; ///< 0 for the usual
    bool isVersion_ = false;
    bool isByHand_ = false;
    bool isTitle_ = false;
    bool isSummary_ = false;
    CLI::App app_;
    CLI::Option* version_ = nullptr;
    CLI::Option* replay_ = nullptr;
    CLI::Option* demo_ = nullptr;
    CLI::Option* match_ = nullptr;
    CLI::Option* pinned_ = nullptr;
    CLI::Option* sort_ = nullptr;
    CLI::Option* title_ = nullptr;
    CLI::Option* summary_ = nullptr;
    CLI::Option* diff_ = nullptr;
    CLI::Option* watch_ = nullptr;
    CLI::Option* self_ = nullptr;
    CLI::Option* identify_ = nullptr;
    CLI::Option* completion_ = nullptr;
    std::string completedShell_;
    std::map<std::string, std::vector<std::string>> listedValues_; ///< by the name of the option
};

} // namespace kelvinbar
