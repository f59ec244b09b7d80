// Broken and hostile files of every kind, values of the wrong type and hostile patterns,
// each with the exact outcome of a start-up in both modes. One table per concern; a case states
// what it does to the file and what that leads to for the XML kinds and for the parameter files;
// ExpectedOutcome turns this into the outcome of each kind in each mode. Large inputs are made when
// their case runs.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <map>
#include <memory>
#include <optional>

#include "robustness/access_watch.h"
#include "robustness/memory_probe.h"
#include "robustness/startup_probe.h"
#include "support/manager_fixture.h"

namespace {

// What a file does to the start-up, whatever its kind.
struct Expect {
  enum Result { Loads, ParseFails, FileFails, Given };
  Result Type = Loads;
  std::string Probe = "";  // Loads: the rendered probe
  std::int32_t Code = 0;   // ParseFails: the XML layer's parse code, 45 to 48
  // ParseFails: where the parse stops, which decides what a data-access file has added in
  // Server mode before the fault: nothing (InProlog), db1 without its probe (InProbe), or all.
  enum Site { InProlog, InProbe, AtEnd };
  Site FaultSite = InProlog;
  // Loads: the probe of kinds whose readers deliver the text differently.
  std::map<FileKind, std::string> ProbeOf = {};
  std::string Library = "", Server = "";  // Given: the outcome in each mode

