#include "qr_config/platform/stdx_path.h"

#include <stdexcept>

namespace stdx {

path::path(const std::string& text, path_kind kind, char separator)
    : m_Text(text), m_Kind(kind), m_Separator(separator) {
  if (!m_Text.empty()) AppendLevels(m_Text, m_Text[0] == m_Separator ? 1 : 0);
}

path::path(const std::string& parent, const std::string& name, path_kind kind, char separator)
    : path(parent, kind, separator) {
  *this += name;
}

path::~path() = default;

std::string path::operator[](int index) const {
  if (index < 0 || index >= levels())
    throw std::out_of_range("path level " + std::to_string(index) + " out of range for \"" +
                            m_Text + "\"");
  return m_Levels[static_cast<std::size_t>(index)];
}

path& path::operator+=(const std::string& name) {
  const std::size_t oldText = m_Text.size();
  const std::size_t oldLevels = m_Levels.size();
  try {
    m_Text.reserve(oldText + 1 + name.size());
    m_Text.push_back(m_Separator);
    m_Text += name;
    AppendLevels(name, 0);
  } catch (...) {
    m_Text.resize(oldText);
    m_Levels.resize(oldLevels);
    throw;
  }
  return *this;
}

void path::AppendLevels(const std::string& part, std::size_t from) {
  for (;;) {
    const std::size_t end = part.find(m_Separator, from);
    if (end == std::string::npos) {
      m_Levels.push_back(part.substr(from));
      return;
    }
    m_Levels.push_back(part.substr(from, end - from));
    from = end + 1;
  }
}

}  // namespace stdx
