#include "qr_config/platform/sfile.h"

#include <gtest/gtest.h>
#include <ini.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "support/temp_installation.h"

namespace {

using Parameter = SFile::Parameter;
using namespace std::string_literals;

// Every parameter of a section as "key|name|text|kind".
std::vector<std::string> Entries(const SFile::Section& section) {
  std::vector<std::string> entries;
  for (const auto& [key, parameter] : section) {
    std::string text;
    parameter.Value(text);
    entries.push_back(key + "|" + parameter.Name() + "|" + text + "|" +
                      std::to_string(parameter.Kind()));
  }
  return entries;
}

class SFileTest : public ::testing::Test {
 protected:
  SFile Parse(const std::string& bytes, int mode = 3) {
    return SFile(m_Dir.Write("t.cfg", bytes), mode);
  }
  TempInstallation m_Dir;
};

TEST_F(SFileTest, ReadsSectionsAndParameters) {
  ini_allow_inline_comments = true;  // another user's setting must neither apply nor be lost
  // inih alone would cut these; the last line is exactly as long as a line may be.
  const std::string longName(300, 's'), longValue(SFile::kMaxLineBytes - 4, 'v');
  const SFile file = Parse(
      "\xEF\xBB\xBF; comment\r\n"
      "  # another\n"
      "[ CharSets ]\n"
      "  Name One  =  Value with ; and # inside  \r\n"
      "Empty =\n"
      "Colon: 12\n"
      "   Indented = yes\n"
      "[Empty Section]\n"
      "[B] \t\v\f\n"
      "x = 1\n"
      "[CharSets]\n"
      "Later = -7\n"
      "[S]\nx = 1\nx#2 = lit\nx = 2\nx = 3\n[T]\n[S]\nx = 4\n[" +  // repeated names
      longName +
      "]\nn = " + longValue);
  ASSERT_EQ(file.Sections().size(), 6u);
  EXPECT_EQ(Entries(*file.FindSection("CharSets")),
            (std::vector<std::string>{"Colon|Colon|12|2", "Empty|Empty||1",
                                      "Indented|Indented|yes|3", "Later|Later|-7|2",
                                      "Name One|Name One|Value with ; and # inside|1"}));
  EXPECT_EQ(Entries(*file.FindSection("S")),
            (std::vector<std::string>{"x|x|1|2", "x#2|x#2|lit|1", "x#3|x|2|2", "x#4|x|3|2",
                                      "x#5|x|4|2"}));
  EXPECT_TRUE(ini_allow_inline_comments);
  EXPECT_EQ(Entries(*file.FindSection(longName)),
            (std::vector<std::string>{"n|n|" + longValue + "|1"}));
  ASSERT_NE(file.FindSection("Empty Section"), nullptr);
  EXPECT_TRUE(file.FindSection("Empty Section")->empty());
  EXPECT_EQ(file.FindSection("charsets"), nullptr);  // exact names
}

// Every failure has its kind (0 malformed, with the line; 1 cannot open; 2 cannot read), names
// the file, and says so in what().
TEST_F(SFileTest, FailuresHaveTheirKindFileAndLine) {
  const struct {
    std::string bytes;
    int line;
  } malformed[] = {
      {"x = 1\n", 1},                  // before any section
      {"[S]\n\njust text\n", 3},       // neither header, parameter nor comment
      {"[S\n", 1},                     // no ']'
      {"[S] x\n", 1},                  // text after ']'
      {"[ ]\n", 1},                    // no section name
      {"[S]\n= value\n", 2},           // no parameter name
      {"[S]\na = 1\nb = x\0y\n"s, 3},  // NUL byte
      {"[S]\n" + std::string(SFile::kMaxLineBytes - 1, 'a') + "=1\n", 2},  // one byte too long
      {"[S]\na = \xFF\xFE\nbad\n", 3},  // invalid bytes are fine, the line is not
  };
  struct Case {
    std::string name;
    int kind, line;
  };
  std::vector<Case> cases;
  for (const auto& m : malformed)
    cases.push_back({m_Dir.Write("m" + std::to_string(cases.size()) + ".cfg", m.bytes), 0, m.line});
  // Not regular files (a FIFO without a writer, so that a regression cannot block; a device
  // behind a link) and a file one byte above the limit, sparse, are refused before reading.
  const std::string fifo = m_Dir.Path("fifo.cfg");
  const std::string device = m_Dir.Path("null.cfg");
  const std::string huge = m_Dir.Write("huge.cfg", "[S]\n");
  EXPECT_EQ(0, mkfifo(fifo.c_str(), 0600));
  EXPECT_EQ(0, symlink("/dev/null", device.c_str()));
  EXPECT_EQ(0, truncate(huge.c_str(), static_cast<off_t>(SFile::kMaxFileBytes + 1)));
  // At the limit exactly the file is read: its NUL bytes make it malformed on line 2.
  const std::string full = m_Dir.Write("full.cfg", "[S]\n");
  EXPECT_EQ(0, truncate(full.c_str(), static_cast<off_t>(SFile::kMaxFileBytes)));
  cases.push_back({full, 0, 2});
  for (const std::string& missing : {m_Dir.Path("none.cfg"), m_Dir.Write("plain", "x") + "/a", ""s})
    cases.push_back({missing, 1, 0});
  for (const std::string& unreadable : {m_Dir.Dir(), fifo, device, huge})
    cases.push_back({unreadable, 2, 0});
  if (geteuid() != 0) {  // root reads everything
    const std::string locked = m_Dir.Write("locked.cfg", "[S]\n");
    chmod(locked.c_str(), 0);
    cases.push_back({locked, 2, 0});
  }
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    try {
      SFile(c.name, 3);
      ADD_FAILURE() << "no exception";
    } catch (const SFile::Exception& e) {
      EXPECT_EQ(e.Kind(), c.kind);
      EXPECT_EQ(e.Line(), c.line);
      EXPECT_EQ(e.FileName(), c.name);
      const std::string where = c.line == 0 ? "" : " at line " + std::to_string(c.line);
      EXPECT_NE(std::string(e.what()).find("\"" + c.name + "\"" + where), std::string::npos)
          << e.what();
    }
  }
}

TEST(SFileParameterTest, ClassifiesRawText) {
  const struct {
    const char* text;
    int kind;
  } cases[] = {
      {"+12", 2},         {"-2147483648", 2}, {"2147483647", 2}, {"007", 2},   {"2147483648", 1},
      {"-2147483649", 1}, {"+", 1},           {"+-1", 1},        {"1 2", 1},   {"0x10", 1},
      {"TRUE", 3},        {"fAlse", 3},       {"on", 1},         {"truex", 1}, {"", 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(Parameter(Parameter::Classify{}, "n", c.text).Kind(), c.kind);
  }
  int number = 0;
  bool flag = false;
  Parameter(Parameter::Classify{}, "n", "-2147483648").Value(number);
  Parameter(Parameter::Classify{}, "n", "Yes").Value(flag);
  EXPECT_EQ(number, -2147483647 - 1);
  EXPECT_TRUE(flag);
}

}  // namespace
