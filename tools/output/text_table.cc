#include "output/text_table.h"

#include <algorithm>

namespace qrconfig {

namespace {

std::size_t Width(const std::string& text) {
  // Continuation bytes of UTF-8 (10xxxxxx) do not start a character.
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

}  // namespace

void TextTable::Write(std::ostream& out) const {
  std::vector<std::size_t> widths;
  for (const auto& row : m_Rows) {
    if (widths.size() < row.size()) widths.resize(row.size(), 0);
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], Width(row[i]));
  }
  for (const auto& row : m_Rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      out << row[i];
      if (i + 1 < row.size()) out << std::string(widths[i] - Width(row[i]) + 2, ' ');
    }
    out << '\n';
  }
}

void TextTable::WritePairs(const std::vector<std::pair<std::string, std::string>>& pairs,
                           std::ostream& out, int indent) {
  std::size_t width = 0;
  for (const auto& pair : pairs) width = std::max(width, Width(pair.first));
  for (const auto& [label, value] : pairs) {
    out << std::string(static_cast<std::size_t>(indent), ' ') << label << ':'
        << std::string(width - Width(label) + 2, ' ') << value << '\n';
  }
}

}  // namespace qrconfig
