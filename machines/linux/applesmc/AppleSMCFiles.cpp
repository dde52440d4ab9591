#include "machines/linux/applesmc/AppleSMCRegisters.h"
#include "machines/linux/files/SensorFile.h"
#include "sensors/ReadWatch.h"

#include <array>
#include <charconv>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <utility>

#include <unistd.h>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;

/// A file descriptor, closed by the destructor.
class Descriptor {
  public:
    Descriptor(const fs::path& file, int flags)
        : file_(file), number_(::open(file.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}

    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    ~Descriptor() {
        if (number_ >= 0) ::close(number_);
    }

    [[nodiscard]] int number() const { return number_; }

    [[nodiscard]] const fs::path& file() const { return file_; }

  private:
    fs::path file_;
    int number_;
};

class AppleSMCFiles final : public AppleSMCRegisters {
  public:
    explicit AppleSMCFiles(const fs::path& folder)
        : index_(folder / "key_at_index", O_RDWR)
        , data_(folder / "key_at_index_data", O_RDONLY)
        , count_(folder / "key_count")
        , selected_(folder / "key_at_index")
        , name_(folder / "key_at_index_name")
        , type_(folder / "key_at_index_type")
        , length_(folder / "key_at_index_data_length") {}

    [[nodiscard]] bool isOpen() const { return index_.number() >= 0 && data_.number() >= 0; }

    bool lock() override {
        constexpr std::chrono::milliseconds pause{1};
        for (int attempt = 0; attempt < attemptsPerLock_; ++attempt) {
            if (attempt > 0) std::this_thread::sleep_for(pause);
            if (::flock(index_.number(), LOCK_EX | LOCK_NB) == 0) {
                attemptsPerLock_ = maximumAttempts;
                return true;
            }
        }
        // The holder is slow or hangs: do not wait again at the next key.
        attemptsPerLock_ = 1;
        return false;
    }

    void unlock() override { ::flock(index_.number(), LOCK_UN); }

    std::optional<std::uint32_t> keyCount() override { return number(count_); }

    bool select(std::uint32_t index) override {
        std::array<char, 16> text{};
        const char* const end = std::to_chars(text.data(), text.data() + text.size(), index).ptr;
        const NotedRead noted(index_.file().native());
        return noted.isAllowed() &&
               ::pwrite(index_.number(), text.data(), static_cast<std::size_t>(end - text.data()), 0) > 0;
    }

    std::optional<std::uint32_t> selectedIndex() override { return number(selected_); }

    std::optional<std::string> keyName() override { return text(name_); }

    std::optional<std::string> typeName() override { return text(type_); }

    std::optional<std::uint32_t> dataLength() override { return number(length_); }

    bool data(SMCBytes& bytes) override {
        const NotedRead noted(data_.file().native());
        return noted.isAllowed() && ::pread(data_.number(), bytes.data(), bytes.size(), 0) > 0;
    }

  private:
    static constexpr int maximumAttempts = 20;

    static std::optional<std::uint32_t> number(const SensorFile& file) {
        const auto number = file.number();
        if (!number || *number < 0 || *number > INT32_MAX) return std::nullopt;
        return static_cast<std::uint32_t>(*number);
    }

    /// Not trimmed: spaces are part of key and type names.
    static std::optional<std::string> text(const SensorFile& file) {
        std::array<char, 16> buffer{};
        const auto line = file.line(buffer);
        return line ? std::optional(std::string(*line)) : std::nullopt;
    }

    Descriptor index_;
    Descriptor data_;
    SensorFile count_;
    SensorFile selected_;
    SensorFile name_;
    SensorFile type_;
    SensorFile length_;
    int attemptsPerLock_ = maximumAttempts;
};

} // namespace

std::unique_ptr<AppleSMCRegisters> openAppleSMCFiles(const fs::path& folder) {
    auto files = std::make_unique<AppleSMCFiles>(folder);
    if (!files->isOpen()) return nullptr;
    return files;
}

} // namespace kelvinbar
