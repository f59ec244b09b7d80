// Whether a file was opened or read while a piece of work ran (inotify).
#pragma once

#include <string>

class AccessWatch {
 public:
  // Starts watching `path`, which must exist.
  explicit AccessWatch(const std::string& path);
  ~AccessWatch();
  AccessWatch(const AccessWatch&) = delete;
  AccessWatch& operator=(const AccessWatch&) = delete;

  // True when the file was opened or read since the watch started; false also when the
  // watch could not be set (Valid() tells).
  bool Touched() const;
  bool Valid() const { return m_Watch >= 0; }

 private:
  int m_Fd;
  int m_Watch = -1;
};
