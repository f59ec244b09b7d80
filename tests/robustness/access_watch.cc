#include "robustness/access_watch.h"

#include <sys/inotify.h>
#include <unistd.h>

AccessWatch::AccessWatch(const std::string& path) : m_Fd(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
  if (m_Fd >= 0) m_Watch = inotify_add_watch(m_Fd, path.c_str(), IN_OPEN | IN_ACCESS);
}

AccessWatch::~AccessWatch() {
  if (m_Fd >= 0) ::close(m_Fd);
}

bool AccessWatch::Touched() const {
  if (m_Watch < 0) return false;
  alignas(inotify_event) char buffer[4096];
  return ::read(m_Fd, buffer, sizeof buffer) > 0;
}
