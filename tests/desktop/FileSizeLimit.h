#pragma once

#include <csignal>
#include <sys/resource.h>

namespace kelvinbar {

/// Lets no file of the process grow beyond a size, as a full disk does.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) : earlierHandler_(::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &earlier_);
        const rlimit limited{bytes, earlier_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limited);
    }

    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &earlier_);
        static_cast<void>(::signal(SIGXFSZ, earlierHandler_));
    }

  private:
    rlimit earlier_{};
    void (*earlierHandler_)(int);
};

} // namespace kelvinbar
