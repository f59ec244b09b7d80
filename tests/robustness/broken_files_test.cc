// Broken and hostile files of every kind, each with the exact outcome of a start-up in both
// modes. One table per concern; a case names what it does to the file and what it leads to
// for the XML kinds and for the parameter files (ExpectedOutcome turns that into the outcome
// of each kind and mode).
#include <gtest/gtest.h>

#include <Poco/File.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <optional>

#include "robustness/access_watch.h"
#include "robustness/memory_probe.h"
#include "robustness/probe_installation.h"
#include "support/manager_fixture.h"

namespace {

using Apply = std::function<void(const ProbeInstallation&, FileKind)>;

struct FileCase {
  const char* Name;
  Apply Change;
  std::optional<Expect> Xml;        // the XML kinds; none: the case does not apply
  std::optional<Expect> Parameter;  // the parameter files; none: does not apply
  std::vector<FileKind> Only = {};  // when given, these kinds alone
  double MaxGrowthMb = 0;           // when given, the start-up's peak memory growth bound
  const char* Unread = nullptr;     // when given, a file of the installation nobody may open
  bool Isolated = false;            // the start-up runs in a child process with a deadline
};

struct Row {
  FileKind Kind;
  const FileCase* Case;
};

std::vector<Row> Rows(const std::vector<FileCase>& cases) {
  std::vector<Row> rows;
  for (const FileCase& c : cases) {
    for (FileKind kind : AllKinds()) {
      const bool listed =
          c.Only.empty() || std::find(c.Only.begin(), c.Only.end(), kind) != c.Only.end();
      if (listed && (IsXml(kind) ? c.Xml : c.Parameter)) rows.push_back({kind, &c});
    }
  }
  return rows;
}

std::string RowName(const testing::TestParamInfo<Row>& info) {
  return std::string(info.param.Case->Name) + "_" + KindName(info.param.Kind);
}

void PrintTo(const Row& row, std::ostream* out) {
  *out << row.Case->Name << " " << KindName(row.Kind);
}

class BrokenFileTest : public ManagerTest, public testing::WithParamInterface<Row> {
 protected:
  ProbeInstallation m_Files{m_Install};
};

TEST_P(BrokenFileTest, GivesItsOutcomeInBothModes) {
  const FileKind kind = GetParam().Kind;
  const FileCase& c = *GetParam().Case;
  const Expect& expect = IsXml(kind) ? *c.Xml : *c.Parameter;
  for (Initialization::Mode mode : {Initialization::Library, Initialization::Server}) {
    SCOPED_TRACE(mode == Initialization::Library ? "Library mode" : "Server mode");
    m_Files.WriteBaseline();
    c.Change(m_Files, kind);
    std::unique_ptr<AccessWatch> watch;
    if (c.Unread != nullptr) {
      watch = std::make_unique<AccessWatch>(m_Install.Path(c.Unread));
      ASSERT_TRUE(watch->Valid());
    }
    std::string outcome;
    const double growth = PeakGrowthMb([&] {
      outcome = c.Isolated ? InChild([&] { return m_Files.Outcome(kind, mode); })
                           : m_Files.Outcome(kind, mode);
    });
    EXPECT_EQ(outcome, ExpectedOutcome(kind, mode, expect));
    if (watch) {
      EXPECT_FALSE(watch->Touched()) << c.Unread << " was opened";
    }
    if (c.MaxGrowthMb > 0 && growth >= 0) {
      EXPECT_LT(growth, c.MaxGrowthMb + SanitizerAllowanceMb());
    }
  }
}

// ---- what a case does to the file

Apply Payload(const std::string& payload, const std::string& prolog = kXmlDeclaration,
              const std::string& extra = "") {
  return [=](const ProbeInstallation& files, FileKind kind) {
    files.WriteDocument(kind, payload, prolog, extra);
  };
}

Apply Bytes(std::function<std::string(FileKind)> make) {
  return [=](const ProbeInstallation& files, FileKind kind) { files.Write(kind, make(kind)); };
}

std::string Declaration(const std::string& encoding) {
  return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>\n";
}

std::string Baseline(FileKind kind) {
  return ProbeInstallation::Document(kind, kBaselinePayload);
}

// Holds a FIFO open for writing, as a writer that never writes would.
class IdleWriter {
 public:
  ~IdleWriter() { Release(); }
  void Hold(const std::string& fifo) {
    Release();
    m_Fd = ::open(fifo.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(m_Fd, 0);
  }

 private:
  void Release() {
    if (m_Fd >= 0) ::close(m_Fd);
    m_Fd = -1;
  }
  int m_Fd = -1;
};

// "é€😀": two, three and four bytes in UTF-8 (the last a surrogate pair in UTF-16).
const char* const kSamplesOfEveryWidth = "\303\251\342\202\254\360\237\230\200";

std::string CrLf(const std::string& text) {
  std::string converted;
  for (char c : text) converted += c == '\n' ? std::string("\r\n") : std::string(1, c);
  return converted;
}

// ---- the tables

const std::vector<FileCase> kFileSystemCases = {
    {"Missing",
     [](const ProbeInstallation& files, FileKind kind) {
       Poco::File(files.Path(kind)).remove();
       // A setup file is only read when the directory lists it: a dangling link.
       if (kind == FileKind::Setup) {
         ASSERT_EQ(::symlink(files.Install().Path("nowhere").c_str(), files.Path(kind).c_str()), 0);
       }
     },
     ParseFails(45, Expect::InProlog), FileFails()},
    {"Directory",
     [](const ProbeInstallation& files, FileKind kind) {
       Poco::File(files.Path(kind)).remove();
       Poco::File(files.Path(kind)).createDirectories();
     },
     ParseFails(45, Expect::InProlog), FileFails()},
    {"Empty", Bytes([](FileKind) { return std::string(); }), ParseFails(46, Expect::InProlog),
     FileFails()},
    // A FIFO behind a symbolic link, held open by a writer that never writes: reading it would
    // block forever, so the type is decided on the opened descriptor.
    {"FifoWithIdleWriter",
     [](const ProbeInstallation& files, FileKind kind) {
       const std::string fifo = files.Install().Path("fifo");
       Poco::File(files.Path(kind)).remove();
       ::unlink(fifo.c_str());  // left by the other mode
       ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
       ASSERT_EQ(::symlink(fifo.c_str(), files.Path(kind).c_str()), 0);
       static IdleWriter writer;
       writer.Hold(fifo);
     },
     ParseFails(45, Expect::InProlog),
     FileFails(),
     {},
     0,
     nullptr,
     true},
    {"Device",
     [](const ProbeInstallation& files, FileKind kind) {
       Poco::File(files.Path(kind)).remove();
       ASSERT_EQ(::symlink("/dev/zero", files.Path(kind).c_str()), 0);
     },
     ParseFails(45, Expect::InProlog),
     FileFails(),
     {},
     0,
     nullptr,
     true},
    // 12 GB, sparse, after the baseline document: a parameter file is refused unread for its
    // size, an XML file stops at the first NUL byte.
    {"Sparse12GB",
     [](const ProbeInstallation& files, FileKind kind) {
       files.Write(kind, Baseline(kind));
       ASSERT_EQ(::truncate(files.Path(kind).c_str(), off_t{12} << 30), 0);
     },
     ParseFails(46, Expect::AtEnd),
     FileFails(),
     {},
     64},
};

const std::vector<FileCase> kMalformedCases = {
    {"Truncated", Bytes([](FileKind kind) {
       const std::string text = Baseline(kind);
       // XML: cut right after the probe; parameter file: inside the section header.
       return IsXml(kind) ? text.substr(0, text.find(kBaselinePayload) + 2) : text.substr(0, 4);
     }),
     ParseFails(46, Expect::InProbe), FileFails()},
    {"MismatchedTags", Payload("<a>v1</b>"), ParseFails(46, Expect::InProbe), std::nullopt},
    {"NulByte", Payload(std::string("v\0001", 3)), ParseFails(46, Expect::InProbe), FileFails()},
    {"TwoRootElements", Bytes([](FileKind kind) { return Baseline(kind) + "<Second/>\n"; }),
     ParseFails(46, Expect::AtEnd), std::nullopt},
};

// Octal escapes below: a hexadecimal one would swallow the letter after it.
const std::vector<FileCase> kEncodingCases = {
    {"InvalidUtf8", Payload("a\377b"), ParseFails(47, Expect::InProbe), Loads("'a\377b'")},
    {"UnknownEncoding", Payload("v1", Declaration("x-unknown-8")), ParseFails(47, Expect::InProlog),
     std::nullopt},
    {"Utf16WithBom", Bytes([](FileKind kind) {
       return ToUtf16(
           ProbeInstallation::Document(kind, kSamplesOfEveryWidth, Declaration("UTF-16")));
     }),
     Loads(std::string("'") + kSamplesOfEveryWidth + "'"), FileFails()},
    {"CrLfLineEnds", Bytes([](FileKind kind) { return CrLf(Baseline(kind)); }), Loads("'v1'"),
     Loads("'v1'")},
    {"Utf16OddTrailingByte", Bytes([](FileKind kind) {
       return ToUtf16(ProbeInstallation::Document(kind, "v1", Declaration("UTF-16"))) + "\n";
     }),
     ParseFails(47, Expect::AtEnd), std::nullopt},
};

// The reference to an entity that is not loaded ends a chunk of character data, which the
// driver-file readers take on its own.
const Expect kEntitySkipped =
    Loads("'ab'").Except(FileKind::DriverList, "'a' 'b'").Except(FileKind::Localized, "'b'");

// The probe "a&e;b" under a document type declaration that points at a file written beside
// the installation's files: `doctype` makes the declaration of the file's absolute path.
// The file must stay unopened and its content out of the tree.
FileCase External(const char* name, const char* file, const char* content,
                  std::function<std::string(const std::string&)> doctype) {
  Apply change = [=](const ProbeInstallation& files, FileKind kind) {
    files.Install().Write(file, content);
    files.WriteDocument(kind, "a&e;b", kXmlDeclaration + doctype(files.Install().Path(file)));
  };
  return {name, change, kEntitySkipped, std::nullopt, {}, 0, file};
}

// Refused with the parse code 48, within bounded memory.
FileCase Bomb(const char* name, const std::string& prolog, const std::string& payload) {
  return {name, Payload(payload, prolog), ParseFails(48, Expect::InProbe), std::nullopt, {}, 64};
}

std::string Repeat(const std::string& text, int count) {
  std::string repeated;
  for (int i = 0; i < count; ++i) repeated += text;
  return repeated;
}

// Far longer than the longest token: refused in time linear in its length.
std::string StartTagWithManyAttributes() {
  std::string tag = "<Tag";
  for (int i = 0; tag.size() < (std::size_t{20} << 20); ++i)
    tag += " a" + std::to_string(i) + "=\"v\"";
  return tag + "/>";
}

const std::vector<FileCase> kHostileCases = {
    {"LongAttributeValue",
     Payload("v1", kXmlDeclaration, "<Tag a=\"" + std::string(std::size_t{20} << 20, 'x') + "\"/>"),
     ParseFails(48, Expect::AtEnd), std::nullopt},
    {"StartTagWithManyAttributes", Payload("v1", kXmlDeclaration, StartTagWithManyAttributes()),
     ParseFails(48, Expect::AtEnd), std::nullopt},
    External("ExternalEntityByPath", "secret.txt", "SECRET",
             [](const std::string& path) {
               return "<!DOCTYPE R [<!ENTITY e SYSTEM \"" + path + "\">]>\n";
             }),
    External("ExternalDtd", "secret.dtd", "<!ENTITY e \"SECRET\">\n",
             [](const std::string& path) { return "<!DOCTYPE R SYSTEM \"" + path + "\">\n"; }),
    Bomb("BillionLaughs", BillionLaughs(), "&l10;"),
    // 20,000 references to a 100 kB entity: 2 GB of text from a 200 kB file.
    Bomb("QuadraticBlowup",
         kXmlDeclaration + ("<!DOCTYPE R [<!ENTITY big \"" + std::string(100000, 'x') + "\">]>\n"),
         Repeat("&big;", 20000)),
};

// 100,000 levels: around the probe for every reader, and of the elements that grow a
// reader's own stacks or the tree's depth.
const int kDepth = 100000;

// The baseline file of `kind` with `extra` as the last content of its root element.
FileCase DeepIn(FileKind kind, const char* name, const std::string& extra,
                const std::string& probe = "'v1'") {
  return {name, Payload("v1", kXmlDeclaration, extra), Loads(probe), std::nullopt, {kind}};
}

const std::vector<FileCase> kDeepCases = {
    {"AroundTheProbe", Payload(Nest(kDepth, "Deep", "v1")), Loads("'v1'"), std::nullopt},
    DeepIn(FileKind::Main, "ActiveDataSourceTree",
           "<Settings><ActiveDataSources>" + Nest(kDepth, "NetworkLayer", "", " Name=\"N\"") +
               "</ActiveDataSources></Settings>\n"),
    DeepIn(FileKind::Main, "TraceGroups",
           "<Traces>" + Nest(kDepth, "Trace", "", " Name=\"T\" Active=\"Yes\"") + "</Traces>\n"),
    DeepIn(FileKind::DriverList, "NetworkLayers",
           Nest(kDepth, "NetworkLayer", "<Alias>v2</Alias>", " Name=\"Crv\" Implementation=\"C\""),
           "'v1' 'v2'"),
    DeepIn(FileKind::DataAccess, "LibraryLists",
           "<DataBase Name=\"deep\" Active=\"Yes\">" +
               Nest(kDepth, "Libraries", "<Library>l</Library>") + "</DataBase>\n"),
    DeepIn(FileKind::Localized, "LocalizedNetworkLayers",
           Nest(kDepth, "NetworkLayer", "<Message id=\"Name\">X</Message>", " Name=\"Deep\"")),
};

INSTANTIATE_TEST_SUITE_P(FileSystem, BrokenFileTest, testing::ValuesIn(Rows(kFileSystemCases)),
                         RowName);
INSTANTIATE_TEST_SUITE_P(Malformed, BrokenFileTest, testing::ValuesIn(Rows(kMalformedCases)),
                         RowName);
INSTANTIATE_TEST_SUITE_P(Encoding, BrokenFileTest, testing::ValuesIn(Rows(kEncodingCases)),
                         RowName);
INSTANTIATE_TEST_SUITE_P(Hostile, BrokenFileTest, testing::ValuesIn(Rows(kHostileCases)), RowName);
INSTANTIATE_TEST_SUITE_P(Deep, BrokenFileTest, testing::ValuesIn(Rows(kDeepCases)), RowName);

// The watch the external-entity cases rely on does see a read.
TEST(AccessWatchTest, SeesARead) {
  TempInstallation install;
  install.Write("watched", "x");
  AccessWatch watch(install.Path("watched"));
  ASSERT_TRUE(watch.Valid());
  EXPECT_FALSE(watch.Touched());
  std::ifstream(install.Path("watched")).get();
  EXPECT_TRUE(watch.Touched());
}

}  // namespace
