// TextTable: columns of text aligned for people.
#pragma once

#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace qrconfig {

// Rows of cells written with every column padded to its widest cell (counted in UTF-8
// characters), two spaces between columns, no padding after the last one.
class TextTable {
 public:
  void AddRow(std::vector<std::string> cells) { m_Rows.push_back(std::move(cells)); }
  void Write(std::ostream& out) const;

  // Lines "label:  value" with the values aligned, `indent` spaces before each label.
  static void WritePairs(const std::vector<std::pair<std::string, std::string>>& pairs,
                         std::ostream& out, int indent = 0);

 private:
  std::vector<std::vector<std::string>> m_Rows;
};

}  // namespace qrconfig