  Expect Except(FileKind kind, const std::string& probe) const {
    Expect copy = *this;
    copy.ProbeOf[kind] = probe;
    return copy;
  }
};
Expect Loads(const std::string& probe) {
  return {Expect::Loads, probe};
}
Expect ParseFails(std::int32_t code, Expect::Site site) {
  return {Expect::ParseFails, "", code, site};
}
// A parameter file that the reader refuses, whatever the failure's kind.
Expect FileFails() {
  return {Expect::FileFails};
}
Expect Gives(const std::string& library, const std::string& server) {
  return {Expect::Given, "", 0, Expect::InProlog, {}, library, server};
}

// The start-up's outcome when db1 loads with the baseline probe, and when it does not load.
const std::string kDb1Loaded = "ok 'v1'";
const std::string kDb1Missing = "ok 5 \\Quorin\\DBDrivers\\Crv\\db1";

// The outcome a file of `kind` with the result `expect` gives in `mode`:
//  - main file and driver list: the parse code becomes 264 to 267 with the file's path;
//  - setup file: skipped in Server mode (db1 missing), the file code in Library mode;
//  - data-access file: skipped in Server mode, keeping what it had added before the fault;
//    start-up code 10 in Library mode;
//  - localised file: the start-up succeeds, GetLocalizedDriver raises the file code;
//  - platform list: start-up code 10; character-set table: db1 gets no table (262 Crv).
std::string ExpectedOutcome(FileKind kind, Initialization::Mode mode, const Expect& expect) {
  const bool server = mode == Initialization::Server;
  if (expect.Type == Expect::Given) return server ? expect.Server : expect.Library;
  if (expect.Type == Expect::Loads) {
    const auto other = expect.ProbeOf.find(kind);
    return "ok " + (other == expect.ProbeOf.end() ? expect.Probe : other->second);
  }
  if (expect.Type == Expect::FileFails) return kind == FileKind::PlatformList ? "10" : "ok 262 Crv";
  const std::string fileError =
      std::to_string(264 + expect.Code - 45) + " @/" + TempInstallation::Relative(kind);
  switch (kind) {
    case FileKind::Setup:
      return server ? kDb1Missing : fileError;
    case FileKind::DataAccess:
      if (!server) return "10";
      if (expect.FaultSite == Expect::InProlog) return kDb1Missing;
      return expect.FaultSite == Expect::InProbe ? "ok 261 Probe" : kDb1Loaded;
    case FileKind::Localized:
      return "ok " + fileError;
    default:
      return fileError;
  }
}

using Apply = std::function<void(const TempInstallation&, FileKind)>;

struct FileCase {
  const char* Name;
  Apply Change;
  std::optional<Expect> Xml;        // the XML kinds; none: the case does not apply
  std::optional<Expect> Parameter;  // the parameter files; none: does not apply
  double MaxGrowthMb = 0;           // when given, the start-up's peak memory growth bound
  std::vector<FileKind> Only = {};  // when given, these kinds alone
  const char* Unread = nullptr;     // when given, a file of the installation nobody may open
  bool Isolated = false;            // the start-up runs in a child process with a deadline
  // Isolated: active-data-source patterns of Crv that the host registers in the child.
  std::vector<std::string> Registered = {};
};

FileCase Isolated(FileCase c) {
  c.Isolated = true;
  return c;
}

struct Row {
  FileKind Kind;
  const FileCase* Case;
};

void PrintTo(const Row& row, std::ostream* out) {
  *out << row.Case->Name << " " << KindName(row.Kind);
}

std::vector<Row> Rows(const std::vector<FileCase>& cases) {
  std::vector<Row> rows;
  for (const FileCase& c : cases) {
    for (FileKind kind : AllKinds()) {
      const bool listed = c.Only.empty() || std::count(c.Only.begin(), c.Only.end(), kind) > 0;
      if (listed && (IsXml(kind) ? c.Xml : c.Parameter)) rows.push_back({kind, &c});
    }
  }
  return rows;
}

std::string RowName(const testing::TestParamInfo<Row>& info) {
  return std::string(info.param.Case->Name) + "_" + KindName(info.param.Kind);
}

class BrokenFileTest : public ManagerTest, public testing::WithParamInterface<Row> {};

TEST_P(BrokenFileTest, GivesItsOutcomeInBothModes) {
  const FileKind kind = GetParam().Kind;
  const FileCase& c = *GetParam().Case;
  const StartupProbe probe(m_Install);
  for (Initialization::Mode mode : {Initialization::Library, Initialization::Server}) {
    SCOPED_TRACE(mode == Initialization::Library ? "Library mode" : "Server mode");
    m_Install.WriteBaseline();
    c.Change(m_Install, kind);
    std::unique_ptr<AccessWatch> watch;
    if (c.Unread != nullptr) {
      watch = std::make_unique<AccessWatch>(m_Install.Path(c.Unread));
      ASSERT_TRUE(watch->Valid());
    }
    std::string outcome;
    const double growth = PeakGrowthMb([&] {
      outcome = !c.Isolated ? probe.Outcome(kind, mode) : InChild([&] {
        for (const std::string& pattern : c.Registered)
          ConfigManager::AddActiveDataSource("Crv", pattern);
        return probe.Outcome(kind, mode);
      });
    });
    EXPECT_EQ(outcome, ExpectedOutcome(kind, mode, IsXml(kind) ? *c.Xml : *c.Parameter));
    if (watch) {
      EXPECT_FALSE(watch->Touched()) << c.Unread << " was opened";
    }
    if (c.MaxGrowthMb > 0 && growth >= 0) {
      EXPECT_LT(growth, c.MaxGrowthMb + SanitizerAllowanceMb());
    }
  }
}

// ---- what a case does to the file

// The kind's document with `payload` after `prolog`, and with `extra` (made when the case
// runs) as the last content of the root element.
Apply Payload(const std::string& payload, const std::string& prolog = kXmlDeclaration,
              std::string (*extra)() = nullptr) {
  return [=](const TempInstallation& files, FileKind kind) {
    files.WriteDocument(kind, payload, prolog, extra != nullptr ? extra() : "");
  };
}

Apply Bytes(std::string (*make)(FileKind)) {
  return [=](const TempInstallation& files, FileKind kind) { files.Write(kind, make(kind)); };
}

std::string Declaration(const std::string& encoding) {
  return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>\n";
}

std::string Baseline(FileKind kind) {
  return TempInstallation::Document(kind, kBaselinePayload);
}

// `utf8` in UTF-16, little endian, after a byte-order mark.
std::string ToUtf16(const std::string& utf8) {
  std::string bytes;
  auto put = [&](unsigned unit) {
    bytes += {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
  };
  put(0xFEFF);
  const ucs2string units{orv_utf8string(utf8)};
  for (std::size_t i = 0; i < units.size(); ++i) put(units.data()[i]);
  return bytes;
}

// Replaces the kind's file by `make(fileName)`, a special file or a link to one.
Apply Special(void (*make)(const TempInstallation&, const std::string&)) {
  return [=](const TempInstallation& files, FileKind kind) {
    files.Write(kind, "");
    ::unlink(files.Path(kind).c_str());
    make(files, files.Path(kind));
  };
}

// A FIFO held open for writing, as by a writer that never writes.
int g_IdleWriter = -1;

// "é€😀": two, three and four bytes in UTF-8 (the last a surrogate pair in UTF-16).
const char* const kSamplesOfEveryWidth = "\303\251\342\202\254\360\237\230\200";

// ---- the tables

const std::vector<FileCase> kFileSystemCases = {
    // A setup file is only read when the directory lists it: a dangling link.
    {"Missing", Special([](const TempInstallation& files, const std::string& path) {
       if (path == files.Path(FileKind::Setup))
         ::symlink(files.Path("nowhere").c_str(), path.c_str());
     }),
     ParseFails(45, Expect::InProlog), FileFails()},
    {"Directory",
     Special([](const TempInstallation&, const std::string& path) { ::mkdir(path.c_str(), 0700); }),
     ParseFails(45, Expect::InProlog), FileFails()},
    // A FIFO behind a symbolic link, held open by a writer that never writes: reading it would
    // block forever, so the type is decided on the opened descriptor.
    Isolated({"FifoWithIdleWriter",
              Special([](const TempInstallation& files, const std::string& path) {
                const std::string fifo = files.Path("fifo");
                ::unlink(fifo.c_str());  // left by the other mode
                ::mkfifo(fifo.c_str(), 0600);
                ::symlink(fifo.c_str(), path.c_str());
                if (g_IdleWriter >= 0) ::close(g_IdleWriter);
                g_IdleWriter = ::open(fifo.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
              }),
              ParseFails(45, Expect::InProlog), FileFails()}),
    Isolated({"Device", Special([](const TempInstallation&, const std::string& path) {
                ::symlink("/dev/zero", path.c_str());
              }),
              ParseFails(45, Expect::InProlog), FileFails()}),
    // 12 GB, sparse, after the baseline document: a parameter file is refused unread for its
    // size, an XML file stops at the first NUL byte.
    {"Sparse12GB",
     [](const TempInstallation& files, FileKind kind) {
       files.Write(kind, Baseline(kind));
       ASSERT_EQ(::truncate(files.Path(kind).c_str(), off_t{12} << 30), 0);
     },
     ParseFails(46, Expect::AtEnd), FileFails(), 64},
};

const std::vector<FileCase> kMalformedCases = {
    {"Truncated", Bytes([](FileKind kind) {
       const std::string text = Baseline(kind);
       // XML: cut right after the probe; parameter file: inside the section header.
       return IsXml(kind) ? text.substr(0, text.find(kBaselinePayload) + 2) : text.substr(0, 4);
     }),
     ParseFails(46, Expect::InProbe), FileFails()},
    {"NulByte", Payload(std::string("v\0001", 3)), ParseFails(46, Expect::InProbe), FileFails()},
    // A name given twice: the first counts.
    {"RepeatedEntry", Bytes([](FileKind kind) { return Baseline(kind) + "Probe = v2\n"; }),
     std::nullopt, Loads("'v1'")},
};

// Octal escapes below: a hexadecimal one would swallow the letter after it.
const std::vector<FileCase> kEncodingCases = {
    {"InvalidUtf8", Payload("a\377b"), ParseFails(47, Expect::InProbe), Loads("'a\377b'")},
    {"Utf16WithBom", Bytes([](FileKind kind) {
       return ToUtf16(
           TempInstallation::Document(kind, kSamplesOfEveryWidth, Declaration("UTF-16")));
     }),
     Loads(std::string("'") + kSamplesOfEveryWidth + "'"), FileFails()},
    {"Utf16OddTrailingByte", Bytes([](FileKind kind) {
       return ToUtf16(TempInstallation::Document(kind, "v1", Declaration("UTF-16"))) + "\n";
     }),
     ParseFails(47, Expect::AtEnd), std::nullopt},
};

// The probe "a&e;b" under a document type declaration that points at a file written beside
// the installation's files (`doctype` declares its absolute path); the file must stay
// unopened and its content out of the tree. The reference to an entity that is not loaded
// ends a chunk of character data, which the driver-file readers take on its own.
FileCase External(const char* name, const char* file, const char* content,
                  std::string (*doctype)(const std::string&)) {
  Apply change = [=](const TempInstallation& files, FileKind kind) {
    files.Write(file, content);
    files.WriteDocument(kind, "a&e;b", kXmlDeclaration + doctype(files.Path(file)));
  };
  FileCase c{
      name, change,
      Loads("'ab'").Except(FileKind::DriverList, "'a' 'b'").Except(FileKind::Localized, "'b'"),
      std::nullopt};
  c.Unread = file;
  return c;
}

// Far longer than the longest token: refused in time linear in its length.
std::string LongAttributeValue() {
  return "<Tag a=\"" + std::string(std::size_t{20} << 20, 'x') + "\"/>";
}
std::string StartTagWithManyAttributes() {
  std::string tag = "<Tag";
  for (int i = 0; tag.size() < (std::size_t{20} << 20); ++i)
    tag += " a" + std::to_string(i) + "=\"v\"";
  return tag + "/>";
}

// Entity bombs: refused with the parse code 48, within bounded memory.
FileCase Bomb(const char* name, const std::string& prolog, const std::string& payload) {
  return {name, Payload(payload, prolog), ParseFails(48, Expect::InProbe), std::nullopt, 64};
}

const std::vector<FileCase> kHostileCases = {
    {"LongAttributeValue", Payload("v1", kXmlDeclaration, LongAttributeValue),
     ParseFails(48, Expect::AtEnd), std::nullopt},
    {"StartTagWithManyAttributes", Payload("v1", kXmlDeclaration, StartTagWithManyAttributes),
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
         [] {
           std::string references;
           for (int i = 0; i < 20000; ++i) references += "&big;";
           return references;
         }()),
};

// 100,000 levels around the probe for every reader, and of the elements that grow a
// reader's own stacks or the tree's depth: `element` (with `attributes`, around `inner`)
// nested between `open` and `close` as the last content of the root element of `kind`.
FileCase Deep(FileKind kind, const char* name, const std::string& open, const std::string& element,
              const std::string& attributes, const std::string& inner, const std::string& close,
              const std::string& probe = "'v1'") {
  Apply change = [=](const TempInstallation& files, FileKind k) {
    files.WriteDocument(k, "v1", kXmlDeclaration,
                        open + Nest(100000, element, inner, attributes) + close);
  };
  return {name, change, Loads(probe), std::nullopt, 0, {kind}};
}

const std::vector<FileCase> kDeepCases = {
    {"AroundTheProbe", Bytes([](FileKind kind) {
       return TempInstallation::Document(kind, Nest(100000, "Deep", "v1"));
     }),
     Loads("'v1'"), std::nullopt},
    Deep(FileKind::Main, "ActiveDataSourceTree", "<Settings><ActiveDataSources>", "NetworkLayer",
         " Name=\"N\"", "", "</ActiveDataSources></Settings>"),
    Deep(FileKind::Main, "TraceGroups", "<Traces>", "Trace", " Name=\"T\" Active=\"Yes\"", "",
         "</Traces>"),
    Deep(FileKind::DriverList, "NetworkLayers", "", "NetworkLayer",
         " Name=\"Crv\" Implementation=\"C\"", "<Alias>v2</Alias>", "", "'v1' 'v2'"),
    Deep(FileKind::DataAccess, "LibraryLists", "<DataBase Name=\"deep\" Active=\"Yes\">",
         "Libraries", "", "<Library>l</Library>", "</DataBase>"),
    Deep(FileKind::Localized, "LocalizedNetworkLayers", "", "NetworkLayer", " Name=\"Deep\"",
         "<Message id=\"Name\">X</Message>", ""),
};

// ---- values and patterns: cases that probe one kind, with the outcome in each mode

FileCase Probing(const char* name, FileKind probe, Apply change, const std::string& library,
                 const std::string& server) {
  return {name, change, Gives(library, server), Gives(library, server), 0, {probe}};
}

Apply Edit(FileKind kind, const std::string& from, const std::string& to) {
  return [=](const TempInstallation& files, FileKind) { files.WriteEdited(kind, from, to); };
}

// db1's probe, then one more parameter of db1.
Apply AndThen(const std::string& name, const std::string& value) {
  return [=](const TempInstallation& files, FileKind) {
    files.WriteDocument(FileKind::DataAccess, std::string(kBaselinePayload) + "</Parameter>" +
                                                  ParameterElement(name, value) +
                                                  "<Parameter Name=\"Tail\">");
  };
}

// The main file with `extra` as the last content of its root element.
Apply MainWith(const std::string& extra) {
  return [=](const TempInstallation& files, FileKind) {
    files.WriteDocument(FileKind::Main, kBaselinePayload, kXmlDeclaration, extra);
  };
}

// An active-data-source pattern against a long database name placed before db1: written in
// the main file (Library mode) and registered by the host (Server mode). Matching never
// blows the C stack; a match that reaches its limits gives up with 283, which fails the
// data-access file.
FileCase Pattern(const char* name, const char* pattern, std::string (*database)(),
                 const std::string& library, const std::string& server) {
  const Apply main = MainWith(
      "<Settings><ActiveDataSources><NetworkLayer Name=\"Crv\"><DataBase Name=\"db1\"/>"
      "<DataBase Name=\"" +
      std::string(pattern) + "\"/></NetworkLayer></ActiveDataSources></Settings>\n");
  FileCase c = Probing(
      name, FileKind::DataAccess,
      [=](const TempInstallation& files, FileKind kind) {
        main(files, kind);
        files.WriteEdited(
            FileKind::DataAccess, "<DataBase Name=\"db1\"",
            "<DataBase Name=\"" + database() + "\" Active=\"Yes\"/>\n<DataBase Name=\"db1\"");
      },
      library, server);
  c.Isolated = true;
  c.Registered = {"db1", pattern};
  return c;
}

const std::vector<FileCase> kValueCases = {
    // The main file's driver-area settings are read as texts or as a boolean.
    Probing("ConfigFileExtensionIsABoolean", FileKind::DataAccess,
            Edit(FileKind::Main, ">dsf<", ">Yes<"), "10", kDb1Missing),
    Probing("CharSetListExtensionIsAnInteger", FileKind::Main, Edit(FileKind::Main, ">csl<", ">5<"),
            "10", "10"),
    Probing("IgnoreFlagIsAText", FileKind::Main,
            Edit(FileKind::Main, ParameterElement("Ignore Driver Load Failure", "No"),
                 ParameterElement("Ignore Driver Load Failure", "maybe")),
            "10", kDb1Loaded),
    // A data-access value updates the existing field of its name, of the same type.
    Probing("ParameterOnTheTextDirectory", FileKind::DataAccess, AndThen("Directory", "5"), "10",
            kDb1Loaded),
    Probing(
        "ExtensionsIsAnInteger", FileKind::DataAccess,
        [](const TempInstallation& files, FileKind kind) {
          AndThen("Extensions", "5")(files, kind);
          files.MakeDir("d/Crv/extensions/pack");
        },
        kDb1Loaded, kDb1Loaded),
    // An unreadable "Unicode" counts as "CharSet"; an unreadable table name means no table.
    Probing("UnicodeIsAnInteger", FileKind::CharSetTable,
            Edit(FileKind::DataAccess, ">CharSet<", ">5<"), kDb1Loaded, kDb1Loaded),
    Probing("CharSetTableIsAnInteger", FileKind::CharSetTable,
            Edit(FileKind::DataAccess, ">crv<", ">5<"), "ok 262 Crv", "ok 262 Crv"),
    // A driver's setup file loads into the FIRST node of its name, among the DBDrivers
    // children the main file made and among the ActiveDataSources children.
    Probing(
        "DriverNodeTwiceInTheMainFile", FileKind::DataAccess,
        [](const TempInstallation& files, FileKind) {
          files.WriteDocument(FileKind::Main,
                              "v1</Parameter><NetworkLayer Name=\"Crv\"/>"
                              "<NetworkLayer Name=\"Crv\"/><Parameter Name=\"Tail\">");
        },
        kDb1Loaded, kDb1Loaded),
    Probing("DriverTwiceAmongActiveDataSources", FileKind::DataAccess,
            MainWith("<Settings><ActiveDataSources><NetworkLayer Name=\"Crv\"><DataBase "
                     "Name=\"db.\"/></NetworkLayer><NetworkLayer Name=\"Crv\"><DataBase "
                     "Name=\"none\"/></NetworkLayer></ActiveDataSources></Settings>\n"),
            kDb1Loaded, kDb1Loaded),
    // Up to the first two the old matcher recursed once per character: 9,000 overflowed 8 MiB.
    Pattern(
        "RepeatedGroup", "crv(_|[a-z0-9])*", [] { return "crv" + std::string(100000, 'a'); },
        kDb1Loaded, kDb1Loaded),
    Pattern(
        "RepeatedAnyCharacter", "crv(?:.)*", [] { return "crv" + std::string(100000, 'a'); },
        kDb1Loaded, kDb1Loaded),
    Pattern(
        "BeyondTheMemoryLimit", "(a|b)*", [] { return std::string(1000000, 'a'); }, "10",
        kDb1Missing),
};

INSTANTIATE_TEST_SUITE_P(FileSystem, BrokenFileTest, testing::ValuesIn(Rows(kFileSystemCases)),
                         RowName);
INSTANTIATE_TEST_SUITE_P(Malformed, BrokenFileTest, testing::ValuesIn(Rows(kMalformedCases)),
                         RowName);
INSTANTIATE_TEST_SUITE_P(Encoding, BrokenFileTest, testing::ValuesIn(Rows(kEncodingCases)),
                         RowName);
INSTANTIATE_TEST_SUITE_P(Hostile, BrokenFileTest, testing::ValuesIn(Rows(kHostileCases)), RowName);
INSTANTIATE_TEST_SUITE_P(Deep, BrokenFileTest, testing::ValuesIn(Rows(kDeepCases)), RowName);
INSTANTIATE_TEST_SUITE_P(Values, BrokenFileTest, testing::ValuesIn(Rows(kValueCases)), RowName);

}  // namespace
