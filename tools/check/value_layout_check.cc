#include "check/value_layout_check.h"

#include "check/value_kind.h"

namespace qrconfig {

namespace {

std::string Trim(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return "";
  const auto last = text.find_last_not_of(" \t\r\n");
  return text.substr(first, last - first + 1);
}

bool ValueElement(FileKind kind, const std::string& name) {
  switch (kind) {
    case FileKind::Main:
      return name == "Parameter" || name == "Language" || name == "CharSet";
    case FileKind::Setup:
      return name == "Directory" || name == "DataFileName" || name == "Version";
    case FileKind::DataAccess:
      return name == "Parameter" || name == "Library" || name == "Alias";
    case FileKind::DriverList:
      return name == "Alias";
    case FileKind::Localised:
      return name == "Message";
  }
  return false;
}

std::string Describe(const XmlElement& element) {
  const std::string* name = element.Attribute("Name");
  return "<" + element.Name + (name ? " Name=\"" + *name + "\"" : "") + ">";
}

}  // namespace

void ValueLayoutCheck::Run(const Installation& installation, Findings& findings) const {
  for (const ScannedFile* file : installation.ScannedFiles()) {
    for (const XmlElement& element : file->Document.Elements) {
      if (!ValueElement(file->Kind, element.Name)) continue;
      const std::string written = Trim(element.RawText);
      const bool spread = element.RawText.find('\n') != std::string::npos && !written.empty();
      const std::string& path = file->Document.Path;
      if (file->Kind == FileKind::DriverList && spread) {
        findings.Add(Severity::Warning, FindingKind::ValueLayout, path, element.Line,
                     "The alias \"" + written +
                         "\" does not stand on one line with its tags: every line of it, line "
                         "breaks and indentation included, becomes an alias of its own.",
                     "Write <Alias>" + written + "</Alias> on one line.");
      } else if (file->Kind == FileKind::Localised && spread) {
        findings.Add(Severity::Warning, FindingKind::ValueLayout, path, element.Line,
                     "The message \"" + written +
                         "\" does not stand on one line with its tags: only its last line is "
                         "kept.",
                     "Write the message text on the line of its tags.");
      } else if (file->Kind != FileKind::DriverList && file->Kind != FileKind::Localised) {
        if (spread && element.Text != written) {
          findings.Add(Severity::Warning, FindingKind::ValueLayout, path, element.Line,
                       "The value \"" + written + "\" of " + Describe(element) +
                           " does not stand on the line of its start tag: the reader takes \"" +
                           element.Text + "\" instead.",
                       "Write the start tag, the value and the end tag on one line.");
        } else if (element.Name == "Parameter" && element.Text != Trim(element.Text) &&
                   ClassifyValue(element.Text) != ClassifyValue(Trim(element.Text))) {
          findings.Add(Severity::Warning, FindingKind::ValueLayout, path, element.Line,
                       "The value \"" + element.Text + "\" of " + Describe(element) +
                           " has blanks around it: it is the String \"" + element.Text +
                           "\", not the " + TagName(ClassifyValue(Trim(element.Text))) + " " +
                           Trim(element.Text) + ".",
                       "Remove the blanks around the value.");
        }
      }
    }
  }
}

}  // namespace qrconfig
