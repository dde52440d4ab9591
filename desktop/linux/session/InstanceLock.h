#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace kelvinbar {

/// Where an instance of the program runs. Texts are empty if unknown.
struct InstancePlace {
    std::string process;        ///< number of the process
    std::string display;        ///< of an X server, without the number of a screen
    std::string waylandDisplay; ///< of a Wayland compositor
    std::string session;        ///< the login manager's name of the session

    friend bool operator==(const InstancePlace&, const InstancePlace&) = default;
};

/// The place of this process, from its environment.
InstancePlace ownPlace();

/// Whether both places have displays, none of which is the same. A session may have an X server and a Wayland
/// compositor, and a start may know only one of them.
bool areOnDifferentDisplays(const InstancePlace& one, const InstancePlace& other);

/// Ensures that one instance of the program runs per user, also where each session has a bus of its own: a
/// file that the instance keeps locked and that says where it runs. The kernel drops the lock when the
/// process ends, however it ends. Any thread, one at a time.
class InstanceLock {
  public:
    /// An empty path stands for a user without a runtime folder: nobody ever holds the lock then, and taking
    /// it succeeds.
    explicit InstanceLock(std::filesystem::path file) : file_(std::move(file)) {}

    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    ~InstanceLock() { release(); }

    /// Takes the lock for the process at `place`. Returns false if another one holds it. Also true if the
    /// file cannot be used, which must not keep the program from starting.
    bool take(const InstancePlace& place);

    /// Does nothing if the lock is not taken.
    void release();

    /// The place of who holds the lock; no value if nobody else does.
    [[nodiscard]] std::optional<InstancePlace> holder() const;

  private:
    std::filesystem::path file_;
    int descriptor_ = -1;
};

/// The file for the program `name`, in the user's runtime folder. Empty if there is none.
std::filesystem::path instanceLockFile(const std::string& name);

} // namespace kelvinbar
