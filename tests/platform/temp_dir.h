// A scratch directory for one test, removed with its content when the test ends.
#pragma once

#include <Poco/File.h>
#include <Poco/TemporaryFile.h>

#include <fstream>
#include <string>

class TempDir {
 public:
  TempDir() : m_Path(Poco::TemporaryFile::tempName()) { Poco::File(m_Path).createDirectories(); }
  ~TempDir() { Poco::File(m_Path).remove(true); }
  const std::string& Path() const { return m_Path; }

  // Writes `bytes` to the file `name` in the directory and returns its path.
  std::string Write(const std::string& name, const std::string& bytes) const {
    std::string path = m_Path + "/" + name;
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }

 private:
  std::string m_Path;
};
