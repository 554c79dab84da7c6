#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

#include "common/code_page.h"
#include "common/run_error.h"
#include "config/sqlite_store.h"

namespace norvane {

Store_Lock::Store_Lock(const std::filesystem::path& store) {
    auto file = std::filesystem::absolute(store);
    file += ".lock";
    Make_Store_Directory(file);
    // Programs started from here must not inherit the lock.
    m_descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (m_descriptor < 0)
        throw File_Error(errno, From_Path(file));
    m_held = ::flock(m_descriptor, LOCK_EX | LOCK_NB) == 0;
    if (!m_held && errno != EWOULDBLOCK) {
        const int reason = errno;
        ::close(m_descriptor);
        throw File_Error(reason, From_Path(file));
    }
}

Store_Lock::~Store_Lock() {
    ::close(m_descriptor);
}

}  // namespace norvane
